// Boxes, printing and the wait cursor through the host table, and the editor's name rule.
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "host/SymbolName.h"

#include "TestHost.h"

#include <gtest/gtest.h>

TEST(HostUi, BoxesCarryTheCaptionAndAnswersComeFromTheHost) {
    {
        CTestHost host;
        host.m_answers.push_back(IDYES);
        EXPECT_EQ(QmMessageBox(L"锁?", MB_YESNO | MB_ICONINFORMATION), IDYES);
        EXPECT_EQ(QmMessageBox(L"again", MB_YESNO), IDCANCEL); // queue empty
        ASSERT_EQ(host.m_boxes.size(), 2u);
        EXPECT_EQ(host.m_boxes[0].strCaption, L"Quillmarch");
        EXPECT_EQ(host.m_boxes[0].nFlags, 68u);
        acutPrintf(L"\n%s %d", L"块", 3);
        EXPECT_EQ(host.m_strPrinted, L"\n块 3");
        {
            CWaitCursor wait;
            EXPECT_EQ(host.m_nWaitDepth, 1);
        }
        EXPECT_EQ(host.m_nWaitDepth, 0);
    }
    // Without a host: no crash, nothing agreed.
    EXPECT_EQ(QmMessageBox(L"x", MB_YESNO), IDCANCEL);
    acutPrintf(L"dropped");
    EXPECT_EQ(GetQuillmLocalInstallPath(), L"");
    EXPECT_EQ(GetCurFTPLoginStatus(), 0);
}

TEST(SymbolName, EditorRuleForBlockNames) {
    EXPECT_TRUE(IsValidSymbolName(L"ABC"));
    EXPECT_TRUE(IsValidSymbolName(L"开孔 22mm"));
    EXPECT_TRUE(IsValidSymbolName(std::wstring(32, L'x'))); // no 31-character limit of our own
    EXPECT_FALSE(IsValidSymbolName(L""));
    EXPECT_FALSE(IsValidSymbolName(std::wstring(256, L'x')));
    EXPECT_FALSE(IsValidSymbolName(L" lead"));
    EXPECT_FALSE(IsValidSymbolName(L"trail "));
    for (const wchar_t* bad : {L"a<b", L"a/b", L"a\\b", L"a\"b", L"a:b", L"a;b", L"a?b", L"a*b",
                               L"a|b", L"a,b", L"a=b", L"a`b", L"a\tb"})
        EXPECT_FALSE(IsValidSymbolName(bad)) << bad;
}
