// Inserting library items into a real document of the reference editor: drag answers, rows,
// cancels, unreadable items, explode with the part records, and the layout library's twin.
#include "app/LibState.h"
#include "app/entry/Commands.h"
#include "app/entry/DrawingManageApp.h"
#include "base/FileSystem.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"
#include "host/HostDocuments.h"
#include "host/HostEditor.h"

#include "DbBuilders.h"
#include "DbDump.h"
#include "EditorTestHost.h"
#include "SchematicBuilder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

namespace {

struct PLACED {
    double x, y, sx, sy, sz, dRotation;
    std::wstring strBlock;
};

class BlockInsertTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(m_app.EntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetOK);
        for (CLibState* pState : {&g_HoleLib, &g_LayoutLib}) {
            *pState = CLibState();
            pState->pLibDlg = new CFakeBrowser; // the browser that the command raises again
        }
        m_strItem = m_dir / L"InstallHole\\按钮\\22孔.dwg";
        FsCreateDirectory(m_dir / L"InstallHole");
        FsCreateDirectory(m_dir / L"InstallHole\\按钮");
    }
    void TearDown() override {
        m_app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
        for (CLibState* pState : {&g_HoleLib, &g_LayoutLib}) {
            delete pState->pLibDlg;
            *pState = CLibState();
        }
    }

    AcDbDatabase& Target() { return *acDocManagerPtr()->curDocument()->database(); }
    CFakeBrowser& Browser(CLibState& state = g_HoleLib) {
        return *static_cast<CFakeBrowser*>(state.pLibDlg);
    }

    // An item of a 10 x 4 frame from the origin and a circle, saved as a library drawing.
    void WriteItem(const std::wstring& strPath) {
        AcDbDatabase item;
        AppendToModelSpace(item, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(10, 4, 0)));
        AppendToModelSpace(item, new AcDbCircle(AcGePoint3d(5, 2, 0), 1));
        ASSERT_EQ(item.saveAs(strPath.c_str()), Acad::eOk);
    }

    void HandOver(CLibState& state, const std::wstring& strPath, int nCount, double dScale = 1.0,
                  double dAngle = 0.0, int bExplode = 0) {
        state.strDwgFile = strPath;
        state.nCount = nCount;
        state.dScale = dScale;
        state.dAngle = dAngle;
        state.bExplode = bExplode;
    }

    // The live block references of model space, in their order.
    std::vector<PLACED> References() {
        std::vector<PLACED> refs;
        AcDbBlockTableRecord* pMs = nullptr;
        EXPECT_EQ(acdbOpenObject(pMs, Target().modelSpaceId(), AcDb::kForRead), Acad::eOk);
        for (AcDbObjectId id : pMs->entities()) {
            AcDbBlockReference* pRef = nullptr;
            if (acdbOpenObject(pRef, id, AcDb::kForRead) != Acad::eOk)
                continue;
            AcDbBlockTableRecord* pBlock = nullptr;
            acdbOpenObject(pBlock, pRef->blockTableRecord(), AcDb::kForRead);
            AcGeScale3d s = pRef->scaleFactors();
            refs.push_back({pRef->position().x, pRef->position().y, s.sx, s.sy, s.sz,
                            pRef->rotation(), pBlock ? pBlock->name() : L""});
            if (pBlock)
                pBlock->close();
            pRef->close();
        }
        pMs->close();
        return refs;
    }

    CTempDir m_dir;
    CEditorTestHost m_host;
    CDrawingManageApp m_app;
    std::wstring m_strItem;
};

// Every part record of a drawing as "location/label/name", in record order.
std::vector<std::wstring> PartRecords(AcDbDatabase& db) {
    std::map<std::wstring, std::wstring> byName;
    AcDbDictionary* pNod = nullptr;
    db.getNamedObjectsDictionary(pNod, AcDb::kForRead);
    AcDbDictionary* pDict = nullptr;
    pNod->getAt(TZ_DICITIONARY_PART2DATABASE, pDict, AcDb::kForRead);
    pNod->close();
    if (!pDict)
        return {};
    AcDbDictionaryIterator* it = pDict->newIterator();
    for (; !it->done(); it->next()) {
        AcDbXrecord* pRec = nullptr;
        it->getObject(pRec, AcDb::kForRead);
        CStringArray v;
        StringsFromChain(pRec->chain(), v);
        pRec->close();
        byName[it->name()] = v[1] + L"/" + v[3] + L"/" + v[15];
    }
    delete it;
    pDict->close();
    std::vector<std::wstring> records;
    for (const auto& [name, text] : byName)
        records.push_back(text);
    return records;
}

} // namespace

TEST_F(BlockInsertTest, ARowOfThreeAtTheDrawingsScaleRotatedAfterARefusedSecondPoint) {
    WriteItem(m_strItem);
    HandOver(g_HoleLib, m_strItem, 3, 2.0, 90.0);
    g_HoleLib.dDrawingScale = 10.0; // a 1:10 drawing
    m_host.m_editor.m_vars.Set(L"CMDECHO", SYSVAR_VALUE::Short(1));
    m_host.Run({L"DrawingInsert", L"100,50", L"101,50.5", L"101.01,50.2"});

    std::vector<PLACED> refs = References();
    ASSERT_EQ(refs.size(), 3u); // the drag image is gone
    const double kRotation = 90.0 * 3.1415926 / 180.0;
    for (const PLACED& p : refs) {
        EXPECT_EQ(p.strBlock.substr(0, 2), L"*U");
        EXPECT_EQ(p.strBlock, refs[0].strBlock); // one block for every copy
        EXPECT_DOUBLE_EQ(p.sx, 0.2);
        EXPECT_DOUBLE_EQ(p.sy, 0.2);
        EXPECT_DOUBLE_EQ(p.sz, 1.0);
        EXPECT_DOUBLE_EQ(p.dRotation, kRotation);
        EXPECT_DOUBLE_EQ(p.y, 50.0); // the row stays on the first point's line
    }
    EXPECT_DOUBLE_EQ(refs[0].x, 100.0);
    EXPECT_NEAR(refs[1].x, 101.01, 1e-9);
    EXPECT_NEAR(refs[2].x, 102.02, 1e-9);
    const std::wstring& printed = m_host.m_strPrinted;
    EXPECT_NE(printed.find(L"\n请指定插入位置:"), std::wstring::npos);
    EXPECT_NE(printed.find(L"\n请指定第二个符号位置:"), std::wstring::npos);
    size_t nRetry = printed.find(L"第二个符号位置不适，请重新指定:");
    ASSERT_NE(nRetry, std::wstring::npos); // exactly 1.0 off in X with Y near: refused once
    EXPECT_EQ(printed.find(L"第二个符号位置不适", nRetry + 1), std::wstring::npos);
    EXPECT_EQ(m_host.m_editor.m_vars.Short(L"CMDECHO"), 0); // left off
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
    EXPECT_NE(Browser().m_strLog.find(L"show;"), std::wstring::npos);
}

TEST_F(BlockInsertTest, TheLargerDifferenceSetsTheRowsAxisAndEqualOnesRunAlongX) {
    WriteItem(m_strItem);
    HandOver(g_HoleLib, m_strItem, 2);
    m_host.Run({L"DrawingInsert", L"0,0", L"-7,7"});
    HandOver(g_HoleLib, m_strItem, 3);
    m_host.Run({L"DrawingInsert", L"0,100", L"3,110"});
    HandOver(g_HoleLib, m_strItem, 2);
    m_host.Run({L"DrawingInsert", L"50,50", L"51,51", L"52,50.5"}); // 1.0 off in both: refused

    std::vector<PLACED> refs = References();
    ASSERT_EQ(refs.size(), 7u);
    std::vector<std::pair<double, double>> at;
    for (const PLACED& p : refs)
        at.emplace_back(p.x, p.y);
    EXPECT_EQ(at, (std::vector<std::pair<double, double>>{
                      {0, 0}, {-7, 0}, {0, 100}, {0, 110}, {0, 120}, {50, 50}, {52, 50}}));
    EXPECT_DOUBLE_EQ(refs[0].sx, 1.0);
}

TEST_F(BlockInsertTest, CancelsKeepWhatIsPlacedAndLeaveNoImage) {
    WriteItem(m_strItem);
    HandOver(g_HoleLib, m_strItem, 3);
    m_host.Run({L"DrawingInsert", L"*Cancel*"});
    EXPECT_TRUE(References().empty());
    resbuf* pBlock = acdbTblSearch(L"BLOCK", L"*U1"); // the block stays, unpurged
    EXPECT_NE(pBlock, nullptr);
    acutRelRb(pBlock);
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
    EXPECT_NE(Browser().m_strLog.find(L"show;"), std::wstring::npos);

    HandOver(g_HoleLib, m_strItem, 3);
    m_host.Run({L"DrawingInsert", L"20,30", L"*Cancel*"});
    std::vector<PLACED> refs = References();
    ASSERT_EQ(refs.size(), 1u);
    EXPECT_EQ(refs[0].x, 20.0);

    HandOver(g_HoleLib, m_strItem, 1); // one copy asks for no second point
    m_host.m_strPrinted.clear();
    m_host.Run({L"DrawingInsert", L"40,30"});
    EXPECT_EQ(References().size(), 2u);
    EXPECT_EQ(m_host.m_strPrinted.find(L"第二个符号位置"), std::wstring::npos);
}

TEST_F(BlockInsertTest, AnUnreadableOrMissingItemLeavesTheDrawingAsItWas) {
    WriteItem(m_dir / L"good.dwg");
    HandOver(g_HoleLib, m_dir / L"good.dwg", 1);
    m_host.Run({L"DrawingInsert", L"5,5"});
    std::string before = DumpDatabase(Target());

    WriteBytes(m_strItem, std::string("\x89PNG\r\n\x1a\n\0\0garbage", 16));
    HandOver(g_HoleLib, m_strItem, 2);
    m_host.m_strPrinted.clear();
    m_host.Run({L"DrawingInsert", L"1,1", L"9,9"});
    EXPECT_NE(m_host.m_strPrinted.find(L"文件<" + m_strItem + L">打开失败!"), std::wstring::npos);
    EXPECT_EQ(DumpDatabase(Target()), before);

    std::wstring strGone = m_dir / L"InstallHole\\按钮\\已删除.dwg";
    HandOver(g_HoleLib, strGone, 1);
    m_host.m_strPrinted.clear();
    m_host.Run({L"DrawingInsert", L"1,1"});
    EXPECT_NE(m_host.m_strPrinted.find(L"文件<" + strGone + L">不存在!\n\n"), std::wstring::npos);
    EXPECT_EQ(DumpDatabase(Target()), before);
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
}

TEST_F(BlockInsertTest, ExplodedItemsBringThePartsTheDrawingDoesNotKnow) {
    AcDbDatabase item;
    CSchematicBuilder src(item);
    src.Symbol(L"K", {{L"13", 0, 0}, {L"14", 10, 0}});
    src.Label(src.Insert(L"K", 0, 0), L"KM1");
    src.Label(src.Insert(L"K", 0, 10), L"KA1");
    src.Part(L"", L"KM1", L"接触器").Part(L"", L"KA1", L"继电器").Part(L"", L"SB9", L"按钮");
    ASSERT_EQ(item.saveAs(m_strItem.c_str()), Acad::eOk);
    CSchematicBuilder dst(Target());
    dst.Part(L"", L"KA1", L"旧继电器");
    std::string before = DumpDatabase(Target());

    HandOver(g_HoleLib, m_strItem, 2, 1.0, 0.0, 1);
    m_host.Run({L"DrawingInsert", L"100,0", L"200,0"});

    // The last copy was exploded: its symbols stand in model space, the first copy stays whole.
    std::vector<PLACED> refs = References();
    ASSERT_EQ(refs.size(), 3u);
    EXPECT_EQ(refs[0].strBlock.substr(0, 2), L"*U");
    EXPECT_EQ(refs[1].strBlock, L"K");
    EXPECT_EQ(refs[1].x, 200.0);
    EXPECT_EQ(refs[2].y, 10.0);
    EXPECT_EQ(PartRecords(Target()), (std::vector<std::wstring>{L"/KA1/旧继电器", L"/KM1/接触器"}));

    m_host.Run({L"UNDO", L""}); // the whole insertion is one step
    EXPECT_EQ(DumpDatabase(Target()), before);
}

TEST_F(BlockInsertTest, ARefusedExplodePurgesAndBringsNoParts) {
    AcDbDatabase item;
    CSchematicBuilder src(item);
    src.Symbol(L"K", {{L"13", 0, 0}});
    src.Label(src.Insert(L"K", 0, 0), L"KM1");
    src.Part(L"", L"KM1", L"接触器");
    auto* pSolid = new AcDb3dSolid;
    pSolid->setBody({"not a body the kernel can move"});
    AppendToModelSpace(item, pSolid);
    ASSERT_EQ(item.saveAs(m_strItem.c_str()), Acad::eOk);
    AcDbLayerTable* pLayers = nullptr;
    ASSERT_EQ(Target().getLayerTable(pLayers, AcDb::kForWrite), Acad::eOk);
    auto* pUnused = new AcDbLayerTableRecord;
    pUnused->setName(L"UNUSED");
    pLayers->add(pUnused);
    pUnused->close();
    pLayers->close();

    HandOver(g_HoleLib, m_strItem, 1, 1.0, 0.0, 1);
    m_host.Run({L"DrawingInsert", L"0,0"});
    ASSERT_EQ(References().size(), 1u); // still whole
    EXPECT_EQ(acdbTblSearch(L"LAYER", L"UNUSED"), nullptr);
    EXPECT_TRUE(PartRecords(Target()).empty());
}

TEST_F(BlockInsertTest, TheLayoutCommandInsertsFromTheLayoutLibrary) {
    FsCreateDirectory(m_dir / L"LaySketch");
    std::wstring strLayout = m_dir / L"LaySketch\\面板.dwg";
    WriteItem(strLayout);
    HandOver(g_LayoutLib, strLayout, 1, 1.0, 180.0);
    m_host.Run({L"LaySketchInsert", L"7,8"});
    std::vector<PLACED> refs = References();
    ASSERT_EQ(refs.size(), 1u);
    EXPECT_EQ(refs[0].x, 7.0);
    EXPECT_DOUBLE_EQ(refs[0].dRotation, 3.1415926);
    EXPECT_TRUE(g_LayoutLib.strDwgFile.empty());
    EXPECT_NE(Browser(g_LayoutLib).m_strLog.find(L"show;"), std::wstring::npos);
    EXPECT_EQ(Browser(g_HoleLib).m_strLog, L"");
}
