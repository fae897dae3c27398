// Drawing commands: UNDO over the document's log, linear dimensions, explode and purge.
#include "editor/EditorHost.h"
#include "editor/NativeCommands.h"

#include "base/Format.h"
#include "base/StrUtil.h"

#include <cmath>
#include <numbers>
#include <set>

namespace {

int Undo(CEditorHost& ed) {
    CHostDocument* pDoc = ed.Doc();
    if (!pDoc)
        return RTERROR;
    std::wstring strAnswer;
    if (!ed.GetInput(
            L"输入要放弃的操作数目或 [自动(A)/控制(C)/开始(BE)/结束(E)/标记(M)/后退(B)] <1>: ",
            strAnswer))
        return RTCAN;
    std::wstring s = StrMakeUpper(StrTrimLeft(StrTrim(strAnswer), L"_"));
    CUndoLog& log = pDoc->Undo();
    if (s == L"BE" || s == L"BEGIN") {
        log.BeginGroup(pDoc->m_view);
        return RTNORM;
    }
    if (s == L"E" || s == L"END") {
        log.EndGroup();
        return RTNORM;
    }
    if (s == L"A" || s == L"AUTO" || s == L"C" || s == L"CONTROL" || s == L"M" || s == L"MARK")
        return RTNORM; // the log always runs complete; marks are the commands themselves
    int nCount = 1;
    if (!s.empty() && s != L"B" && s != L"BACK") {
        wchar_t* end = nullptr;
        long n = std::wcstol(s.c_str(), &end, 10);
        if (!end || *end || n <= 0) {
            ed.Print(L"需要正整数或选项关键字。\n");
            return RTERROR;
        }
        nCount = static_cast<int>(n);
    }
    int nDone = 0;
    while (nDone < nCount && log.UndoStep(ed.m_vars, pDoc->m_view))
        ++nDone;
    if (nDone == 0)
        ed.Print(L"已放弃所有操作。\n");
    return RTNORM;
}

// The editor's rule for the direction of a linear dimension: horizontal when
// the line is placed above or below the points, vertical when beside them.
double DimensionRotation(const AcGePoint3d& a, const AcGePoint3d& b, const AcGePoint3d& p) {
    double x0 = std::min(a.x, b.x), x1 = std::max(a.x, b.x);
    double y0 = std::min(a.y, b.y), y1 = std::max(a.y, b.y);
    double outX = p.x < x0 ? x0 - p.x : (p.x > x1 ? p.x - x1 : 0);
    double outY = p.y < y0 ? y0 - p.y : (p.y > y1 ? p.y - y1 : 0);
    if (outX == 0 && outY == 0)
        return (x1 - x0) >= (y1 - y0) ? 0.0 : std::numbers::pi / 2;
    return outY >= outX ? 0.0 : std::numbers::pi / 2;
}

int DimLinear(CEditorHost& ed) {
    AcDbDatabase* pDb = ed.Db();
    AcGePoint3d a, b, p;
    if (!pDb)
        return RTERROR;
    int nResult = ed.m_input.GetPoint(nullptr, L"指定第一个尺寸界线原点或 <选择对象>: ", a);
    if (nResult == RTNORM)
        nResult = ed.m_input.GetPoint(&a, L"指定第二条尺寸界线原点: ", b);
    if (nResult == RTNORM)
        nResult = ed.m_input.GetPoint(
            &b, L"指定尺寸线位置或 [多行文字(M)/文字(T)/角度(A)/水平(H)/垂直(V)/旋转(R)]: ", p);
    if (nResult != RTNORM)
        return nResult == RTNONE ? RTERROR : nResult;
    auto* pDim = new AcDbRotatedDimension;
    pDim->setXLine1Point(a);
    pDim->setXLine2Point(b);
    pDim->setDimLinePoint(p);
    pDim->setRotation(DimensionRotation(a, b, p));
    pDim->setDimensionStyle(pDb->dimstyle());
    AcGeVector3d dir(std::cos(pDim->rotation()), std::sin(pDim->rotation()), 0);
    auto foot = [&](const AcGePoint3d& q) {
        AcGeVector3d d = q - p;
        return p + dir * (d.x * dir.x + d.y * dir.y);
    };
    AcGePoint3d f1 = foot(a), f2 = foot(b);
    pDim->setTextPosition(AcGePoint3d((f1.x + f2.x) / 2, (f1.y + f2.y) / 2, p.z));
    AcDbBlockTableRecord* pSpace = nullptr;
    if (acdbOpenObject(pSpace, pDb->modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
        delete pDim;
        return RTERROR;
    }
    bool bOk = pSpace->appendAcDbEntity(pDim) == Acad::eOk;
    pSpace->close();
    if (!bOk) {
        delete pDim;
        return RTERROR;
    }
    double dValue = pDim->measurement() * pDb->dimlfac();
    pDim->close();
    ed.Print(Format(L"标注文字 = %s\n", FormatMeasurement(dValue)));
    return RTNORM;
}

int Explode(CEditorHost& ed) {
    AcDbObjectIdArray ids;
    int nSel = ed.m_input.SSGet(L"", ids);
    if (nSel == RTCAN)
        return RTCAN;
    int nExploded = 0, nRefused = 0;
    for (AcDbObjectId id : ids) {
        AcDbBlockReference* pRef = nullptr;
        if (acdbOpenObject(pRef, id, AcDb::kForWrite) != Acad::eOk) {
            ++nRefused;
            continue;
        }
        std::vector<AcDbEntity*> parts;
        AcDbBlockTableRecord* pOwner = nullptr;
        if (pRef->explode(parts) != Acad::eOk ||
            acdbOpenObject(pOwner, pRef->ownerId(), AcDb::kForWrite) != Acad::eOk) {
            for (AcDbEntity* p : parts)
                delete p;
            pRef->close();
            ++nRefused;
            continue;
        }
        for (AcDbEntity* pPart : parts) {
            // Parts on layer "0" or by block take the reference's layer and colour.
            if (pPart->layer() == L"0")
                pPart->setLayer(pRef->layer());
            if (pPart->colorIndex() == 0)
                pPart->setColorIndex(pRef->colorIndex());
            if (pOwner->appendAcDbEntity(pPart) == Acad::eOk)
                pPart->close();
            else
                delete pPart;
        }
        pOwner->close();
        pRef->erase();
        pRef->close();
        ++nExploded;
    }
    if (nRefused > 0)
        ed.Print(Format(L"%d 个对象无法分解。\n", nRefused));
    return nExploded > 0 ? RTNORM : RTERROR;
}

// Names used by live entities in every block: layers, text styles, blocks.
struct USAGE {
    std::set<std::wstring> layers, styles;
    std::set<AcDbStub*> blocks;
};

std::wstring Upper(const std::wstring& s) {
    return StrMakeUpper(s);
}

USAGE Usage(AcDbDatabase& db) {
    USAGE use;
    AcDbBlockTable* pBlocks = nullptr;
    if (db.getBlockTable(pBlocks, AcDb::kForRead) != Acad::eOk)
        return use;
    std::vector<AcDbObjectId> blockIds = pBlocks->records();
    pBlocks->close();
    for (AcDbObjectId blockId : blockIds) {
        if (!blockId.isValid() || blockId.isErased())
            continue;
        auto* pBlock = dynamic_cast<AcDbBlockTableRecord*>(blockId.stub()->pObject);
        if (!pBlock)
            continue;
        for (AcDbObjectId id : pBlock->entities()) {
            if (!id.isValid() || id.isErased())
                continue;
            auto* pEnt = dynamic_cast<AcDbEntity*>(id.stub()->pObject);
            if (!pEnt)
                continue;
            use.layers.insert(Upper(pEnt->layer()));
            if (auto* p = dynamic_cast<AcDbText*>(pEnt))
                use.styles.insert(Upper(p->m_strStyle));
            if (auto* p = dynamic_cast<AcDbMText*>(pEnt))
                use.styles.insert(Upper(p->m_strStyle));
            if (auto* p = dynamic_cast<AcDbBlockReference*>(pEnt))
                use.blocks.insert(p->blockTableRecord().stub());
            if (auto* p = dynamic_cast<AcDbDimension*>(pEnt))
                use.blocks.insert(p->dimBlockId().stub());
        }
    }
    return use;
}

// Erases the unused records of a table that pass the test; the count erased.
template <class Test> int PurgeTable(AcDbObjectId tableId, Test unused) {
    AcDbSymbolTable* pTable = nullptr;
    if (acdbOpenObject(pTable, tableId, AcDb::kForRead) != Acad::eOk)
        return 0;
    std::vector<AcDbObjectId> ids = pTable->records();
    pTable->close();
    int n = 0;
    for (AcDbObjectId id : ids) {
        AcDbSymbolTableRecord* pRec = nullptr;
        if (acdbOpenObject(pRec, id, AcDb::kForRead) != Acad::eOk)
            continue;
        if (unused(*pRec) && pRec->upgradeOpen() == Acad::eOk && pRec->erase() == Acad::eOk)
            ++n;
        pRec->close();
    }
    return n;
}

int Purge(CEditorHost& ed) {
    AcDbDatabase* pDb = ed.Db();
    if (!pDb)
        return RTERROR;
    std::wstring strType;
    if (!ed.GetInput(L"输入要清理的未使用对象的类型 "
                     L"[块(B)/标注样式(D)/图层(LA)/线型(LT)/文字样式(ST)/全部(A)]: ",
                     strType))
        return RTCAN;
    std::wstring t = StrMakeUpper(StrTrimLeft(StrTrim(strType), L"_"));
    bool bAll = t.empty() || t == L"A" || t == L"ALL";
    bool bBlocks = bAll || t == L"B", bLayers = bAll || t == L"LA", bStyles = bAll || t == L"ST";
    if (!bBlocks && !bLayers && !bStyles && t != L"D" && t != L"LT") {
        ed.Print(L"需要选项关键字。\n");
        return RTERROR;
    }
    int nPurged = 0;
    // A block freed by purging another may become unused in turn.
    for (bool bMore = bBlocks; bMore;) {
        USAGE use = Usage(*pDb);
        int n = PurgeTable(pDb->blockTableId(), [&](const AcDbSymbolTableRecord& r) {
            auto& block = static_cast<const AcDbBlockTableRecord&>(r);
            return !block.isLayout() && !use.blocks.count(r.objectId().stub()) &&
                   r.name().rfind(L"*Model", 0) != 0 && r.name().rfind(L"*Paper", 0) != 0;
        });
        nPurged += n;
        bMore = n > 0;
    }
    USAGE use = Usage(*pDb);
    AcDbObjectId clayer = pDb->clayer(), cstyle = pDb->textstyle();
    if (bLayers)
        nPurged += PurgeTable(pDb->layerTableId(), [&](const AcDbSymbolTableRecord& r) {
            std::wstring n = Upper(r.name());
            return n != L"0" && n != L"DEFPOINTS" && r.objectId() != clayer && !use.layers.count(n);
        });
    if (bStyles)
        nPurged += PurgeTable(pDb->textStyleTableId(), [&](const AcDbSymbolTableRecord& r) {
            std::wstring n = Upper(r.name());
            return n != L"STANDARD" && r.objectId() != cstyle && !use.styles.count(n);
        });
    ed.Print(nPurged ? Format(L"已删除 %d 个未使用的对象。\n", nPurged)
                     : L"没有未使用的命名对象。\n");
    return RTNORM;
}

} // namespace

std::wstring FormatMeasurement(double d) {
    std::wstring s = Format(L"%.2f", d);
    while (s.find(L'.') != std::wstring::npos && (s.back() == L'0' || s.back() == L'.'))
        s.pop_back();
    return s;
}

void AddDrawingCommands(CEditorHost& editor) {
    editor.AddCommand(L"UNDO", [&editor] { return Undo(editor); });
    editor.AddCommand(L"DIMLINEAR", [&editor] { return DimLinear(editor); });
    editor.AddCommand(L"EXPLODE", [&editor] { return Explode(editor); });
    editor.AddCommand(L"PURGE", [&editor] { return Purge(editor); });
    editor.AddCommand(L"-PURGE", [&editor] { return Purge(editor); });
}
