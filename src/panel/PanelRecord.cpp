// Panel record and parts: recognising a panel, its extended data, centre lines and dimensions.
#include "panel/PanelRecord.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "drawingdata/Records.h"

#include <algorithm>
#include <memory>

namespace {

// The named layer when the drawing has it, else the current layer, else "0".
std::wstring LayerOrCurrent(AcDbDatabase* pDb, const std::wstring& strName) {
    AcDbLayerTable* pTable = nullptr;
    if (pDb->getLayerTable(pTable, AcDb::kForRead) != Acad::eOk)
        return L"0";
    bool bHas = pTable->has(strName);
    pTable->close();
    if (bHas)
        return strName;
    AcDbLayerTableRecord* pLayer = nullptr;
    if (acdbOpenObject(pLayer, pDb->clayer(), AcDb::kForRead) != Acad::eOk)
        return L"0";
    std::wstring strCurrent = pLayer->name();
    pLayer->close();
    return strCurrent;
}

AcDbObjectId AppendToModelSpace(AcDbDatabase* pDb, AcDbEntity* pEnt) {
    std::unique_ptr<AcDbEntity> owned(pEnt);
    AcDbBlockTableRecord* pMs = nullptr;
    if (acdbOpenObject(pMs, pDb->modelSpaceId(), AcDb::kForWrite) != Acad::eOk)
        return AcDbObjectId();
    AcDbObjectId id;
    Acad::ErrorStatus es = pMs->appendAcDbEntity(id, pEnt);
    pMs->close();
    if (es != Acad::eOk)
        return AcDbObjectId();
    owned.release()->close();
    return id;
}

void SetCentreLineLook(AcDbDatabase* pDb, AcDbEntity* pEnt) {
    pEnt->setLayer(LayerOrCurrent(pDb, L"CENT"));
    pEnt->setColorIndex(4);
    pEnt->setLinetype(L"CENTER");
    pEnt->setLinetypeScale(2.0);
}

} // namespace

bool IsPanelSolid(const AcDbEntity* pEnt) {
    return pEnt && dynamic_cast<const AcDb3dSolid*>(pEnt) && HasXData(pEnt, kPanelApp);
}

bool IsPanelSolid(AcDbObjectId id) {
    AcDbEntity* pEnt = nullptr;
    if (id.isNull() || acdbOpenObject(pEnt, id, AcDb::kForRead) != Acad::eOk)
        return false;
    bool bPanel = IsPanelSolid(pEnt);
    pEnt->close();
    return bPanel;
}

bool ReadPanelSizes(const AcDbEntity* pSolid, std::wstring& strX, std::wstring& strY,
                    std::wstring& strZ) {
    std::wstring strSizes;
    if (!GetXDataValue(pSolid, kPanelApp, 1000, strSizes))
        return false;
    std::vector<std::wstring> parts;
    size_t nStart = 0;
    for (size_t nAt; (nAt = strSizes.find(L"||", nStart)) != std::wstring::npos; nStart = nAt + 2)
        parts.push_back(strSizes.substr(nStart, nAt - nStart));
    parts.push_back(strSizes.substr(nStart));
    if (parts.size() != 3)
        return false;
    strX = parts[0];
    strY = parts[1];
    strZ = parts[2];
    return true;
}

AcDbObjectId EnsureLayer(const std::wstring& strName, short nColor, AcDbDatabase* pDb) {
    AcDbLayerTable* pTable = nullptr;
    if (!pDb || pDb->getLayerTable(pTable, AcDb::kForWrite) != Acad::eOk)
        return AcDbObjectId();
    AcDbLayerTableRecord* pLayer = nullptr;
    if (pTable->getAt(strName, pLayer, AcDb::kForWrite) == Acad::eOk) {
        pLayer->setIsFrozen(false);
        pLayer->setIsLocked(false);
        pLayer->setIsOff(false);
        pLayer->close();
    } else {
        auto pNew = std::make_unique<AcDbLayerTableRecord>();
        pNew->setColorIndex(nColor);
        if (pNew->setName(strName) == Acad::eOk && pTable->add(pNew.get()) == Acad::eOk)
            pNew.release()->close();
    }
    AcDbObjectId id;
    pTable->getAt(strName, id);
    pTable->close();
    return id;
}

AcDbObjectId MakeCentreLine2d(AcDbDatabase* pDb, const std::vector<AcGePoint3d>& points) {
    if (!pDb)
        return AcDbObjectId();
    auto* pLine = new AcDb2dPolyline();
    // The axes float one unit above the panel's top face.
    for (const AcGePoint3d& pt : points) {
        AcDbPolylineVertex vertex;
        vertex.pt = AcGePoint3d(pt.x, pt.y, 1.0);
        pLine->appendVertex(vertex);
    }
    SetCentreLineLook(pDb, pLine);
    return AppendToModelSpace(pDb, pLine);
}

AcDbObjectId MakeCentreLine(AcDbDatabase* pDb, const AcGePoint3d& from, const AcGePoint3d& to) {
    if (!pDb)
        return AcDbObjectId();
    auto* pLine = new AcDbLine(from, to);
    SetCentreLineLook(pDb, pLine);
    return AppendToModelSpace(pDb, pLine);
}

AcDbObjectId MakeLengthDim(AcDbDatabase* pDb, const AcGePoint3d& p1, const AcGePoint3d& p2,
                           const AcGePoint3d& ptLine, const std::wstring& strText) {
    if (!pDb)
        return AcDbObjectId();
    auto* pDim = new AcDbAlignedDimension();
    pDim->setXLine1Point(p1);
    pDim->setXLine2Point(p2);
    pDim->setDimLinePoint(ptLine);
    pDim->setDimensionText(strText);
    pDim->setLayer(LayerOrCurrent(pDb, L"DIM"));
    AcDbDimStyleTable* pStyles = nullptr;
    if (pDb->getDimStyleTable(pStyles, AcDb::kForRead) == Acad::eOk) {
        AcDbObjectId idStyle;
        if (pStyles->getAt(L"STANDARD", idStyle) == Acad::eOk)
            pDim->setDimensionStyle(idStyle);
        pStyles->close();
    }
    return AppendToModelSpace(pDb, pDim);
}

PANEL_PARTS BuildPanelParts(AcDbDatabase* pDb, const AcGePoint3d& c, double dL, double dW,
                            double dT, double dRatio, bool bAxisX, bool bAxisY, bool bAxisZ) {
    PANEL_PARTS parts;
    double mL = 0.05 * dL, mW = 0.05 * dW, mT = 0.05 * dT;
    if (bAxisX)
        parts.idAxisX = MakeCentreLine2d(pDb, {AcGePoint3d(c.x + 0.5 * dL + mL, c.y, c.z),
                                               AcGePoint3d(c.x - 0.5 * dL - mL, c.y, c.z)});
    if (bAxisY)
        parts.idAxisY = MakeCentreLine2d(pDb, {AcGePoint3d(c.x, c.y + 0.5 * dW + mW, c.z),
                                               AcGePoint3d(c.x, c.y - 0.5 * dW - mW, c.z)});
    // The 2.0 is absolute: a thin sheet still shows its Z axis.
    if (bAxisZ)
        parts.idAxisZ = MakeCentreLine(pDb, AcGePoint3d(c.x, c.y, c.z - 0.5 * dT - mT - 2.0),
                                       AcGePoint3d(c.x, c.y, c.z + 0.5 * dT + mT + 2.0));
    double o = 0.02 * std::max(dL, dW);
    AcGePoint3d ptCorner(c.x - dL / 2, c.y + dW / 2, c.z);
    parts.idDimLength = MakeLengthDim(pDb, ptCorner, AcGePoint3d(c.x + dL / 2, c.y + dW / 2, c.z),
                                      AcGePoint3d(ptCorner.x + o, ptCorner.y + o, c.z),
                                      Format(L"%.2f", dL * dRatio));
    parts.idDimWidth = MakeLengthDim(pDb, ptCorner, AcGePoint3d(c.x - dL / 2, c.y - dW / 2, c.z),
                                     AcGePoint3d(ptCorner.x - o, ptCorner.y - o, c.z),
                                     Format(L"%.2f", dW * dRatio));
    return parts;
}

std::wstring HandleText(AcDbObjectId id) {
    return id.isNull() ? std::wstring() : id.handle().text();
}

bool WritePanelRecord(AcDbDatabase* pDb, AcDbEntity* pSolid, double dRealX, double dRealY,
                      double dRealZ, const PANEL_PARTS& parts) {
    std::wstring strSizes = Format(L"%.2f||%.2f||%.2f", dRealX, dRealY, dRealZ);
    bool bOk = AppendXDataValue(pDb, pSolid, kPanelApp, 1000, strSizes);
    const std::pair<const wchar_t*, AcDbObjectId> handles[] = {
        {kAxisXApp, parts.idAxisX},       {kAxisYApp, parts.idAxisY},
        {kAxisZApp, parts.idAxisZ},       {kDimLengthApp, parts.idDimLength},
        {kDimWidthApp, parts.idDimWidth},
    };
    // The axes are optional; the two dimensions are written in any case.
    for (const auto& [pszApp, id] : handles)
        if (!id.isNull() || pszApp == kDimLengthApp || pszApp == kDimWidthApp)
            bOk = AppendXDataValue(pDb, pSolid, pszApp, 1005, HandleText(id)) && bOk;
    return bOk;
}
