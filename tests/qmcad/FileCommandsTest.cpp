// Saving and opening at the command line and through scripts: version words, backups, prompts.
#include "EditorTestHost.h"

#include "base/FileSystem.h"

#include <gtest/gtest.h>

namespace {

std::string HeaderVersion(const std::wstring& strPath) {
    std::string bytes = ReadBytes(strPath);
    size_t at = bytes.find("$ACADVER");
    return at == std::string::npos ? "" : bytes.substr(bytes.find("AC", at + 8), 6);
}

size_t SolidCount(AcDbDatabase* pDb) {
    size_t n = 0;
    acdbWithObject<AcDbBlockTableRecord>(pDb->modelSpaceId(), [&](const AcDbBlockTableRecord& b) {
        for (AcDbObjectId id : b.entities())
            n += id.isValid() && !id.isErased() && dynamic_cast<AcDb3dSolid*>(id.stub()->pObject);
    });
    return n;
}

} // namespace

TEST(SaveAsCommand, ScriptFormWithIsavebakReplacesTheFileAndKeepsTheOldOneAsBak) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    CTempDir dir;
    std::wstring strPath = dir / L"item.dwg";
    WriteEmptyDrawing(strPath);
    std::string old = ReadBytes(strPath);
    IAcadDocument* pDoc = ed.m_automation.ActiveDocument();
    ASSERT_NE(pDoc, nullptr);
    ed.Command({L"BOX", L"0,0", L"L", L"10", L"10", L"-1"});
    ASSERT_TRUE(pDoc->SendCommand(L"SetVar CMDECHO 0 "));
    ASSERT_TRUE(pDoc->SendCommand(L"SetVar FILEDIA 0 "));
    ASSERT_TRUE(pDoc->SendCommand(L"SaveAs\n2004\n" + strPath + L"\ny\n"));
    EXPECT_EQ(ReadBytes(dir / L"item.bak"), old);
    EXPECT_EQ(HeaderVersion(strPath), "AC1018");
    EXPECT_EQ(ed.Doc()->fileName(), strPath);
    AcDbDatabase copy(false, true);
    ASSERT_EQ(copy.readDwgFile(strPath.c_str()), Acad::eOk);
    EXPECT_EQ(SolidCount(&copy), 1u);
    // Versions the codec can't write come out as 2000; without ISAVEBAK no backup.
    FsDeleteFile(dir / L"item.bak");
    ASSERT_TRUE(pDoc->SendCommand(L"SetVar ISAVEBAK 0 "));
    ASSERT_TRUE(pDoc->SendCommand(L"SaveAs\n2007\n" + strPath + L"\ny\n"));
    EXPECT_EQ(HeaderVersion(strPath), "AC1015");
    EXPECT_FALSE(FsExists(dir / L"item.bak"));
    // A refused replace saves nothing; a word that is no version is an error.
    EXPECT_NE(ed.Command({L"SAVEAS", L"2000", strPath, L"n"}), RTNORM);
    EXPECT_NE(ed.Command({L"SAVEAS", L"1999", strPath}), RTNORM);
}

TEST(FileCommands, AScriptOpensADrawingChangesItSavesAndClosesIt) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    CTempDir dir;
    std::wstring strPath = dir / L"panel.dwg";
    WriteEmptyDrawing(strPath);
    ed.m_vars.Set(L"FILEDIA", SYSVAR_VALUE::Short(0));
    host.Run({L"OPEN", strPath, L"BOX 0,0 L 10 10 -1", L"QSAVE", L"BOX 0,0 L 5 5 -1", L"CLOSE",
              L"N", L"NEW", L".", L"OPEN", strPath});
    ASSERT_NE(ed.Db(), nullptr);
    EXPECT_EQ(ed.Doc()->fileName(), strPath);
    EXPECT_EQ(SolidCount(ed.Db()), 1u); // the second box was not saved
    EXPECT_TRUE(FsExists(dir / L"panel.bak"));
    EXPECT_EQ(ed.m_docs.documentCount(), 3); // the first drawing, the new one, the reopened file
}

TEST(FileCommands, DatabaseSaveAsTakesTheEditorsVersionCodesAndMakesABackupWhenAsked) {
    CTempDir dir;
    std::wstring strPath = dir / L"a.dwg";
    WriteEmptyDrawing(strPath);
    AcDbDatabase db;
    ASSERT_EQ(db.saveAs(strPath.c_str(), false, AcDb::kDHL_1800), Acad::eOk);
    EXPECT_EQ(HeaderVersion(strPath), "AC1018");
    EXPECT_FALSE(FsExists(dir / L"a.bak"));
    ASSERT_EQ(db.saveAs(strPath.c_str(), true, AcDb::kDHL_1014), Acad::eOk);
    EXPECT_EQ(HeaderVersion(strPath), "AC1015");
    EXPECT_EQ(HeaderVersion(dir / L"a.bak"), "AC1018");
}
