// The catalogue editor window: index search, the confirmed delete and the save on close.
#include "panel/DlnDictionaryEditBrowse.h"

#include "RecordEditorScript.h"
#include "TestHost.h"
#include "base/CodePage.h"
#include "base/FileSystem.h"

#include <gtest/gtest.h>

TEST(DictionaryEditBrowse, EditsTheFileAndWritesItOnClose) {
    CTempDir dir;
    CTestHost host;
    host.m_strLocal = dir.Path();
    FsCreateDirectory(dir / L"LocalData");
    WriteBytes(dir / L"LocalData\\PanelLib.txt", EncodeText(L"Abc:1x1x1\r\nabd:2x2x2\r\nx:3x3x3"));

    CDlnDictionaryEditBrowse browse;
    browse.OnInitDialog();
    EXPECT_EQ(browse.m_strCaption, L"标准面板库扩充");
    EXPECT_EQ(browse.FindRow(L"ab"), 0);
    EXPECT_EQ(browse.FindRow(L"ABD"), 1);
    EXPECT_EQ(browse.FindRow(L"y"), -1);

    EXPECT_FALSE(browse.Delete({2})); // the question is answered no
    host.m_answers.push_back(IDYES);
    EXPECT_TRUE(browse.Delete({0, 2})); // as in the panel dialog: index 2 is past the end by then
    ASSERT_EQ(host.m_boxes.size(), 2u);
    EXPECT_EQ(host.m_boxes[1].strText, L"确定要删除这 2 项吗?");
    EXPECT_EQ(host.m_boxes[1].nFlags, static_cast<unsigned>(MB_YESNO | MB_ICONQUESTION));

    RECORD_EDITOR_SCRIPT script;
    script.strDesc = L"柜";
    script.strW = L"9";
    EXPECT_TRUE(browse.Add(script.Editor()));
    EXPECT_EQ(ReadBytes(dir / L"LocalData\\PanelLib.txt"),
              EncodeText(L"Abc:1x1x1\r\nabd:2x2x2\r\nx:3x3x3")); // nothing written yet
    browse.OnClose();
    EXPECT_EQ(ReadBytes(dir / L"LocalData\\PanelLib.txt"),
              EncodeText(L"abd:2x2x2\r\nx:3x3x3\r\n柜:9xx\r\n"));
}
