// Panel dialog logic: opening, the field and scale checks of OK, picks, the catalogue actions.
#include "panel/DlgDrawPanel.h"

#include "app/DocumentServices.h"
#include "base/Format.h"
#include "base/NumberText.h"
#include "base/StrUtil.h"
#include "drawingdata/DrawingRecords.h"
#include "host/HostEditor.h"
#include "host/HostInput.h"
#include "host/HostUi.h"
#include "host/db/AcDb.h"
#include "panel/DlnDictionaryAdd.h"
#include "panel/ScaleList.h"
#include "settings/HistoryDataOprt.h"

#include <algorithm>
#include <cmath>
#include <memory>

double g_dPanelLength = 100.0;
double g_dPanelWidth = 100.0;
double g_dPanelThick = 10.0;
double g_dDrawRatio = 1.0;

namespace {

constexpr const wchar_t* kDefaultScale = L"1:10";

// History positions of the dialog's values.
constexpr int kPosWidth = 1, kPosHeight = 2, kPosThick = 3;
constexpr int kPosAxisX = 4, kPosAxisY = 5, kPosAxisZ = 6;

std::wstring GetTextVar(const wchar_t* pszName) {
    SYSVAR_VALUE value;
    if (acedGetVar(pszName, value) != RTNORM)
        return std::wstring();
    return value.strText;
}

int GetShortVar(const wchar_t* pszName) {
    SYSVAR_VALUE value;
    return acedGetVar(pszName, value) == RTNORM ? value.nShort : 0;
}

// The drawing's database, read from its file when no document holds it; a
// database read anew is deleted with the holder.
struct DRAWING_DB {
    AcDbDatabase* pDb = nullptr;
    std::unique_ptr<AcDbDatabase> pOwned;

    explicit DRAWING_DB(const std::wstring& strPath) {
        if (GetDatabaseOfFile(strPath, pDb))
            pOwned.reset(pDb);
    }
};

// "m:n" with both sides positive reals above zero and the ":" neither first nor last.
bool IsScaleText(const std::wstring& strScale) {
    int nColon = StrFind(strScale, L':');
    if (nColon <= 0 || nColon == static_cast<int>(strScale.size()) - 1)
        return false;
    std::wstring strLeft = StrTrim(StrLeft(strScale, nColon));
    std::wstring strRight = StrTrim(StrMid(strScale, nColon + 1));
    return IsPositiveReal(strRight) && IsPositiveReal(strLeft) && TextToReal(strRight) > 0.0 &&
           TextToReal(strLeft) > 0.0;
}

bool ContainsNoCase(const CStringArray& arr, const std::wstring& str) {
    return std::any_of(arr.begin(), arr.end(),
                       [&](const std::wstring& s) { return EqualsNoCase(s, str); });
}

} // namespace

CDlgDrawPanel::CDlgDrawPanel() : m_arrPanels(m_catalogue.m_arrPanels) {
    CHistoryDataOprt history;
    history.GetText(kPosWidth, m_strWidth);
    history.GetText(kPosHeight, m_strHeight);
    history.GetText(kPosThick, m_strThick);
    history.GetInt(kPosAxisX, m_nAxisX);
    history.GetInt(kPosAxisY, m_nAxisY);
    history.GetInt(kPosAxisZ, m_nAxisZ);
}

void CDlgDrawPanel::OnInitDialog(IDlgDrawPanelView& view) {
    m_pView = &view;
    view.SetTitle(m_strTitle.empty() ? std::wstring(L"面板绘制") : m_strTitle);
    m_strDwgPath = GetTextVar(L"dwgprefix");
    if (!m_strDwgPath.empty() && m_strDwgPath.back() != L'\\')
        m_strDwgPath += L'\\';
    m_strDwgPath += GetTextVar(L"dwgname");
    m_bDwgTitled = GetShortVar(L"dwgtitled");

    m_arrScales = LoadScaleList();
    SortScaleList(m_arrScales);
    view.SetScaleList(m_arrScales);
    ReadDrawingScale();
    view.SetScaleText(m_strDwgScale);
    g_dDrawRatio = ScaleTextToRatio(m_strDwgScale);

    view.SetListHeading(Format(L"面板列表,%d", view.GetListClientWidth()));
    LoadPanelLib();
    RefreshPanelList();
    view.UpdateData(*this, false);
}

void CDlgDrawPanel::ReadDrawingScale() {
    DRAWING_DB drawing(m_strDwgPath);
    m_strDwgScale.clear();
    if (drawing.pDb)
        GetDrawingScale(drawing.pDb, m_strDwgScale);
    if (m_strDwgScale.empty())
        m_strDwgScale = kDefaultScale;
}

void CDlgDrawPanel::RefreshPanelList() {
    if (m_pView)
        m_pView->SetListRows(m_arrPanels);
}

bool CDlgDrawPanel::Refuse(int nField, const wchar_t* pszText) {
    m_strMessage = pszText;
    QmMessageBox(m_strMessage, MB_ICONEXCLAMATION);
    m_pView->FocusField(nField);
    return false;
}

bool CDlgDrawPanel::CheckFields() {
    if (!IsPositiveReal(m_strWidth) && !m_strWidth.empty())
        return Refuse(fieldWidth, L"面板宽度数据输入不正确，请输入正实数!");
    if (!IsPositiveReal(m_strHeight) && !m_strHeight.empty())
        return Refuse(fieldHeight, L"面板高度数据输入不正确，请输入正实数!");
    if (!IsPositiveReal(m_strThick) && !m_strThick.empty())
        return Refuse(fieldThick, L"面板厚度数据输入不正确，请输入正实数!");
    // An empty field passed the tests above and is stopped here; the thickness isn't.
    if (TextToReal(m_strWidth) <= 0.0)
        return Refuse(fieldWidth, L"面板宽度数据必须大于0,请重新输入!");
    if (TextToReal(m_strHeight) <= 0.0)
        return Refuse(fieldHeight, L"面板高度数据必须大于0,请重新输入!");
    return true;
}

bool CDlgDrawPanel::CheckScale(const std::wstring& strScale) {
    if (m_strDwgScale.empty() || IsScaleText(strScale))
        return true;
    return Refuse(fieldScale, L"图纸比例格式不正确,格式为m:n(其中m,n为正数),请重新输入!");
}

bool CDlgDrawPanel::OnOK() {
    m_pView->UpdateData(*this, true);
    if (!CheckFields())
        return false;
    std::wstring strScale = m_pView->GetScaleText();
    StrReplace(strScale, L" ", L"");
    if (!CheckScale(strScale))
        return false;
    if (strScale.empty())
        strScale = kDefaultScale;
    m_strScale = strScale;
    double dRatio = ScaleTextToRatio(strScale);
    ApplyScaleToDrawing(strScale, dRatio);

    if (!ContainsNoCase(m_arrScales, strScale))
        m_arrScales.push_back(strScale);
    SortScaleList(m_arrScales);
    SaveScaleList(m_arrScales);

    if (m_strTitle.empty()) {
        CHistoryDataOprt history;
        history.SetText(kPosWidth, m_strWidth);
        history.SetText(kPosHeight, m_strHeight);
        history.SetText(kPosThick, m_strThick);
        history.SetInt(kPosAxisX, m_nAxisX);
        history.SetInt(kPosAxisY, m_nAxisY);
        history.SetInt(kPosAxisZ, m_nAxisZ);
    }
    g_dDrawRatio = dRatio;
    // A thin sheet keeps a body: 0.01 stands for zero and reads back as "0.00".
    if (TextToReal(m_strThick) <= 0.0)
        m_strThick = L"0.01";
    m_strWidth = Format(L"%.2f", TextToReal(m_strWidth));
    m_strHeight = Format(L"%.2f", TextToReal(m_strHeight));
    m_strThick = Format(L"%.2f", TextToReal(m_strThick));
    g_dPanelLength = TextToReal(m_strWidth) / dRatio;
    g_dPanelWidth = TextToReal(m_strHeight) / dRatio;
    g_dPanelThick = TextToReal(m_strThick) / dRatio;
    SavePanelLib();
    m_pView->EndDialog(IDOK);
    return true;
}

void CDlgDrawPanel::ApplyScaleToDrawing(const std::wstring& strScale, double dRatio) {
    DRAWING_DB drawing(m_strDwgPath);
    if (!drawing.pDb)
        return;
    if (strScale != m_strDwgScale)
        SetDrawingScale(drawing.pDb, strScale);
    SetDimStylesLinearFactor(drawing.pDb, dRatio);
}

void CDlgDrawPanel::OnClose() {
    SavePanelLib();
    m_pView->EndDialog(IDCANCEL);
}

void CDlgDrawPanel::PickSpan(std::wstring& strField) {
    static const wchar_t* const kModes[] = {L"orthomode", L"snapmode", L"gridmode"};
    SYSVAR_VALUE saved[3];
    m_pView->BeginEditorCommand();
    for (int i = 0; i < 3; ++i) {
        acedGetVar(kModes[i], saved[i]);
        acedSetVar(kModes[i], SYSVAR_VALUE::Short(1));
    }
    // The host works in the world system only, so the picked points need no translation.
    AcGePoint3d ptStart, ptEnd;
    if (acedGetPoint(nullptr, L"\n请点取起点:\n", ptStart) != RTNORM)
        ptStart = AcGePoint3d();
    if (acedGetPoint(&ptStart, L"\n请点取终点:\n", ptEnd) != RTNORM)
        ptEnd = AcGePoint3d();
    for (int i = 0; i < 3; ++i)
        if (saved[i].nType != RTNONE)
            acedSetVar(kModes[i], saved[i]);
    double dSpan = std::max(std::fabs(ptEnd.x - ptStart.x), std::fabs(ptEnd.y - ptStart.y));
    // The ratio of the last OK or of opening, not what the scale box shows now.
    strField = Format(L"%.2f", dSpan * g_dDrawRatio);
    m_pView->MakeDialogsVisible();
    m_pView->UpdateData(*this, false);
}

void CDlgDrawPanel::OnDblclkList() {
    if (m_catalogue.FillSizes(m_pView->GetSelectedRows(), m_strWidth, m_strHeight, m_strThick))
        m_pView->UpdateData(*this, false);
}

void CDlgDrawPanel::OnDeletePanel() {
    if (m_catalogue.DeleteSelected(m_pView->GetSelectedRows()))
        RefreshPanelList();
}

void CDlgDrawPanel::OnChangePanel() {
    IDlgDrawPanelView* pView = m_pView;
    auto editor = [pView](CDlnDictionaryAdd& dlg) { return pView->RunRecordEditor(dlg); };
    if (m_catalogue.ChangeSelected(m_pView->GetSelectedRows(), editor))
        RefreshPanelList();
}

void CDlgDrawPanel::OnAddPanel() {
    m_pView->UpdateData(*this, true);
    IDlgDrawPanelView* pView = m_pView;
    auto editor = [pView](CDlnDictionaryAdd& dlg) { return pView->RunRecordEditor(dlg); };
    m_catalogue.AddRecord(m_strWidth, m_strHeight, m_strThick, editor);
    RefreshPanelList();
}

void SetDimStylesLinearFactor(AcDbDatabase* pDb, double dRatio) {
    AcDbDimStyleTable* pTable = nullptr;
    if (!pDb || pDb->getDimStyleTable(pTable, AcDb::kForRead) != Acad::eOk)
        return;
    AcDbSymbolTableIterator* pIter = nullptr;
    pTable->newIterator(pIter);
    pTable->close();
    std::unique_ptr<AcDbSymbolTableIterator> iter(pIter);
    for (; iter && !iter->done(); iter->step()) {
        AcDbDimStyleTableRecord* pRec = nullptr;
        if (iter->getRecord(pRec, AcDb::kForWrite) != Acad::eOk)
            continue;
        pRec->setDimlfac(dRatio);
        AcDbObjectId id = pRec->objectId();
        pRec->close();
        if (id == pDb->dimstyle())
            pDb->setDimstyleData(id);
    }
}
