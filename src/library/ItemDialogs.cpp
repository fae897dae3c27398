// The entry dialog of a new item and the save dialog of an edited one, for both libraries.
#include "library/ItemDialogs.h"

#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "app/LibState.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/NumberText.h"
#include "base/StrUtil.h"
#include "drawingdata/DrawingRecords.h"
#include "drawingdata/ProcessXdictInfo.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/SymbolReader.h"
#include "host/HostAutomation.h"
#include "host/HostDocuments.h"
#include "host/HostEditor.h"
#include "host/HostInput.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "host/db/AcDb.h"
#include "library/DatabaseSave.h"
#include "library/ItemSave.h"
#include "library/SlideScript.h"
#include "shared/MyFtpConnection.h"

namespace {

ItemDialogViewFactory g_viewFactory;

AcApDocument* ActiveDocument() {
    AcApDocManager* pDocs = acDocManagerPtr();
    return pDocs ? pDocs->mdiActiveDocument() : nullptr;
}

void AddDocumentIfNone() {
    IAcadApplication* pApp = GetAcadApplication();
    IAcadDocuments* pDocs = pApp ? pApp->Documents() : nullptr;
    if (pDocs && pDocs->Count() == 0)
        pDocs->Add(L"");
}

} // namespace

void SetItemDialogViewFactory(ItemDialogViewFactory factory) {
    g_viewFactory = std::move(factory);
}

std::unique_ptr<IItemDialogView> MakeItemDialogView() {
    return g_viewFactory ? g_viewFactory() : nullptr;
}

ITEM_DIALOG_TEMPLATE EntryDialogTemplate(LibraryKind kind) {
    ITEM_DIALOG_TEMPLATE tmpl;
    if (kind == LibraryKind::Layout) {
        tmpl.nTemplate = 405;
        tmpl.pszClass = L"CLSBlockDlg";
        tmpl.pszTitle = L"图形入库";
        tmpl.pszHint = L"提示: 图形编辑结束后,单击“确定”并框选图形即可入库";
        tmpl.nName = tmpl.nModel = tmpl.nCode = 0;
        tmpl.bIconButtons = true;
    }
    return tmpl;
}

ITEM_DIALOG_TEMPLATE SaveDialogTemplate(LibraryKind kind) {
    ITEM_DIALOG_TEMPLATE tmpl;
    tmpl.nTemplate = 408;
    tmpl.pszClass = L"CCirFileSaveDlg";
    tmpl.pszTitle = L"开孔图修改";
    tmpl.nBaseX = 608;
    tmpl.nBaseY = 609;
    tmpl.nName = 605;
    tmpl.nModel = 606;
    tmpl.nCode = 607;
    if (kind == LibraryKind::Layout) {
        tmpl.nTemplate = 407;
        tmpl.pszClass = L"CLSFileSaveDlg";
        tmpl.pszTitle = L"保存修改";
        tmpl.pszHint = L"提示: 图形编辑结束后,单击“确定”保存修改";
        tmpl.nName = tmpl.nModel = tmpl.nCode = 0;
        tmpl.bIconButtons = true;
    }
    return tmpl;
}

// ---- both dialogs ----

CItemDialog::CItemDialog(CLibState& state, CMyFtpConnection* pFtp, LibraryKind kind,
                         const ITEM_DIALOG_TEMPLATE& tmpl, std::unique_ptr<IItemDialogView> pView)
    : m_state(state), m_pFtp(pFtp), m_kind(kind), m_tmpl(tmpl), m_pView(std::move(pView)) {}

CItemDialog::~CItemDialog() = default;

bool CItemDialog::Create() {
    if (!m_pView || !m_pView->Create(m_tmpl, *this))
        return false;
    m_bCreated = true;
    // Beside the drawing: the right edge 10 short of the main window's.
    ITEM_DIALOG_RECT rect = m_pView->WindowRect();
    rect.x += m_pView->FrameWidth() - rect.cx - 10;
    rect.y += 45;
    m_pView->MoveWindow(rect);
    OnInitDialog();
    return true;
}

void CItemDialog::Show() {
    m_pView->Show(true);
}

void CItemDialog::Activate() {
    m_pView->Activate();
}

bool CItemDialog::IsIconic() {
    return m_pView->IsIconic();
}

void CItemDialog::Restore() {
    m_pView->Restore();
}

void CItemDialog::DestroyWindow() {
    if (m_bCreated)
        m_pView->Destroy();
    m_bCreated = false;
}

void CItemDialog::OnBtnPick() {
    m_pView->Show(false);
    m_pView->ActivateFrame();
    AcGePoint3d pt;
    if (acedGetPoint(nullptr, L"", pt) == RTNORM) {
        m_pView->SetText(m_tmpl.nBaseX, Format(L"%.2f", pt.x));
        m_pView->SetText(m_tmpl.nBaseY, Format(L"%.2f", pt.y));
    }
    m_pView->Show(true);
    m_pView->Activate();
}

bool CItemDialog::ReadBasePoint() {
    std::wstring strX = StrTrim(m_pView->GetText(m_tmpl.nBaseX));
    std::wstring strY = StrTrim(m_pView->GetText(m_tmpl.nBaseY));
    m_dBaseX = TextToReal(strX);
    m_dBaseY = TextToReal(strY);
    return !strX.empty() && !strY.empty();
}

std::wstring CItemDialog::FieldText(int nId) {
    return nId ? m_pView->GetText(nId) : L"";
}

void CItemDialog::ConnectOrFallBack() {
    bool bConnected = m_pFtp && m_pFtp->Connect();
    if (bConnected || m_state.g_nFtpMode == 0)
        return;
    m_state.g_nFtpMode = 0;
    QmMessageBox(L"\n网络无连接,请检查网络连接后再重试!", MB_ICONSTOP);
}

void CItemDialog::EndDialog(IModelessWindow*& pSlot, bool bReloadBrowser) {
    ILibraryBrowser* pBrowser = m_state.pLibDlg;
    if (pSlot == this) {
        DestroyModelessWindow(pSlot); // deletes this dialog
    } else {
        DestroyWindow();
    }
    if (!pBrowser)
        return;
    pBrowser->Show();
    pBrowser->Activate();
    if (bReloadBrowser)
        pBrowser->ReloadList();
}

// ---- the entry dialog of a new item ----

CCirWblockDlg::CCirWblockDlg(CLibState& state, CMyFtpConnection* pFtp,
                             std::unique_ptr<IItemDialogView> pView, LibraryKind kind)
    : CItemDialog(state, pFtp, kind, EntryDialogTemplate(kind), std::move(pView)) {}

void CCirWblockDlg::OnInitDialog() {
    // The new name once went into the model and was then read back from the
    // empty field: the model stays blank unless the user fills it.
    m_strModel = GetFileName(m_state.strDwgFile);
    for (int nId : {m_tmpl.nBaseX, m_tmpl.nBaseY, m_tmpl.nName, m_tmpl.nModel, m_tmpl.nCode})
        if (nId)
            m_pView->SetText(nId, L"");
    m_strModel = FieldText(m_tmpl.nModel);
}

void CCirWblockDlg::OnCancel() {
    m_state.nNewState = 2;
    EndDialog(m_state.pBlockDlg, false);
}

void CCirWblockDlg::OnOK() {
    m_strName = FieldText(m_tmpl.nName);
    m_strModel = FieldText(m_tmpl.nModel);
    m_strCode = FieldText(m_tmpl.nCode);
    if (IsHole())
        ConnectOrFallBack();
    m_state.nNewState = 1;
    m_state.strNewSource = m_state.strDwgFile;
    m_state.strNewName = GetFileName(m_state.strDwgFile);
    m_pView->ActivateFrame();
    LockCurrentDocument();
    if (IsHole())
        InstallMouseFilter();
    bool bWritten = WriteNewItem();
    if (IsHole())
        RemoveMouseFilter();
    UnlockCurrentDocument();
    if (bWritten)
        EndDialog(m_state.pBlockDlg, false);
}

namespace {

// The window the user shows, asked without the mouse filter in the way.
bool AskWindow(bool bFilter, AcGePoint3d& pt1, AcGePoint3d& pt2) {
    if (bFilter)
        RemoveMouseFilter();
    int nResult = acedGetPoint(nullptr, L"\n请选择图纸范围的一角:", pt1);
    if (nResult == RTNORM)
        nResult = acedGetCorner(pt1, L"\n请选择图纸范围的另一角:\n", pt2);
    if (bFilter)
        InstallMouseFilter();
    return nResult == RTNORM;
}

// The symbols among the selection whose part records travel, and the selection's extents.
void ScanSelection(const AcDbObjectIdArray& ids, AcDbObjectIdArray& symbols, AcDbExtents& ext) {
    for (AcDbObjectId id : ids)
        acdbWithObject<AcDbEntity>(id, [&](AcDbEntity& ent) {
            if (ClassifySymbol(&ent) == SYMB_SECOND_LEVEL)
                symbols.push_back(id);
            AcDbExtents one;
            ent.getGeomExtents(one);
            if (one.isValid())
                ext.addExt(one);
        });
}

} // namespace

bool CCirWblockDlg::WriteNewItem() {
    AcGePoint3d pt1, pt2;
    if (!AskWindow(IsHole(), pt1, pt2))
        return false;
    AcDbObjectIdArray ids;
    if (acedSSGet(L"C", pt1, pt2, ids) != RTNORM || ids.empty()) {
        acutPrintf(L"无待入库图形，建库失败！\n");
        return false;
    }
    AcDbObjectIdArray symbols;
    AcDbExtents ext;
    ScanSelection(ids, symbols, ext);
    AcGePoint3d base((ext.minPoint().x + ext.maxPoint().x) / 2,
                     (ext.minPoint().y + ext.maxPoint().y) / 2, 0.0);
    if (ReadBasePoint())
        base = AcGePoint3d(m_dBaseX, m_dBaseY, 0.0);

    AcDbDatabase* pCur = acdbHostApplicationServices()->workingDatabase();
    AcDbDatabase* pOut = nullptr;
    if (!pCur || pCur->wblock(pOut, ids, base) != Acad::eOk || !pOut) {
        acutPrintf(L"写块失败！\n");
        return false;
    }
    if (m_state.g_nFtpMode == 1)
        m_state.strDwgFile = m_state.strWorkingFile;
    const std::wstring strFile = m_state.strDwgFile;
    int nStatus = SaveDatabaseToFile(pOut, strFile);
    delete pOut;
    if (nStatus != Acad::eOk) {
        acutPrintf(L"写块失败！\n");
        return false;
    }

    // The part records of the selected symbols follow them into the new file.
    AcDbDatabase* pNew = nullptr;
    bool bOwned = GetDatabaseOfFile(strFile, pNew);
    if (!pNew)
        return false;
    CProcessXdictInfo info;
    info.sourceDb = pNew;
    info.sourcePath = strFile;
    info.sourceSaved = 1;
    info.targetDb = pCur;
    info.targetPath = GetCurDwgPrefix() + GetCurDwgName();
    info.targetSaved = IsCurDwgTitled();
    info.entities = symbols;
    info.ProcessWrittenDrawing();
    // The record goes in before the second save, so the file carries it.
    if (IsHole())
        WriteItemRecord(m_state, m_pFtp, pNew, {m_strName, m_strModel, m_strCode}, strFile, 0);
    SaveDatabaseToFile(pNew, strFile);
    if (bOwned)
        delete pNew;

    if (!IsDocumentOpen(strFile))
        OpenOrActivate(strFile, true);
    m_state.bNewPending = 1;
    PostCommandString(IsHole() ? L"(Command)\nMakeSld\n" : L"(Command)\nLaySketchMakeSld\n");
    acutPrintf(L"/n*****新建库文件成功*****/n");
    return true;
}

// ---- the save dialog of an edited item ----

CCirFileSaveDlg::CCirFileSaveDlg(CLibState& state, CMyFtpConnection* pFtp,
                                 std::unique_ptr<IItemDialogView> pView, LibraryKind kind)
    : CItemDialog(state, pFtp, kind, SaveDialogTemplate(kind), std::move(pView)) {}

void CCirFileSaveDlg::OnInitDialog() {
    AcApDocument* pDoc = ActiveDocument();
    AcDbDatabase* pDb = pDoc ? pDoc->database() : nullptr;
    AcGePoint3d base = pDb ? pDb->insbase() : AcGePoint3d();
    m_dBaseX = base.x;
    m_dBaseY = base.y;
    m_pView->SetText(m_tmpl.nBaseX, Format(L"%.2f", base.x));
    m_pView->SetText(m_tmpl.nBaseY, Format(L"%.2f", base.y));
    if (!IsHole() || !pDb)
        return;
    CStringArray pairs;
    ReadRecommendedPairs(pDb, pairs);
    m_strName = FindPairValue(pairs, L"推荐名称");
    m_strModel = FindPairValue(pairs, L"推荐型号");
    m_strCode = FindPairValue(pairs, L"推荐编码");
    m_pView->SetText(m_tmpl.nName, m_strName);
    m_pView->SetText(m_tmpl.nModel, m_strModel);
    m_pView->SetText(m_tmpl.nCode, m_strCode);
}

std::wstring CCirFileSaveDlg::RelPath() const {
    return m_state.strRelDir + m_state.strSelItem;
}

bool CCirFileSaveDlg::CheckDocument(bool bCommandTest) {
    AcApDocument* pDoc = ActiveDocument();
    if (!pDoc || !EqualsNoCase(pDoc->fileName(), m_state.strWorkingFile)) {
        QmMessageBox(pDoc ? Format(L"文件 %s 不是当前文档，请选择或打开该文件后继续操作",
                                   m_state.strWorkingFile)
                          : Format(L"图形已经关闭,请重新打开图形文件%s", m_state.strWorkingFile),
                     MB_ICONEXCLAMATION);
        m_pView->ActivateFrame();
        EndDialog(m_state.pSaveDlg, false);
        return false;
    }
    std::wstring strCommands;
    if (bCommandTest && GetStrVar(L"CMDNAMES", strCommands) && !strCommands.empty()) {
        QmMessageBox(Format(L"请结束当前执行命令%s！", strCommands), MB_ICONEXCLAMATION);
        return false;
    }
    return true;
}

void CCirFileSaveDlg::OnOK() {
    if (!CheckDocument(true))
        return;
    if (IsHole())
        SaveHoleItem();
    else
        SaveLayoutItem();
}

void CCirFileSaveDlg::SaveHoleItem() {
    ConnectOrFallBack();
    AcApDocument* pDoc = ActiveDocument();
    acDocManagerPtr()->activateDocument(pDoc);
    AcDbDatabase* pDb = pDoc->database();
    ReadBasePoint();
    m_strName = FieldText(m_tmpl.nName);
    m_strModel = FieldText(m_tmpl.nModel);
    m_strCode = FieldText(m_tmpl.nCode);
    LockCurrentDocument();
    if (pDb->setInsbase(AcGePoint3d(m_dBaseX, m_dBaseY, 0.0)) != Acad::eOk)
        acutPrintf(L"\n设置新基点失败！");
    InstallMouseFilter();
    WriteItemRecord(m_state, m_pFtp, pDb, {m_strName, m_strModel, m_strCode},
                    m_state.strWorkingFile, 1);
    UnlockCurrentDocument();
    SaveItemDrawing(m_state, m_pFtp, m_state.strWorkingFile, true, true);
    RemoveMouseFilter();
    EndDialog(m_state.pSaveDlg, true);
}

namespace {

// A layout item: its database saved as it is, then the slide and the save in the document.
void SaveLayoutDocument(AcDbDatabase* pDb, const std::wstring& strPath, double dX, double dY) {
    LockCurrentDocument();
    if (pDb->setInsbase(AcGePoint3d(dX, dY, 0.0)) != Acad::eOk)
        acutPrintf(L"\n设置新基点失败！");
    SaveDatabaseToFile(pDb, strPath);
    UnlockCurrentDocument();
    IAcadApplication* pApp = GetAcadApplication();
    IAcadDocuments* pDocs = pApp ? pApp->Documents() : nullptr;
    IAcadDocument* pDoc = pDocs ? pDocs->Item(strPath) : nullptr;
    if (!pDoc)
        return;
    SendSlideScript(pDoc, SlidePathOf(strPath));
    pDoc->SendCommand(ZoomWithMarginLine(pDb));
    CSaveBakBracket saveBak;
    pDoc->SendCommand(L"SetVar CMDECHO 0 ");
    pDoc->SendCommand(L"SetVar FILEDIA 0 ");
    pDoc->SendCommand(Format(L"SaveAs\n%s\n%s\ny\n", L"2000", strPath));
    pDoc->SendCommand(L"SetVar FILEDIA 1 ");
    pDoc->SendCommand(L"SetVar CMDECHO 1 ");
    saveBak.Restore(strPath);
    pDoc->Close(false, L"");
}

} // namespace

void CCirFileSaveDlg::SaveLayoutItem() {
    AcApDocument* pDoc = ActiveDocument();
    AcDbDatabase* pDb = pDoc->database();
    ReadBasePoint();
    const std::wstring strWorking = m_state.strWorkingFile;
    const bool bShared = m_state.g_nFtpMode == 1 && m_pFtp;
    if (bShared && m_pFtp->IsLockRevokedPrompt(RelPath())) {
        CloseUnsaved();
        AddDocumentIfNone();
        EndDialog(m_state.pSaveDlg, false);
        return;
    }
    if (bShared && !IsDocumentOpen(strWorking)) {
        m_pFtp->DeleteRemoteFile(RelPath() + L".bak");
        ClearTempFTP();
        return;
    }
    SaveLayoutDocument(pDb, strWorking, m_dBaseX, m_dBaseY);
    if (bShared)
        CommitLayoutCopy();
    m_pView->ActivateFrame();
    AddDocumentIfNone();
    EndDialog(m_state.pSaveDlg, false);
}

void CCirFileSaveDlg::CommitLayoutCopy() {
    std::wstring strLocalRoot = GetQuillmLocalInstallPath();
    std::wstring strTemp = JoinPath(strLocalRoot, L"Temp");
    if (!IsDirExist(strTemp))
        CreateDirPath(strTemp);
    std::wstring strCopy = JoinPath(strTemp, GetFileName(m_state.strWorkingFile));
    FsCopyFile(m_state.strWorkingFile, strCopy, false);
    for (;;) {
        if (m_pFtp->CommitFile(strCopy, RelPath())) {
            m_pFtp->DeleteRemoteFile(RelPath() + L".bak");
            break;
        }
        if (QmMessageBox(Format(L"库文件%s保存失败，是否重试？", RelPath()),
                         MB_RETRYCANCEL | MB_ICONEXCLAMATION) != IDRETRY)
            break;
    }
    SetIntVar(L"CMDECHO", 1);
    FsDeleteFile(strCopy);
    ClearTempFTP();
    std::wstring strTempFtp = JoinPath(strLocalRoot, L"TempFTP");
    DeleteDirTree(strTempFtp);
    CreateDirPath(strTempFtp);
}

void CCirFileSaveDlg::CloseUnsaved() {
    IAcadApplication* pApp = GetAcadApplication();
    IAcadDocuments* pDocs = pApp ? pApp->Documents() : nullptr;
    IAcadDocument* pDoc = pDocs ? pDocs->Item(m_state.strWorkingFile) : nullptr;
    if (pDoc)
        pDoc->Close(false, L"");
}

void CCirFileSaveDlg::OnCancel() {
    if (!CheckDocument(IsHole()))
        return;
    CloseUnsaved();
    if (m_state.g_nFtpMode == 1 && m_pFtp) {
        if (!m_pFtp->IsLockRevoked(RelPath()))
            m_pFtp->DeleteRemoteFile(RelPath() + L".bak");
        ClearTempFTP();
    }
    EndDialog(m_state.pSaveDlg, false);
}
