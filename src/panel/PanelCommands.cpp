// The panel commands: drawing a panel, rebuilding one, dimensioning a cutout, the two views.
#include "panel/PanelCommands.h"

#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "base/NumberText.h"
#include "drawingdata/DrawingRecords.h"
#include "drawingdata/Records.h"
#include "host/HostDocuments.h"
#include "host/HostEditor.h"
#include "host/HostInput.h"
#include "host/HostUi.h"
#include "host/SuiteDoubleClick.h"
#include "panel/DlgDrawPanel.h"
#include "panel/HoleDimension.h"
#include "panel/HolePlacement.h"
#include "panel/PanelRecord.h"
#include "panel/PanelScript.h"
#include "panel/ScaleList.h"

#include <memory>
#include <utility>

namespace {

DRAW_PANEL_DIALOG& DialogRunner() {
    static DRAW_PANEL_DIALOG runner;
    return runner;
}

AcDbDatabase* WorkingDb() {
    return acdbHostApplicationServices()->workingDatabase();
}

// The closed outline that the extrusion turns into the panel, on the "CENT" layer.
AcDbObjectId MakeOutline(AcDbDatabase* pDb, double dL, double dW) {
    EnsureLayer(L"CENT", 5, pDb);
    auto* pOutline = new AcDb3dPolyline();
    for (const AcGePoint3d& pt : {AcGePoint3d(0, 0, 0), AcGePoint3d(dL, 0, 0),
                                  AcGePoint3d(dL, dW, 0), AcGePoint3d(0, dW, 0)}) {
        AcDbPolylineVertex vertex;
        vertex.pt = pt;
        pOutline->appendVertex(vertex);
    }
    pOutline->setClosed(true);
    pOutline->setLayer(L"CENT");
    pOutline->setLineWeight(30);
    AcDbBlockTableRecord* pMs = nullptr;
    AcDbObjectId id;
    if (acdbOpenObject(pMs, pDb->modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
        delete pOutline;
        return id;
    }
    if (pMs->appendAcDbEntity(id, pOutline) == Acad::eOk)
        pOutline->close();
    else
        delete pOutline;
    pMs->close();
    return id;
}

// Axes, dimensions and the record on the open solid; the ids in tracking order.
AcDbObjectIdArray FinishPanel(AcDbDatabase* pDb, AcDbEntity* pSolid, const CDlgDrawPanel& dlg) {
    pSolid->setColorIndex(8);
    AcGePoint3d ptCentroid;
    SolidCentroid(pSolid, ptCentroid);
    PANEL_PARTS parts =
        BuildPanelParts(pDb, ptCentroid, g_dPanelLength, g_dPanelWidth, g_dPanelThick, g_dDrawRatio,
                        dlg.m_nAxisX, dlg.m_nAxisY, dlg.m_nAxisZ);
    WritePanelRecord(pDb, pSolid, g_dPanelLength * g_dDrawRatio, g_dPanelWidth * g_dDrawRatio,
                     g_dPanelThick * g_dDrawRatio, parts);
    AcDbObjectIdArray ids = {pSolid->objectId()};
    for (AcDbObjectId id :
         {parts.idAxisX, parts.idAxisY, parts.idAxisZ, parts.idDimLength, parts.idDimWidth})
        if (!id.isNull())
            ids.push_back(id);
    return ids;
}

void EndDrawPanel() {
    CmdEchoOn();
    UnlockCurrentDocument();
}

} // namespace

void SetDrawPanelDialogRunner(DRAW_PANEL_DIALOG runner) {
    DialogRunner() = std::move(runner);
}

int RunDrawPanelDialog(CDlgDrawPanel& dlg) {
    AcApDocManager* pDocs = acDocManagerPtr();
    if (!DialogRunner())
        return IDCANCEL;
    if (pDocs)
        pDocs->pushResourceHandle();
    int nResult = DialogRunner()(dlg);
    if (pDocs)
        pDocs->popResourceHandle();
    return nResult;
}

void DrawPanel() {
    std::unique_ptr<CDlgDrawPanel> pDlg;
    {
        CWaitCursor wait; // the dialog reads its files as it is made
        pDlg = std::make_unique<CDlgDrawPanel>();
    }
    CDlgDrawPanel& dlg = *pDlg;
    if (RunDrawPanelDialog(dlg) != IDOK)
        return;
    CmdEchoOff();
    LockCurrentDocument();
    AcDbDatabase* pDb = WorkingDb();
    AcDbObjectId idOutline = MakeOutline(pDb, g_dPanelLength, g_dPanelWidth);
    AcDbEntity* pOutline = nullptr;
    if (idOutline.isNull() || acdbOpenObject(pOutline, idOutline, AcDb::kForWrite) != Acad::eOk) {
        acutPrintf(L"\n打开实体失败!");
        UnlockCurrentDocument();
        return;
    }
    pOutline->setColorIndex(8);
    pOutline->close();

    std::vector<std::wstring> words = {L"_extrude"};
    AppendSelection(words, {idOutline});
    words.push_back(RealWord(-g_dPanelThick));
    acedCommandS(words);

    AcDbObjectId idSolid = LastEntity(pDb);
    AcDbEntity* pSolid = nullptr;
    if (idSolid.isNull() || idSolid == idOutline ||
        acdbOpenObject(pSolid, idSolid, AcDb::kForWrite) != Acad::eOk) {
        UnlockCurrentDocument();
        return;
    }
    AcDbObjectIdArray ids = FinishPanel(pDb, pSolid, dlg);
    pSolid->close();
    TrackPanelToCursor(ids);
    EndDrawPanel();
}

namespace {

// The panel by pick, asked again until a pick is a panel; null when cancelled.
AcDbObjectId PickPanel() {
    for (;;) {
        AcDbObjectId id;
        AcGePoint3d pt;
        int nResult = acedEntSel(L"\n请选择开孔面板:", id, pt);
        if (nResult == RTCAN)
            return AcDbObjectId();
        if (nResult == RTNORM && IsPanelSolid(id))
            return id;
    }
}

// The handles of the record's parts; the axis flags say which axes it has.
std::vector<std::wstring> ReadPartHandles(const AcDbEntity* pSolid, CDlgDrawPanel& dlg) {
    std::vector<std::wstring> handles;
    std::pair<const wchar_t*, int*> axes[] = {
        {kAxisXApp, &dlg.m_nAxisX}, {kAxisYApp, &dlg.m_nAxisY}, {kAxisZApp, &dlg.m_nAxisZ}};
    for (auto& [pszApp, pFlag] : axes) {
        *pFlag = HasXData(pSolid, pszApp) ? 1 : 0;
        std::wstring strHandle;
        if (*pFlag && GetXDataValue(pSolid, pszApp, 1005, strHandle))
            handles.push_back(strHandle);
    }
    for (const wchar_t* pszApp : {kDimLengthApp, kDimWidthApp}) {
        std::wstring strHandle;
        GetXDataValue(pSolid, pszApp, 1005, strHandle);
        handles.push_back(strHandle);
    }
    return handles;
}

void EraseHandles(AcDbDatabase* pDb, const std::vector<std::wstring>& handles) {
    for (const std::wstring& strHandle : handles) {
        AcDbObjectId id;
        if (!strHandle.empty() &&
            pDb->getAcDbObjectId(id, false, AcDbHandle(strHandle.c_str())) == Acad::eOk)
            EraseEntity(id); // a dead handle opens nothing and is passed over
    }
}

// The new box around the old centre, top face at z = 0, with its parts and record.
void RebuildPanel(AcDbDatabase* pDb, const AcGePoint3d& ptOld, const CDlgDrawPanel& dlg) {
    CmdEchoOff();
    AcGePoint3d ptCorner(ptOld.x - g_dPanelLength / 2, ptOld.y - g_dPanelWidth / 2, 0.0);
    AcDbObjectId idBefore = LastEntity(pDb);
    acedCommandS({L"BOX", PointWord(ptCorner, false), L"L", RealWord(g_dPanelLength),
                  RealWord(g_dPanelWidth), RealWord(-g_dPanelThick)});
    AcDbObjectId idSolid = LastEntity(pDb);
    if (!idSolid.isNull() && idSolid != idBefore) {
        AcDbEntity* pSolid = nullptr;
        if (acdbOpenObject(pSolid, idSolid, AcDb::kForWrite) != Acad::eOk)
            return; // the echo stays off, as the editor's own command leaves it
        FinishPanel(pDb, pSolid, dlg);
        pSolid->close();
    }
    CmdEchoOn();
}

} // namespace

void EditPanel() {
    AcDbDatabase* pDb = WorkingDb();
    AcDbObjectId idPanel;
    std::wstring strHandle;
    if (TzStDblClick(5, strHandle) == 1) {
        // Started by a double-click: that entity, and nothing happens unless it is a panel.
        if (pDb->getAcDbObjectId(idPanel, false, AcDbHandle(strHandle.c_str())) != Acad::eOk ||
            !IsPanelSolid(idPanel))
            return;
    } else {
        idPanel = PickPanel();
    }
    if (idPanel.isNull())
        return;
    AcDbEntity* pPanel = nullptr;
    if (acdbOpenObject(pPanel, idPanel, AcDb::kForWrite) != Acad::eOk) {
        acutPrintf(L"\n打开实体失败");
        return;
    }
    std::unique_ptr<CDlgDrawPanel> pDlg;
    {
        CWaitCursor wait;
        pDlg = std::make_unique<CDlgDrawPanel>();
    }
    CDlgDrawPanel& dlg = *pDlg;
    std::wstring strX, strY, strZ;
    if (ReadPanelSizes(pPanel, strX, strY, strZ)) {
        dlg.m_strWidth = strX;
        dlg.m_strHeight = strY;
        // 0.01 stands for a thin sheet of no thickness.
        dlg.m_strThick = TextToReal(strZ) == 0.01 ? std::wstring(L"0.00") : strZ;
    }
    std::vector<std::wstring> handles = ReadPartHandles(pPanel, dlg);
    AcGePoint3d ptOld;
    SolidCentroid(pPanel, ptOld);
    dlg.m_strTitle = L"面板编辑";
    if (RunDrawPanelDialog(dlg) != IDOK) {
        pPanel->close();
        return;
    }
    EraseHandles(pDb, handles);
    pPanel->erase();
    pPanel->close();
    RebuildPanel(pDb, ptOld, dlg);
}

namespace {

// The record of one picked entity, as the dimension will use it.
bool MakeDimRecord(AcDbObjectId id, const AcGePoint3d& ptPick, CDimPointOfEnt& rec) {
    AcDbEntity* pEnt = nullptr;
    if (acdbOpenObject(pEnt, id, AcDb::kForRead) != Acad::eOk)
        return false;
    rec = CDimPointOfEnt();
    rec.m_idEnt = id;
    bool bOk = true;
    if (IsPanelSolid(pEnt)) {
        rec.m_strType = L"panelEnt";
        SolidCentroid(pEnt, rec.m_ptAux);
        std::wstring strX, strY, strZ, strScale;
        ReadPanelSizes(pEnt, strX, strY, strZ);
        if (!GetDrawingScale(pEnt->database(), strScale) || strScale.empty())
            strScale = L"1:10";
        rec.m_ptDim = SnapToPanelEdge(ptPick, rec.m_ptAux, strX, strY, ScaleTextToRatio(strScale));
    } else if (dynamic_cast<AcDb3dSolid*>(pEnt)) {
        rec.m_strType = L"3dEnt";
        bOk = SolidCentroid(pEnt, rec.m_ptDim);
    } else if (auto* pRef = dynamic_cast<AcDbBlockReference*>(pEnt)) {
        rec.m_strType = L"2dEnt";
        rec.m_ptDim = pRef->position();
    } else {
        rec.m_strType = L"2dEnt";
        pEnt->close();
        return GetEntityCentre(id, rec.m_ptDim);
    }
    pEnt->close();
    return bOk;
}

bool IsDimension(AcDbObjectId id) {
    AcDbEntity* pEnt = nullptr;
    if (acdbOpenObject(pEnt, id, AcDb::kForRead) != Acad::eOk)
        return false;
    bool bDim = dynamic_cast<AcDbDimension*>(pEnt) != nullptr;
    pEnt->close();
    return bDim;
}

// Two picks; false when the user cancelled.
bool PickDimPoints(std::vector<CDimPointOfEnt>& arr) {
    while (arr.size() < 2) {
        AcDbObjectId id;
        AcGePoint3d pt;
        int nResult =
            acedEntSel(arr.empty() ? L"\n请选择标注实体:" : L"\n请选择另一个标注实体:", id, pt);
        if (nResult == RTCAN)
            return false;
        CDimPointOfEnt rec;
        // No dimension can be dimensioned; other failures ask again.
        if (nResult != RTNORM || IsDimension(id) || !MakeDimRecord(id, pt, rec))
            continue;
        arr.push_back(rec);
    }
    return true;
}

} // namespace

void DimHole() {
    std::vector<CDimPointOfEnt> arr;
    if (!PickDimPoints(arr))
        return;
    SquareUpToPanel(arr);
    AcDbDatabase* pDb = WorkingDb();
    AcDbObjectId idBefore = LastEntity(pDb);
    CmdEchoOff();
    // The user places the dimension line: the pause hands the point to the mouse.
    acedCommandS({L"dimlinear", PointWord(arr[0].m_ptDim), PointWord(arr[1].m_ptDim), L"\\"});
    AcDbObjectId idLast = LastEntity(pDb);
    AcDbEntity* pDim = nullptr;
    if (!idLast.isNull() && idLast != idBefore &&
        acdbOpenObject(pDim, idLast, AcDb::kForWrite) == Acad::eOk) {
        if (dynamic_cast<AcDbDimension*>(pDim))
            pDim->setLayer(L"DIM");
        pDim->close();
    }
    CmdEchoOn();
}

void Tz2dView() {
    ClearHole3dViews(g_arrHole3dView);
    int nEcho = 0;
    GetIntVar(L"CMDECHO", nEcho);
    SetIntVar(L"CMDECHO", 0);
    // Closes the group of the 3D view, then steps back over it.
    acedCommandS({L"UNDO", L"E"});
    acedCommandS({L"UNDO", L""});
    acedCommandS({L"_.shademode", L"_2D"});
    acedCommandS({L"_.-view", L"_top"});
    SetIntVar(L"CMDECHO", nEcho);
}

void Tz3dView() {
    Tz2dView();
    int nEcho = 0;
    GetIntVar(L"CMDECHO", nEcho);
    SetIntVar(L"CMDECHO", 0);
    SetIntVar(L"GRIDMODE", 0);
    // The group stays open until Tz2dView closes and undoes it: the cut is a view.
    acedCommandS({L"UNDO", L"BE"});
    ClearHole3dViews(g_arrHole3dView);
    CollectHole3dViews(WorkingDb(), g_arrHole3dView);
    if (g_arrHole3dView.empty())
        acutPrintf(L"当前图中不存在开孔面板实体！\n");
    for (const auto& pView : g_arrHole3dView) {
        std::vector<std::wstring> words = {L"_subtract"};
        AppendSelection(words, {pView->m_idPanel});
        AppendSelection(words, pView->m_arrHoleIds);
        acedCommandS(words);
    }
    acedCommandS({L"_.shademode", L"_g"});
    acedCommandS({L"3dorbit"});
    SetIntVar(L"CMDECHO", nEcho);
    ClearHole3dViews(g_arrHole3dView);
}
