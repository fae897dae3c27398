// Document services: SDI rules, lookup by name, posted opens and news, editor services.
#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "base/FileSystem.h"
#include "editor/LispReader.h"
#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include "EditorTestHost.h"

#include <gtest/gtest.h>

TEST(DocumentServices, SdiEqualsOneForOpeningAndNonZeroForLocking) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    ed.m_docs.NewDocument();
    for (int nSdi : {0, 1, 2, 3}) {
        ASSERT_TRUE(SetIntVar(L"SDI", nSdi));
        EXPECT_EQ(GetDocumentCount(), nSdi == 1 ? 1 : 2) << nSdi;
        CHostDocument* pDoc = ed.m_docs.Current();
        pDoc->m_nWriteLocks = 0;
        EXPECT_TRUE(LockCurrentDocument());
        EXPECT_EQ(pDoc->m_nWriteLocks, nSdi == 0 ? 1 : 0) << nSdi;
        EXPECT_TRUE(UnlockCurrentDocument());
    }
    SetIntVar(L"SDI", 0);
    ed.m_docs.CloseDocument(ed.m_docs.Current());
    ed.m_docs.CloseDocument(ed.m_docs.Current());
    EXPECT_EQ(GetDocumentCount(), 0);
    EXPECT_FALSE(LockCurrentDocument());
    NewDefaultDocument(); // no current document: nothing posted
    host.Run({});
    EXPECT_EQ(GetDocumentCount(), 0);
    SetIntVar(L"SDI", 1);
    EXPECT_EQ(GetDocumentCount(), 1);
}

TEST(DocumentServices, OpenActivateAndLookupByName) {
    CEditorTestHost host;
    CTempDir dir;
    WriteEmptyDrawing(dir / L"A.dwg");
    WriteEmptyDrawing(dir / L"com1.dwg");
    EXPECT_FALSE(OpenOrActivate(dir / L"com1.dwg", true)); // refused like a device
    EXPECT_FALSE(OpenOrActivate(dir / L"missing.dwg", true));
    EXPECT_FALSE(OpenOrActivate(dir / L"A.dwg", true)); // only in the application context
    OpenDocumentPosted(dir / L"A.dwg");                 // posted, runs when the loop comes back
    host.Run({});
    EXPECT_TRUE(IsDocumentOpen(dir / L"a.DWG")); // case does not matter
    EXPECT_EQ(GetDocumentCount(), 2);

    AcApDocument* pOther = nullptr;
    EXPECT_FALSE(IsOpenInOtherDocument(dir / L"A.dwg", true, pOther)); // it is current
    EXPECT_EQ(pOther, nullptr);
    EXPECT_TRUE(IsOpenInOtherDocument(L"x\\Drawing1.dwg", false, pOther)); // bare name rule
    ASSERT_NE(pOther, nullptr);
    EXPECT_EQ(pOther->fileName(), L"Drawing1.dwg");
    EXPECT_FALSE(OpenOrActivate(L"Drawing1.dwg", false)); // a bare name has no last element
    EXPECT_TRUE(OpenOrActivate(L"any\\Drawing1.dwg", false));
    EXPECT_EQ(host.m_editor.m_docs.Current(), pOther);
    EXPECT_EQ(host.m_editor.m_docs.ResourceDepth(), 0);
}

TEST(DocumentServices, NewFromTemplateOnlyInTheApplicationContext) {
    CEditorTestHost host;
    NewDefaultDocument();
    host.Run({});
    EXPECT_EQ(GetDocumentCount(), 2);
    NewDocumentProc(const_cast<wchar_t*>(g_szDefaultTemplate)); // called in document context
    EXPECT_EQ(host.m_strPrinted, L"\nERROR: in Document context : Drawing2.dwg\n");
}

TEST(DocumentServices, SingleDocumentOpenGoesThroughSyncOpen) {
    CEditorTestHost host;
    CTempDir dir;
    WriteEmptyDrawing(dir / L"B.dwg");
    SetIntVar(L"SDI", 1);
    EXPECT_TRUE(OpenOrActivate(dir / L"B.dwg", true)); // unnamed drawing: always opens
    EXPECT_EQ(GetCurDwgPrefix() + GetCurDwgName(), dir / L"B.dwg");
    EXPECT_TRUE(IsCurDwgTitled());
    EXPECT_EQ(host.m_editor.m_docs.documentCount(), 1); // replaced, not added
}

TEST(EditorServices, CmdEchoBracketPostingAndLispPaths) {
    CEditorTestHost host;
    ASSERT_TRUE(SetIntVar(L"CMDECHO", 2));
    EXPECT_EQ(RunCommandQuiet({L"ZOOM", L"E"}), RTNORM);
    int nEcho = 0;
    ASSERT_TRUE(GetIntVar(L"CMDECHO", nEcho));
    EXPECT_EQ(nEcho, 2);
    EXPECT_EQ(host.m_strPrinted, L""); // quiet, and ZOOM took its answer without a prompt
    EXPECT_NE(RunCommandQuiet({L"NOSUCH"}), RTNORM);

    EXPECT_FALSE(PostCommandString(L""));
    EXPECT_TRUE(host.m_editor.m_docs.Current()->m_posted.empty());
    std::wstring strValue;
    EXPECT_FALSE(GetStrVar(L"CMDECHO", strValue)); // not a string variable
    EXPECT_FALSE(GetIntVar(L"NOSUCHVAR", nEcho));
    EXPECT_EQ(nEcho, 2); // unchanged

    std::wstring strPath = L"d:\\库 a\\b.dwg";
    LISP_FORM form = ReadLispForm(L"(command \"OPEN\" \"" + LispPath(strPath) + L"\")");
    ASSERT_TRUE(form.bOk);
    EXPECT_EQ(form.words[1], strPath);
}

TEST(DocumentServices, DatabaseOfFileTellsWhoOwnsIt) {
    CEditorTestHost host;
    CTempDir dir;
    WriteEmptyDrawing(dir / L"Open.dwg");
    WriteEmptyDrawing(dir / L"Closed.dwg");
    WriteBytes(dir / L"Bad.dwg", "AC1018 binary");
    ASSERT_NE(host.m_editor.m_docs.OpenDocument(dir / L"Open.dwg"), nullptr);
    EXPECT_TRUE(IsFileOpenElsewhere(dir / L"Open.dwg")); // the editor holds its file

    AcDbDatabase* pDb = nullptr;
    EXPECT_FALSE(GetDatabaseOfFile(dir / L"OPEN.dwg", pDb)); // the document's: not ours to free
    EXPECT_EQ(pDb, host.m_editor.m_docs.Current()->database());
    ASSERT_TRUE(GetDatabaseOfFile(dir / L"Closed.dwg", pDb));
    ASSERT_NE(pDb, nullptr);
    delete pDb;
    EXPECT_FALSE(GetDatabaseOfFile(dir / L"Bad.dwg", pDb));
    EXPECT_EQ(pDb, nullptr);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(),
              host.m_editor.m_docs.Current()->database());
    host.m_editor.m_docs.CloseDocument(host.m_editor.m_docs.Current());
    EXPECT_FALSE(IsFileOpenElsewhere(dir / L"Open.dwg"));
}
