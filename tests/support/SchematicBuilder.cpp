// A fluent builder of schematics in a drawing database.
#include "SchematicBuilder.h"

#include "DbBuilders.h"
#include "base/SysPath.h"
#include "dxf/DxfCodec.h"

#include <cstdlib>
#include <gtest/gtest.h>

bool ReadFixtureDrawing(AcDbDatabase& db, const std::string& relPath) {
    acdbSetFileCodec(&GetDxfCodec());
    std::wstring path = FromOsPath(std::string(std::getenv("QM_TEST_DATA")) + "/" + relPath);
    Acad::ErrorStatus es = db.readDwgFile(path.c_str());
    acdbSetFileCodec(nullptr);
    return es == Acad::eOk;
}

namespace {

resbuf* Node(int code, const std::wstring& value) {
    return acutNewStringRb(code, value);
}

AcDbText* MakeText(const std::wstring& s, double x, double y) {
    auto* p = new AcDbText;
    p->setTextString(s);
    p->setPosition(AcGePoint3d(x, y, 0));
    return p;
}

} // namespace

std::wstring CSchematicBuilder::Symbol(const std::wstring& strBlock,
                                       const std::vector<TERMINAL_AT>& terminals, double w,
                                       double h) {
    AcDbObjectId frame =
        AppendToBlock(m_db, strBlock, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(w, h, 0)));
    AcDbEntity* pFrame = nullptr;
    EXPECT_EQ(acdbOpenObject(pFrame, frame, AcDb::kForRead), Acad::eOk);
    AcDbBlockTableRecord* pRec = nullptr;
    EXPECT_EQ(acdbOpenObject(pRec, pFrame->blockId(), AcDb::kForRead), Acad::eOk);
    std::wstring block = pRec->name();
    pRec->close();
    pFrame->close();
    for (const TERMINAL_AT& t : terminals) {
        AcDbObjectId id = AppendToBlock(m_db, block, MakeDot(t.x, t.y));
        SetXData(id, Chain({Node(1001, L"TZ_SYMB1LIB_TERMPOINT"), Node(1000, t.name)}));
    }
    return block;
}

CSchematicBuilder& CSchematicBuilder::TerminalByText(const std::wstring& block,
                                                     const std::wstring& name, double x, double y) {
    AcDbObjectId text = AppendToBlock(m_db, block, MakeText(name, x, y + 1));
    AcDbObjectId id = AppendToBlock(m_db, block, MakeDot(x, y));
    SetXData(id, Chain({Node(1001, L"TZ_SYMB1LIB_TERMPOINT"), Node(1005, text.handle().text())}));
    return *this;
}

AcDbObjectId CSchematicBuilder::Insert(const std::wstring& block, double x, double y,
                                       double rotation, bool bSecondLevel) {
    AcDbBlockTable* pTable = nullptr;
    EXPECT_EQ(m_db.getBlockTable(pTable, AcDb::kForRead), Acad::eOk);
    AcDbObjectId blockId;
    EXPECT_EQ(pTable->getAt(block, blockId), Acad::eOk);
    pTable->close();
    auto* pRef = new AcDbBlockReference(AcGePoint3d(x, y, 0), blockId);
    pRef->setRotation(rotation);
    AcDbObjectId id = AppendToModelSpace(m_db, pRef);
    if (bSecondLevel)
        Tag(id, L"TZ_SYMB2_LABEL", 1005, L"0");
    return id;
}

AcDbObjectId CSchematicBuilder::LinkedText(AcDbObjectId ref, const std::wstring& text,
                                           const std::wstring& forward, const std::wstring& back,
                                           bool bMText) {
    AcDbEntity* pText = nullptr;
    if (bMText) {
        auto* p = new AcDbMText;
        p->setContents(text);
        pText = p;
    } else {
        pText = MakeText(text, 0, 0);
    }
    AcDbObjectId id = AppendToModelSpace(m_db, pText);
    Tag(id, back, 1005, ref.handle().text());
    Tag(ref, forward, 1005, id.handle().text());
    return id;
}

AcDbObjectId CSchematicBuilder::Wire(double x0, double y0, double x1, double y1,
                                     const std::wstring& layer) {
    auto* p = new AcDbLine(AcGePoint3d(x0, y0, 0), AcGePoint3d(x1, y1, 0));
    p->setLayer(layer);
    return AppendToModelSpace(m_db, p);
}

AcDbObjectId CSchematicBuilder::JunctionDot(double x, double y) {
    AcDbObjectId id = AppendToModelSpace(m_db, MakeDot(x, y, 0.4));
    Tag(id, L"TZ_CONNECT_DOT", 1000);
    return id;
}

AcDbObjectId CSchematicBuilder::BoardFrame(double px, double py, double ox, double oy, double w,
                                           double h) {
    AcDbObjectId id = AppendToModelSpace(m_db, MakeText(L"X1", px, py));
    Tag(id, L"DZP_NAME", 1000);
    SetXData(id, Chain({Node(1001, L"DZB_ORIGINPOINT_POS"), acutNewPointRb(1010, ox, oy, 0)}));
    SetXData(id, Chain({Node(1001, L"DZB_TOTAL_WIDTH_WL"), acutNewRealRb(1040, w)}));
    SetXData(id, Chain({Node(1001, L"DZB_TOTAL_HEIGHT_HL"), acutNewRealRb(1040, h)}));
    return id;
}

AcDbObjectId CSchematicBuilder::WireName(AcDbObjectId line, const std::wstring& text) {
    AcDbObjectId id = AppendToModelSpace(m_db, MakeText(text, 0, 0));
    Tag(id, L"LINEHANDLE", 1005, line.handle().text());
    Tag(line, L"TEXTHANDLE", 1005, id.handle().text());
    return id;
}

CSchematicBuilder& CSchematicBuilder::Tag(AcDbObjectId id, const std::wstring& app, int code,
                                          const std::wstring& value, bool bAppend) {
    resbuf* pChain = nullptr;
    if (bAppend) {
        AcDbObject* pObj = nullptr;
        EXPECT_EQ(acdbOpenObject(pObj, id, AcDb::kForRead), Acad::eOk);
        pChain = pObj->xData(app.c_str());
        pObj->close();
    }
    if (!pChain)
        pChain = Node(1001, app);
    acutLastRb(pChain)->rbnext = Node(code, value);
    SetXData(id, pChain);
    return *this;
}

CSchematicBuilder& CSchematicBuilder::Part(const std::wstring& location, const std::wstring& label,
                                           const std::wstring& name, const std::wstring& type,
                                           const std::wstring& note) {
    std::vector<std::wstring> s = {L"$Location", location, L"$LABEL", label, L"$DESCRIBE", L"",
                                   L"$TYPE",     type,     L"$CODE",  L"",   L"$NOTE",     note,
                                   L"$LABELDIS", L"",      L"$NAME",  name};
    resbuf* pChain = nullptr;
    for (auto it = s.rbegin(); it != s.rend(); ++it) {
        resbuf* p = Node(1, *it);
        p->rbnext = pChain;
        pChain = p;
    }
    AcDbDictionary* pNod = nullptr;
    EXPECT_EQ(m_db.getNamedObjectsDictionary(pNod, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId dictId;
    if (pNod->getAt(L"TZ_DICITIONARY_PART2DATABASE", dictId) != Acad::eOk) {
        auto* pDict = new AcDbDictionary;
        pNod->setAt(L"TZ_DICITIONARY_PART2DATABASE", pDict, dictId);
        pDict->close();
    }
    pNod->close();
    AcDbDictionary* pDict = nullptr;
    EXPECT_EQ(acdbOpenObject(pDict, dictId, AcDb::kForWrite), Acad::eOk);
    auto* pRec = new AcDbXrecord;
    pRec->setFromRbChain(pChain);
    AcDbObjectId recId;
    pDict->setAt(L"TZ_XRECORD_ONEPART2_" + std::to_wstring(++m_nPart), pRec, recId);
    pRec->close();
    pDict->close();
    acutRelRb(pChain);
    return *this;
}

CSchematicBuilder& CSchematicBuilder::DrawingLocation(const std::wstring& location) {
    AcDbDictionary* pNod = nullptr;
    EXPECT_EQ(m_db.getNamedObjectsDictionary(pNod, AcDb::kForWrite), Acad::eOk);
    auto* pDict = new AcDbDictionary;
    AcDbObjectId dictId, recId;
    pNod->setAt(L"TZ_DWG_DICITIONARY", pDict, dictId);
    pNod->close();
    auto* pRec = new AcDbXrecord;
    resbuf* pChain = Chain({Node(1, L"位置"), Node(1, location)});
    pRec->setFromRbChain(pChain);
    acutRelRb(pChain);
    pDict->setAt(L"TZ_LOCATION_XRECORD", pRec, recId);
    pRec->close();
    pDict->close();
    return *this;
}
