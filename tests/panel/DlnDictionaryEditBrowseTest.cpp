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
    std::wstring strFile = dir / L"LocalData\\PanelLib.txt";
    WriteBytes(strFile, EncodeText(L"Abc:1x1x1\r\nabd:2x2x2\r\nx:3x3x3"));

    CDlnDictionaryEditBrowse browse;
    browse.OnInitDialog();
    EXPECT_EQ(browse.FindRow(L"ab") * 10 + browse.FindRow(L"ABD"), 1);
    EXPECT_EQ(browse.FindRow(L"y"), -1);
    EXPECT_FALSE(browse.Delete({2})); // the question is answered no
    host.m_answers.push_back(IDYES);
    EXPECT_TRUE(browse.Delete({0, 2})); // as in the panel dialog: 2 is past the end by then
    EXPECT_EQ(host.m_boxes.at(1).strText, L"确定要删除这 2 项吗?");

    RECORD_EDITOR_SCRIPT script;
    script.arrFields = {L"柜", L"9", L"", L""};
    EXPECT_TRUE(browse.Add(script.Editor()));
    EXPECT_EQ(ReadBytes(strFile), EncodeText(L"Abc:1x1x1\r\nabd:2x2x2\r\nx:3x3x3"));
    browse.OnClose();
    // The bytes as the workstation's code page (GBK) spells them, not as the encoder says.
    EXPECT_EQ(ReadBytes(strFile), "abd:2x2x2\r\nx:3x3x3\r\n\xB9\xF1:9xx\r\n");
}
