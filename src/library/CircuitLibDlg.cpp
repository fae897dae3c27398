// The library browser's window logic: start, tree, list, pages, cells, search, keys and leaving.
#include "library/CircuitLibDlg.h"

#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "app/LibState.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/NumberText.h"
#include "base/StrUtil.h"
#include "drawingdata/DrawingRecords.h"
#include "host/HostDocuments.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "library/LibraryListOrder.h"
#include "settings/HistoryDataOprt.h"
#include "shared/MyFtpConnection.h"

#include <algorithm>

namespace {

ILibItemOperations* g_pItemOps = nullptr;

std::wstring WithBackslash(std::wstring strPath) {
    if (!strPath.empty() && strPath.back() != L'\\')
        strPath += L'\\';
    return strPath;
}

// Text that the count field accepts as an unsigned number; 0 otherwise.
int UnsignedValue(const std::wstring& strText) {
    std::wstring strTrimmed = StrTrim(strText);
    if (strTrimmed.empty() || strTrimmed.size() > 9)
        return 0;
    for (wchar_t ch : strTrimmed)
        if (ch < L'0' || ch > L'9')
            return 0;
    return TextToInt(strTrimmed);
}

bool AllDigits(std::wstring_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](wchar_t ch) { return ch >= L'0' && ch <= L'9'; });
}

// Digits with an optional leading "-", optionally a point and more digits.
bool IsScaleNumber(const std::wstring& strText) {
    std::wstring_view text = strText;
    if (!text.empty() && text.front() == L'-')
        text.remove_prefix(1);
    size_t nDot = text.find(L'.');
    if (nDot == std::wstring_view::npos)
        return AllDigits(text);
    return AllDigits(text.substr(0, nDot)) && AllDigits(text.substr(nDot + 1));
}

// "%f" without trailing zeros, and without the point when nothing follows it.
std::wstring FormatScale(double dValue) {
    std::wstring strText = Format(L"%f", dValue);
    if (strText.find(L'.') != std::wstring::npos) {
        strText = StrTrimRight(strText, L"0");
        strText = StrTrimRight(strText, L".");
    }
    return strText;
}

// The scale value of a text "a:b": b divided by a; 1 when it cannot be read.
double ScaleTextValue(const std::wstring& strScale) {
    int nColon = StrFind(strScale, L':');
    if (nColon < 0)
        return 1.0;
    double dBefore = TextToReal(StrLeft(strScale, nColon));
    double dAfter = TextToReal(StrMid(strScale, nColon + 1));
    return dBefore > 0.0 && dAfter > 0.0 ? dAfter / dBefore : 1.0;
}

} // namespace

void SetLibItemOperations(ILibItemOperations* pOps) {
    g_pItemOps = pOps;
}

LIB_BROWSER_KIND LIB_BROWSER_KIND::Hole() {
    LIB_BROWSER_KIND kind;
    kind.ownCommands = {L"DrawingOpen", L"DrawingInsert", L"MakeSld", L"DRAWINGMANAGE"};
    kind.texts = {L"开孔图库管理", L"炸开开孔图块", L"目录同步到屏面布置图库", IDM_DIR_SYNC,
                  LIB_BROWSER_IDS{}};
    return kind;
}

LIB_BROWSER_KIND LIB_BROWSER_KIND::Layout() {
    LIB_BROWSER_KIND kind;
    kind.kind = LibraryKind::Layout;
    kind.pszClass = L"CLaySketchLibDlg";
    kind.pszRootFormat = L"%sLaySketch\\";
    kind.pszRelDir = L"LaySketch\\";
    kind.pszRelDirTwin = L"InstallHole\\";
    kind.pszInsertCommand = L"(Command)\nLaySketchInsert\n";
    kind.ownCommands = {L"LaySketchOpen", L"LaySketchInsert", L"LaySketchMakeSld"};
    kind.pszLibName = L"LaySketch";
    kind.bRecomputeModeInHandlers = false;
    kind.bServerDirRename = false;
    kind.texts.strTitle = L"屏面布置图库管理";
    kind.texts.strExplode = L"炸开屏面图块";
    kind.texts.strSyncMenu = L"目录同步到开孔图库";
    kind.texts.nSyncMenuId = IDM_DIR_SYNC_LAYOUT;
    kind.texts.ids = {319, 539, 540, 541, 542, 601, 602};
    return kind;
}

int LIB_BROWSER_IDS::TemplateId(int nRole) const {
    const std::pair<int, int> pairs[] = {{IDC_LIST, nList},         {IDC_BTN_INSERT, nInsert},
                                         {IDC_BTN_NEW, nNew},       {IDC_BTN_MODIFY, nModify},
                                         {IDC_BTN_DELETE, nDelete}, {IDC_BTN_RENAME, nRename}};
    for (auto [nHole, nOwn] : pairs)
        if (nHole == nRole)
            return nOwn;
    return nRole;
}

int LIB_BROWSER_IDS::RoleId(int nTemplateId) const {
    const std::pair<int, int> pairs[] = {{IDC_LIST, nList},         {IDC_BTN_INSERT, nInsert},
                                         {IDC_BTN_NEW, nNew},       {IDC_BTN_MODIFY, nModify},
                                         {IDC_BTN_DELETE, nDelete}, {IDC_BTN_RENAME, nRename}};
    for (auto [nHole, nOwn] : pairs)
        if (nOwn == nTemplateId)
            return nHole;
    return nTemplateId;
}

CCircuitLibDlg::CCircuitLibDlg(CLibState& state, CMyFtpConnection* pFtp,
                               std::unique_ptr<ILibBrowserView> pView, LIB_BROWSER_KIND kind)
    : m_state(state), m_pFtp(pFtp), m_pView(std::move(pView)), m_kind(std::move(kind)) {
    m_strRoot = Format(m_kind.pszRootFormat, m_state.strRoot);
    m_strCurDir = m_strRoot;
    m_state.strPickedName.clear();
    ReadHistory();
}

CCircuitLibDlg::~CCircuitLibDlg() = default;

void CCircuitLibDlg::ReadHistory() {
    CHistoryDataOprt history;
    history.GetText(7, m_strLastDir);
    std::wstring strIndex;
    history.GetText(8, strIndex);
    m_nLastIndex = TextToInt(strIndex);
    history.GetInt(9, m_bSubDirs);
    history.GetInt(10, m_bExplode);
}

void CCircuitLibDlg::WriteHistory() {
    CHistoryDataOprt history;
    history.SetText(7, m_strLastDir);
    history.SetText(8, m_selection.empty() ? L"0" : Format(L"%d", m_selection.front()));
    history.SetInt(9, m_bSubDirs);
    history.SetInt(10, m_bExplode);
}

bool CCircuitLibDlg::Create() {
    if (!m_pView || !m_pView->Create(m_kind.texts))
        return false;
    m_bCreated = true;
    if (m_state.g_nFtpMode == 1) {
        if (!m_pFtp || !m_pFtp->Connect())
            m_state.g_nFtpMode = 2;
        m_state.strRelDir = m_kind.pszRelDir;
        m_state.strRelDirTwin = m_kind.pszRelDirTwin;
    }
    m_pView->SetText(IDC_EDIT_ROOT, m_strRoot);
    FillTree();
    ReadDrawingScale();
    if (GetCurQuillmInstallStyle() == 2)
        for (int nId : {IDC_BTN_SAVE, IDC_BTN_MODIFY, IDC_BTN_NEW, IDC_BTN_RENAME, IDC_BTN_DELETE})
            m_pView->Enable(nId, false);
    m_pView->SetCheck(IDC_CHK_SUBDIRS, m_bSubDirs != 0);
    m_pView->SetCheck(IDC_CHK_EXPLODE, m_bExplode != 0);

    // The directory to reopen: the last one by name among the root's children.
    const DIR_TREE_NODE* pRoot = TreeNode(m_nTreeRoot);
    int nReopen = 0;
    for (int nChild : pRoot ? pRoot->children : std::vector<int>()) {
        if (m_strLastDir.empty() || EqualsNoCase(m_tree[nChild].strText, m_strLastDir)) {
            nReopen = nChild;
            break;
        }
    }
    if (nReopen) {
        m_pView->TreeSelect(nReopen);
        OnSelchangedTree(nReopen);
        OnItemexpandedTree(nReopen, true);
    }
    if (m_nLastIndex >= 0 && m_nLastIndex < static_cast<int>(m_Names.size()))
        SetSelection({m_nLastIndex}, 0); // scrolled to the top, as it always was

    m_pView->SetDisplayMode(m_nDisplayMode);
    m_pView->SetText(IDC_LABEL_COUNT, L"调用数");
    m_pView->SetText(IDC_LABEL_SCALE, L"放大倍数");
    for (int nId : {IDC_RADIO_0, IDC_RADIO_90, IDC_RADIO_180, IDC_RADIO_270})
        m_pView->SetCheck(nId, nId == IDC_RADIO_0);
    m_pView->SetText(IDC_EDIT_COUNT, Format(L"%d", m_nCount));
    m_pView->SetText(IDC_EDIT_SCALE, FormatScale(m_dScale));
    return true;
}

void CCircuitLibDlg::Show() {
    m_bHidden = false;
    m_pView->Show(true);
    OnPaint();
}

void CCircuitLibDlg::Activate() {
    m_pView->Activate();
}

bool CCircuitLibDlg::IsIconic() {
    return m_pView->IsIconic();
}

void CCircuitLibDlg::Restore() {
    m_pView->Restore();
}

void CCircuitLibDlg::DestroyWindow() {
    if (m_bCreated)
        m_pView->Destroy();
    m_bCreated = false;
}

// The frame's destroy routine: it deletes this object, so callers return at once.
void CCircuitLibDlg::DestroySelf() {
    if (m_state.pLibDlg != this) {
        DestroyWindow();
        return;
    }
    IModelessWindow* pWindow = this;
    m_state.pLibDlg = nullptr;
    DestroyModelessWindow(pWindow);
}

void CCircuitLibDlg::ReadDrawingScale() {
    m_strDwgPath = GetCurDwgPrefix() + GetCurDwgName();
    m_bDwgTitled = IsCurDwgTitled();
    m_strDwgScale.clear();
    AcApDocManager* pDocs = acDocManagerPtr();
    AcApDocument* pDoc = pDocs ? pDocs->curDocument() : nullptr;
    if (pDoc && pDoc->database())
        GetDrawingScale(pDoc->database(), m_strDwgScale);
    if (m_strDwgScale.empty())
        m_strDwgScale = L"1:1";
    m_pView->SetText(IDC_EDIT_DWGSCALE, m_strDwgScale);
    m_state.dDrawingScale = ScaleTextValue(m_strDwgScale);
}

bool CCircuitLibDlg::IsCurDirUsable() const {
    return !m_strCurDir.empty() && IsDirExist(m_strCurDir);
}

// ---- the list and its pages ----

void CCircuitLibDlg::ReloadList() {
    LoadList();
}

void CCircuitLibDlg::LoadList() {
    for (int i = 0; i < kCellsPerPage; ++i) {
        CELL_CONTENT cell = m_cells[i];
        cell.strLabel.clear();
        SetCell(i, cell);
    }
    if (!IsCurDirUsable())
        return;
    CStringArray names;
    CollectFiles(m_strCurDir, L"dwg", names, m_bSubDirs != 0);
    std::wstring strPrefix = WithBackslash(m_strCurDir);
    for (std::wstring& strName : names)
        strName = m_bSubDirs ? strName.substr(std::min(strPrefix.size(), strName.size()))
                             : GetFileName(strName);
    SortLibraryNames(names);
    m_Names = std::move(names);
    m_nItems = static_cast<int>(m_Names.size());
    m_nPages = GetPageCount(m_nItems);
    if (m_nPages == 0) {
        m_nPage = 0; // the bar keeps its range
    } else {
        m_nScrollMin = 1;
        m_nScrollMax = m_nPages;
        m_nScrollPos = 1;
        m_pView->ScrollSetRange(1, m_nPages);
        m_pView->ScrollSetPos(1);
        m_nPage = m_nScrollPos;
        m_pView->ScrollEnable(true);
    }
    m_selection.clear();
    m_pView->ListSetItems(m_Names);
    m_pView->SetText(IDC_TEXT_PAGES, Format(L"共%d页", m_nPages));
    m_pView->SetText(IDC_TEXT_PAGE, Format(L"第%d页", m_nPage));
    m_nCell = -1;
    InvalidateCells();
}

void CCircuitLibDlg::SetSelection(const std::vector<int>& selected, int nMakeVisible) {
    m_selection = selected;
    m_pView->ListSetSelection(m_selection, nMakeVisible);
    FollowList();
}

void CCircuitLibDlg::SelectFirstItem() {
    if (!m_Names.empty())
        SetSelection({0}, 0);
}

void CCircuitLibDlg::SelectListItem(const std::wstring& strName) {
    for (size_t i = 0; i < m_Names.size(); ++i) {
        if (EqualsNoCase(m_Names[i], strName)) {
            SetSelection({static_cast<int>(i)}, static_cast<int>(i));
            return;
        }
    }
    SetSelection({}, -1);
}

CELL_CONTENT CCircuitLibDlg::CellOfItem(int nIndex, bool bSelected) const {
    CELL_CONTENT cell;
    if (nIndex < 0 || nIndex >= static_cast<int>(m_Names.size()))
        return cell;
    std::wstring strPath = JoinPath(m_strCurDir, m_Names[nIndex]);
    cell.strDwg = strPath;
    cell.strSlide = RemoveFileExt(strPath) + L".sld";
    cell.background = bSelected ? kCellSelected : kCellNormal;
    cell.strLabel = RemoveFileExt(GetFileName(strPath));
    cell.bSelected = bSelected;
    cell.dAngle = m_dAngle;
    return cell;
}

void CCircuitLibDlg::SetCell(int nCell, const CELL_CONTENT& content) {
    m_cells[nCell] = content;
    m_pView->SetCell(nCell, content);
}

void CCircuitLibDlg::InvalidateCells() {
    for (int i = 0; i < kCellsPerPage; ++i) {
        int nIndex = m_Names.empty() ? -1 : GetCellNameIndex(i, m_nPage);
        SetCell(i, CellOfItem(nIndex, i == m_nCell));
    }
}

// Every paint shows the sixteen cells, empty ones included, even before any list was loaded.
void CCircuitLibDlg::OnPaint() {
    if (m_state.nNewState == 1) {
        LoadList();
        SelectListItem(m_state.strNewName);
        m_state.nNewState = 0;
        m_state.strNewName.clear();
    }
    InvalidateCells();
}

void CCircuitLibDlg::FollowList() {
    if (m_selection.empty())
        return;
    int n = m_selection.front();
    if (n < 0 || n >= static_cast<int>(m_Names.size()))
        return;
    m_state.strSelItem = m_Names[n];
    int nPage = GetPageOfItem(n);
    if (nPage != m_nPage) {
        m_nScrollPos = nPage;
        m_pView->ScrollSetPos(nPage);
        m_nPage = nPage;
        m_pView->SetText(IDC_TEXT_PAGE, Format(L"第%d页", m_nPage));
    }
    m_nCell = GetCellOfItem(n);
    InvalidateCells();
}

void CCircuitLibDlg::OnItemchangedList(const std::vector<int>& selected) {
    m_selection = selected;
    FollowList();
}

void CCircuitLibDlg::SetPage(int nPage) {
    m_nScrollPos = std::clamp(nPage, m_nScrollMin, std::max(m_nScrollMin, m_nScrollMax));
    m_pView->ScrollSetPos(m_nScrollPos);
}

void CCircuitLibDlg::OnVScroll(int nCode, int nTrackPos) {
    if (m_nPages > 1) {
        bool bTurned = true;
        switch (nCode) {
        case SB_LINEUP:
        case SB_PAGEUP:
            SetPage(m_nScrollPos - 1);
            break;
        case SB_LINEDOWN:
        case SB_PAGEDOWN:
            SetPage(m_nScrollPos + 1);
            break;
        case SB_THUMBTRACK:
            SetPage(nTrackPos);
            break;
        default:
            bTurned = false;
        }
        if (bTurned) {
            m_nPage = m_nScrollPos;
            m_nCell = -1;
            InvalidateCells();
        }
    }
    m_nPage = m_nScrollPos;
    m_pView->ScrollEnable(true);
    m_pView->SetText(IDC_TEXT_PAGE, Format(L"第%d页", m_nPage));
}

void CCircuitLibDlg::OnMouseWheel(int nDelta, bool bScrollHasFocus) {
    if (!bScrollHasFocus || m_nPages <= 1)
        return;
    int nPage = GetPageAfterWheel(m_nPage, m_nPages, nDelta);
    if (nPage == m_nPage)
        return;
    m_nPage = nPage;
    SetPage(nPage);
    m_nCell = -1;
    InvalidateCells();
}

void CCircuitLibDlg::SelectCell(int nCell) {
    if (nCell < 0 || nCell >= kCellsPerPage)
        return;
    int nIndex = m_Names.empty() ? -1 : GetCellNameIndex(nCell, m_nPage);
    const std::wstring& strSlide = m_cells[nCell].strSlide;
    if (GetFileName(strSlide).size() < 4)
        return; // an empty cell
    if (nIndex < static_cast<int>(m_Names.size()) && m_nCell != nCell) {
        m_nCell = nCell;
        SetSelection({nIndex}, nIndex);
    }
    InvalidateCells();
}

void CCircuitLibDlg::OnSlideLButtonDown(int nCell) {
    SelectCell(nCell);
}

void CCircuitLibDlg::OnSlideLButtonDblClk(int nCell) {
    int nIndex = m_Names.empty() ? -1 : GetCellNameIndex(nCell, m_nPage);
    if (nIndex >= 0 && nIndex < static_cast<int>(m_Names.size()))
        OnCommand(IDC_BTN_INSERT);
}

void CCircuitLibDlg::OnSlideRButtonDown(int nCell) {
    SelectCell(nCell);
    int nIndex = m_Names.empty() ? -1 : GetCellNameIndex(nCell, m_nPage);
    if (nCell == m_nCell && nIndex >= 0 && nIndex < static_cast<int>(m_Names.size())) {
        if (g_pItemOps)
            g_pItemOps->OnEnlarge(*this);
        else
            OnEnlarge();
    }
}

void CCircuitLibDlg::OnBackgroundClick(int nCell, bool bDouble) {
    if (m_nDisplayMode != 1)
        return;
    if (!bDouble)
        SelectCell(nCell);
    else
        OnCommand(IDC_BTN_INSERT);
}

void CCircuitLibDlg::OnChangeSearch() {
    int nMatch = FindSearchMatch(m_Names, m_pView->GetText(IDC_EDIT_SEARCH));
    if (nMatch >= 0)
        SetSelection({nMatch}, nMatch);
}

void CCircuitLibDlg::OnRefreshList() {
    LoadList();
}

// ---- commands of the window ----

int CCircuitLibDlg::CurrentMode() {
    if (m_kind.bRecomputeModeInHandlers)
        m_state.g_nFtpMode = RecomputeFtpMode(GetCurQuillmInstallStyle(), m_state.g_nFtpMode);
    return m_state.g_nFtpMode;
}

bool CCircuitLibDlg::PassGates(unsigned nGates) {
    if (nGates & GATE_A_MODE)
        CurrentMode();
    if ((nGates & GATE_B_DOCUMENT) && GetDocumentCount() < 1) {
        QmMessageBox(L"请先打开或创建一副DWG文件后再执行该操作!", MB_ICONINFORMATION);
        return false;
    }
    if ((nGates & GATE_C_NO_NEW_ITEM) && m_state.pBlockDlg) {
        QmMessageBox(L"图形新建正在进行！", MB_ICONEXCLAMATION);
        return false;
    }
    if ((nGates & GATE_D_DIRECTORY) && !IsCurDirUsable())
        return false;
    if ((nGates & GATE_E_SINGLE) && m_selection.size() > 1) {
        QmMessageBox(L"此操作不支持多选！", MB_ICONEXCLAMATION);
        return false;
    }
    if (nGates & GATE_F_SELECTED) {
        if (m_selection.empty())
            return false;
        int n = m_selection.front();
        if (n < 0 || n >= static_cast<int>(m_Names.size()) || m_Names[n].empty())
            return false;
    }
    return true;
}

bool CCircuitLibDlg::ReadCountAndScale() {
    m_nCount = UnsignedValue(m_pView->GetText(IDC_EDIT_COUNT));
    if (m_nCount < 1 || m_nCount > 100) {
        QmMessageBox(L"符号调用数必须大于等于1且小于等于100！", MB_ICONEXCLAMATION);
        m_pView->SetFocus(IDC_EDIT_COUNT);
        return false;
    }
    std::wstring strScale = m_pView->GetText(IDC_EDIT_SCALE);
    double dScale = TextToReal(strScale);
    if (!IsScaleNumber(strScale) || dScale <= 0.0) {
        QmMessageBox(L"调用比例非法！", MB_ICONEXCLAMATION);
        m_pView->SetFocus(IDC_EDIT_SCALE);
        return false;
    }
    m_dScale = dScale;
    return true;
}

// Validates, fills the hand-over, hides and posts; the command raises the window again.
void CCircuitLibDlg::OnBtnInsert() {
    ReadDrawingScale();
    m_bExplode = m_pView->GetCheck(IDC_CHK_EXPLODE);
    if (!PassGates(GATE_B_DOCUMENT | GATE_C_NO_NEW_ITEM | GATE_D_DIRECTORY | GATE_E_SINGLE |
                   GATE_F_SELECTED))
        return;
    std::wstring strPath = JoinPath(m_strCurDir, m_Names[m_selection.front()]);
    if (!IsFileExist(strPath)) {
        QmMessageBox(Format(L"文件“%s”不存在！", strPath), MB_ICONEXCLAMATION);
        return;
    }
    if (!ReadCountAndScale())
        return;
    m_bHidden = true;
    m_pView->Show(false);
    m_state.strDwgFile = strPath;
    m_pView->ActivateFrame();
    m_state.dAngle = m_dAngle;
    m_state.nCount = m_nCount;
    m_state.dScale = m_dScale;
    m_state.bExplode = m_bExplode;
    PostCommandString(m_kind.pszInsertCommand);
}

void CCircuitLibDlg::OnBtnExit() {
    if (m_state.bBatchRunning) {
        if (QmMessageBox(L"正在批生成SLD文件,是否终止?", MB_YESNO | MB_ICONQUESTION) == IDYES)
            m_state.bBatchAbort = 1;
        return;
    }
    m_strLastDir = m_nTreeSel && m_nTreeSel != m_nTreeRoot ? m_tree[m_nTreeSel].strText : L"";
    m_bSubDirs = m_pView->GetCheck(IDC_CHK_SUBDIRS);
    m_bExplode = m_pView->GetCheck(IDC_CHK_EXPLODE);
    WriteHistory();
    m_state.ResetHandOver();
    if (m_state.g_nFtpMode == 1) {
        if (m_pFtp)
            m_pFtp->CloseConnection();
        ClearTempFTP();
    }
    DestroySelf();
}

// No history is written and the connection stays open.
void CCircuitLibDlg::OnClose() {
    if (m_bSelectMode)
        return OnSelectCancel();
    m_state.ResetHandOver();
    DestroySelf();
}

void CCircuitLibDlg::OnCommand(int nId) {
    using Handler = void (ILibItemOperations::*)(CCircuitLibDlg&);
    using Own = void (CCircuitLibDlg::*)();
    auto itemOp = [this](Handler pfn, Own pfnOwn) {
        if (g_pItemOps)
            (g_pItemOps->*pfn)(*this);
        else
            (this->*pfnOwn)();
    };
    nId = m_kind.texts.ids.RoleId(nId);
    if (m_bSelectMode && OnSelectCommand(nId))
        return;
    switch (nId) {
    case IDC_BTN_INSERT:
        return OnBtnInsert();
    case IDC_BTN_EXIT:
        return OnBtnExit();
    case IDC_BTN_NEW:
        return itemOp(&ILibItemOperations::OnBtnNew, &CCircuitLibDlg::OnBtnNew);
    case IDC_BTN_MODIFY:
        return itemOp(&ILibItemOperations::OnBtnModify, &CCircuitLibDlg::OnBtnModify);
    case IDC_BTN_RENAME:
        return itemOp(&ILibItemOperations::OnBtnRename, &CCircuitLibDlg::OnBtnRename);
    case IDC_BTN_DELETE:
        return itemOp(&ILibItemOperations::OnBtnDelete, &CCircuitLibDlg::OnBtnDelete);
    case IDC_BTN_SAVE:
        return itemOp(&ILibItemOperations::OnBtnSave, &CCircuitLibDlg::OnBtnSave);
    case IDM_IMPORT:
        return itemOp(&ILibItemOperations::OnImport, &CCircuitLibDlg::OnImport);
    case IDC_BTN_ENLARGE:
        return itemOp(&ILibItemOperations::OnEnlarge, &CCircuitLibDlg::OnEnlarge);
    case IDC_BTN_BATCH:
        return itemOp(&ILibItemOperations::OnBatchSlides, &CCircuitLibDlg::OnBatchSlides);
    case IDM_LIST_REFRESH:
        return OnRefreshList();
    case IDM_DIR_NEW:
        return OnDirNew();
    case IDM_DIR_RENAME:
        return OnDirRename();
    case IDM_DIR_DELETE:
        return OnDirDelete();
    case IDM_DIR_REFRESH:
        return OnDirRefresh();
    case IDM_DIR_SYNC:
    case IDM_DIR_SYNC_LAYOUT:
        return OnDirSync();
    case IDC_CHK_SUBDIRS:
        m_bSubDirs = m_pView->GetCheck(IDC_CHK_SUBDIRS);
        LoadList();
        return SelectFirstItem();
    case IDC_CHK_EXPLODE:
        m_bExplode = m_pView->GetCheck(IDC_CHK_EXPLODE);
        return;
    case IDC_RADIO_0:
    case IDC_RADIO_90:
    case IDC_RADIO_180:
    case IDC_RADIO_270: {
        static const int ids[] = {IDC_RADIO_0, IDC_RADIO_90, IDC_RADIO_180, IDC_RADIO_270};
        for (int i = 0; i < 4; ++i) {
            m_pView->SetCheck(ids[i], ids[i] == nId);
            if (ids[i] == nId)
                m_dAngle = 90.0 * i;
        }
        m_state.dAngle = m_dAngle;
        return InvalidateCells();
    }
    default:
        return;
    }
}

void CCircuitLibDlg::OnDblclkList() {
    OnCommand(IDC_BTN_INSERT);
}

void CCircuitLibDlg::OnKeydownList(bool bDeleteKey) {
    if (bDeleteKey)
        OnCommand(IDC_BTN_DELETE);
}

void CCircuitLibDlg::OnRclickList() {
    bool bNoDir = !IsCurDirUsable();
    bool bNone = m_selection.empty();
    bool bMany = m_selection.size() > 1;
    bool bReadOnly = GetCurQuillmInstallStyle() == 2;
    std::vector<MENU_ENTRY> menu = {
        {IDC_BTN_NEW, L"新建", bNoDir || bReadOnly},
        {IDC_BTN_INSERT, L"调用", bNoDir || bNone || bMany},
        {IDC_BTN_MODIFY, L"修改", bNoDir || bNone || bMany},
        {IDC_BTN_RENAME, L"更名", bNoDir || bNone || bMany || bReadOnly},
        {IDC_BTN_DELETE, L"删除", bNoDir || bNone || bReadOnly},
        {0, L"", false},
        {IDM_LIST_REFRESH, L"刷新", false},
    };
    if (int nId = m_pView->TrackMenu(menu))
        OnCommand(nId);
}

void CCircuitLibDlg::OnRclickTree(int nItem) {
    if (nItem && nItem != m_nTreeSel && m_tree.count(nItem)) {
        m_pView->TreeSelect(nItem);
        OnSelchangedTree(nItem);
    }
    bool bNoDir = !IsCurDirUsable();
    size_t n = m_strCurDir.size();
    bool bDrive = (n >= 1 && m_strCurDir[n - 1] == L':') || (n >= 2 && m_strCurDir[n - 2] == L':');
    bool bReadOnly = GetCurQuillmInstallStyle() == 2;
    bool bNoRename =
        bNoDir || bDrive || bReadOnly || (!m_kind.bServerDirRename && m_state.g_nFtpMode == 1);
    std::vector<MENU_ENTRY> menu = {
        {IDM_DIR_NEW, L"目录新建", bNoDir || bReadOnly},
        {IDM_DIR_RENAME, L"目录更名", bNoRename},
        {IDM_DIR_DELETE, L"目录删除", bNoDir || bDrive || bReadOnly},
        {0, L"", false},
        {IDM_IMPORT, L"文件导入", bNoDir || bReadOnly},
        {0, L"", false},
        {IDM_DIR_REFRESH, L"刷新", false},
        {IDC_BTN_BATCH, L"批生成SLD", bReadOnly},
        {m_kind.texts.nSyncMenuId, m_kind.texts.strSyncMenu, false},
    };
    if (int nId = m_pView->TrackMenu(menu))
        OnCommand(nId);
}

void CCircuitLibDlg::CancelForeignCommand() {
    if (GetDocumentCount() < 1)
        return;
    std::wstring strActive;
    if (!GetStrVar(L"CMDNAMES", strActive) || strActive.empty())
        return;
    for (const std::wstring& strOwn : m_kind.ownCommands)
        if (EqualsNoCase(strActive, strOwn))
            return;
    SetIntVar(L"cmdecho", 0);
    PostCancelString(L"(command)\n");
    SetIntVar(L"cmdecho", 1);
}

bool CCircuitLibDlg::PreTranslateMessage(bool bKeyDown, bool bEnterKey, bool bDeleteKey,
                                         bool bFocusInTreeOrList) {
    bool bSwallow = bKeyDown && bEnterKey; // Enter never closes the window
    if (bKeyDown && bDeleteKey && !bFocusInTreeOrList)
        OnCommand(IDC_BTN_DELETE);
    CancelForeignCommand();
    return bSwallow;
}
