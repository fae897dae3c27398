// The record of a library item, the parts database hand-over, and saving an item's document.
#include "library/ItemSave.h"

#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "app/LibState.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "drawingdata/DrawingRecords.h"
#include "host/HostAutomation.h"
#include "host/HostDocuments.h"
#include "host/HostEditor.h"
#include "host/HostUi.h"
#include "host/SuiteMainLib.h"
#include "host/db/AcDb.h"
#include "library/SlideScript.h"
#include "shared/MainLibHandOver.h"
#include "shared/MyFtpConnection.h"

#include <algorithm>

namespace {

std::wstring StemOf(const std::wstring& strFile) {
    std::wstring strName = GetFileName(strFile);
    if (strName.empty())
        strName = strFile;
    if (EqualsNoCase(StrRight(strName, 4), L".dwg"))
        strName = StrLeft(strName, static_cast<int>(strName.size()) - 4);
    return strName;
}

// The record's database stays the working one only while the marker is written.
class CWorkingDatabase {
public:
    explicit CWorkingDatabase(AcDbDatabase* pDb) {
        m_pOld = acdbHostApplicationServices()->workingDatabase();
        acdbHostApplicationServices()->setWorkingDatabase(pDb);
    }
    ~CWorkingDatabase() { acdbHostApplicationServices()->setWorkingDatabase(m_pOld); }

private:
    AcDbDatabase* m_pOld = nullptr;
};

} // namespace

CStringArray ItemRecordPairs(const ITEM_RECORD& record, const std::wstring& strFile) {
    std::wstring strModel = record.strModel.empty() ? StemOf(strFile) : record.strModel;
    return {L"推荐名称", record.strName, L"推荐型号", strModel, L"推荐编码", record.strCode};
}

void WriteItemRecord(CLibState& state, CMyFtpConnection* pFtp, AcDbDatabase* pDb,
                     const ITEM_RECORD& record, const std::wstring& strFile, int nFlag) {
    if (!pDb)
        return;
    CStringArray pairs = ItemRecordPairs(record, strFile);
    {
        CWorkingDatabase working(pDb);
        pDb->updateExt();
        WriteRecommendedPairs(pDb, pairs);
    }
    STRUCT_MAIN_LIB_ENTRY entry;
    entry.strName = pairs[1];
    entry.strModel = pairs[3];
    entry.strCode = pairs[5];
    entry.strFileName = GetFileName(strFile);
    entry.strDrawing = strFile;
    entry.strLibDir = state.strRelDir;
    entry.nFlag = nFlag;
    if (state.g_nFtpMode == 1 && !pFtp)
        return; // a shared mode without its connection cannot take the lock
    if (pFtp) {
        HandOverToMainLib(*pFtp, state.g_nFtpMode, entry);
        return;
    }
    TzSaveHoleDataToEPartLib(entry.strCode, entry.strModel, entry.strName, entry.strFileName,
                             entry.nFlag);
}

bool IsDocumentSaveFormat(const std::wstring& strFormat) {
    for (const wchar_t* p : {L"8", L"12", L"24", L"36"})
        if (strFormat == p)
            return true;
    return false;
}

std::wstring VersionWordOfFormat(const std::wstring& strFormat) {
    if (strFormat == L"8")
        return L"R14";
    if (strFormat == L"12")
        return L"2000";
    if (strFormat == L"24")
        return L"2004";
    return L"2007";
}

std::wstring ZoomWithMarginLine(AcDbDatabase* pDb) {
    pDb->updateExt();
    AcGePoint3d lo = pDb->extmin(), hi = pDb->extmax();
    double dHalf = std::max(hi.x - lo.x, hi.y - lo.y) / 2.0;
    std::wstring strLine = Format(L"(Command \"zoom\" \"W\" \"%f,%f,%f\" \"%f,%f,%f\" ) ",
                                  lo.x - dHalf, lo.y - dHalf, 0.0, hi.x + dHalf, hi.y + dHalf, 0.0);
    StrReplace(strLine, L"\\", L"\\\\");
    return strLine;
}

CSaveBakBracket::CSaveBakBracket(bool bActive) : m_bActive(bActive) {
    if (!m_bActive)
        return;
    GetIntVar(L"ISAVEBAK", m_nOld);
    if (m_nOld == 0)
        SetIntVar(L"ISAVEBAK", 1);
}

void CSaveBakBracket::Restore(const std::wstring& strPath) {
    if (!m_bActive || m_nOld != 0)
        return;
    SetIntVar(L"ISAVEBAK", 0);
    FsDeleteFile(RemoveFileExt(strPath) + L".bak");
}

namespace {

// The document of the file, made current and active, opened when it is not.
IAcadDocument* BringUpDocument(IAcadApplication& app, const std::wstring& strPath) {
    IAcadDocuments* pDocs = app.Documents();
    if (!pDocs)
        return nullptr;
    IAcadDocument* pDoc = pDocs->Item(strPath);
    if (!pDoc)
        pDoc = pDocs->Open(strPath);
    if (!pDoc) {
        QmMessageBox(L"文件" + strPath + L"打开失败!", MB_ICONEXCLAMATION);
        return nullptr;
    }
    pDoc->Activate();
    app.Update();
    app.MaximizeActiveFrame();
    return pDoc;
}

void CommitSavedItem(CLibState& state, CMyFtpConnection& ftp, const std::wstring& strPath,
                     bool bSlide) {
    std::wstring strRemote = state.strRelDir + state.strSelItem;
    std::wstring strSlide = SlidePathOf(strPath);
    if (bSlide && IsFileExist(strSlide))
        ftp.CommitFile(strSlide, SlidePathOf(strRemote));
    ftp.CommitFile(strPath, strRemote);
    ftp.DeleteRemoteFile(strRemote + L".bak");
    FsDeleteFile(RemoveFileExt(strPath) + L".bak");
}

} // namespace

bool SaveItemDrawing(CLibState& state, CMyFtpConnection* pFtp, const std::wstring& strPath,
                     bool bSave, bool bSlide) {
    AcDbDatabase* pDb = nullptr;
    bool bOwned = GetDatabaseOfFile(strPath, pDb);
    if (!pDb)
        return false;
    if (bOwned)
        delete pDb; // the document's own database is read below
    IAcadApplication* pApp = GetAcadApplication();
    IAcadDocument* pDoc = pApp ? BringUpDocument(*pApp, strPath) : nullptr;
    if (!pDoc)
        return false;
    AcApDocManager* pManager = acDocManagerPtr();
    AcApDocument* pCur = pManager ? pManager->curDocument() : nullptr;
    AcDbDatabase* pDocDb = pCur ? pCur->database() : nullptr;

    std::wstring strFormat, strWord = L"2007";
    bool bRestoreFormat = false;
    CSaveBakBracket saveBak(bSave);
    if (bSave) {
        acedGetEnv(L"DefaultFormatForSave", strFormat);
        bRestoreFormat = !IsDocumentSaveFormat(strFormat);
        if (bRestoreFormat)
            acedSetEnv(L"DefaultFormatForSave", L"36");
        strWord = VersionWordOfFormat(bRestoreFormat ? L"36" : strFormat);
        SetIntVar(L"CMDECHO", 0);
        SetIntVar(L"FILEDIA", 0);
    }
    if (bSlide) {
        SendSlideScript(pDoc, SlidePathOf(strPath));
        if (pDocDb)
            pDoc->SendCommand(ZoomWithMarginLine(pDocDb));
    }
    if (bSave) {
        pDoc->SendCommand(Format(L"SaveAs\n%s\n%s\ny\n", strWord, strPath));
        SetIntVar(L"CMDECHO", 1);
        SetIntVar(L"FILEDIA", 1);
    }
    saveBak.Restore(strPath);
    pDoc->Close(false, L"");
    if (bRestoreFormat)
        acedSetEnv(L"DefaultFormatForSave", strFormat);
    IAcadDocuments* pDocs = pApp->Documents();
    if (pDocs && pDocs->Count() == 0)
        pDocs->Add(L"");
    if (state.g_nFtpMode != 0 && pFtp)
        CommitSavedItem(state, *pFtp, strPath, bSlide);
    return true;
}
