// Which entities belong to which panel, and how a new panel follows the cursor until it is
// accepted or thrown away.
#include "panel/HolePlacement.h"

#include "drawingdata/Records.h"
#include "host/HostEditor.h"
#include "host/HostInput.h"
#include "host/db/GrReadValue.h"
#include "host/HostServices.h"
#include "panel/PanelRecord.h"

#include "DbBuilders.h"
#include "SolidKernel.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <deque>

namespace {

AcDbObjectId AddBox(AcDbDatabase& db, double x0, double y0, double x1, double y1, bool bPanel) {
    UseSolidKernel();
    auto* pSolid = new AcDb3dSolid();
    EXPECT_EQ(pSolid->createBox(x1 - x0, y1 - y0, 2.0), Acad::eOk);
    pSolid->transformBy(
        AcGeMatrix3d::translation(AcGeVector3d((x0 + x1) / 2, (y0 + y1) / 2, -1.0)));
    AcDbObjectId id = AppendToModelSpace(db, pSolid);
    if (bPanel) {
        AcDbEntity* pEnt = nullptr;
        acdbOpenObject(pEnt, id, AcDb::kForWrite);
        AppendXDataValue(&db, pEnt, kPanelApp, 1000, L"1.00||1.00||1.00");
        pEnt->close();
    }
    return id;
}

AcGePoint3d MinCorner(AcDbObjectId id) {
    AcDbEntity* pEnt = nullptr;
    acdbOpenObject(pEnt, id, AcDb::kForRead);
    AcDbExtents ext;
    pEnt->getGeomExtents(ext);
    pEnt->close();
    return ext.minPoint();
}

// Input events from a queue; an empty queue fails the read.
class CQueuedInput : public IHostInput {
public:
    int GetPoint(const AcGePoint3d*, const std::wstring&, AcGePoint3d&) override { return RTCAN; }
    int GetCorner(const AcGePoint3d&, const std::wstring&, AcGePoint3d&) override { return RTCAN; }
    int GetString(bool, const std::wstring&, std::wstring&) override { return RTCAN; }
    int GetReal(const std::wstring&, double&) override { return RTCAN; }
    int EntSel(const std::wstring&, AcDbObjectId&, AcGePoint3d&) override { return RTCAN; }
    int SSGet(const std::wstring&, AcDbObjectIdArray&) override { return RTERROR; }
    int DragGen(const AcDbObjectIdArray&, const std::wstring&, const DragSampler&,
                AcGePoint3d&) override {
        return RTCAN;
    }
    int Trans(const AcGePoint3d& pt, int, int, bool, AcGePoint3d& result) override {
        result = pt;
        return RTNORM;
    }
    int GrRead(int, int& nType, GRREAD_VALUE& value) override {
        if (m_events.empty())
            return RTERROR;
        nType = m_events.front().first;
        value = m_events.front().second;
        m_events.pop_front();
        return RTNORM;
    }
    void Add(int nType, double x, double y, int nKey = 0) {
        GRREAD_VALUE value;
        value.pt = AcGePoint3d(x, y, 0.0);
        value.nKey = nKey;
        m_events.emplace_back(nType, value);
    }
    std::deque<std::pair<int, GRREAD_VALUE>> m_events;
};

// Records the commands sent from inside the tracker.
class CCommandLog : public IHostEditor {
public:
    int GetVar(const std::wstring&, SYSVAR_VALUE&) override { return RTERROR; }
    int SetVar(const std::wstring&, const SYSVAR_VALUE&) override { return RTERROR; }
    int GetEnv(const std::wstring&, std::wstring&) override { return RTERROR; }
    int SetEnv(const std::wstring&, const std::wstring&) override { return RTERROR; }
    int Command(const std::vector<std::wstring>& words) override {
        for (const std::wstring& w : words)
            m_log += w + L" ";
        m_log += L";";
        return RTNORM;
    }
    void PostCommandPrompt() override {}
    int SyncFileOpen(const std::wstring&) override { return RTERROR; }
    bool SetMouseFilter(bool) override { return false; }
    bool HasMainFrame() override { return false; }
    QWidget* MainFrame() override { return nullptr; }
    std::wstring m_log;
};

struct TrackerFixture : ::testing::Test {
    void SetUp() override {
        HOST_SERVICES services = GetHostServices();
        services.pInput = &input;
        services.pEditor = &editor;
        SetHostServices(services);
        ids = {AddBox(db, 0, 0, 100, 50, true), AddBox(db, 10, 10, 20, 20, false)};
    }
    CTestHost host;
    CQueuedInput input;
    CCommandLog editor;
    AcDbDatabase db;
    AcDbObjectIdArray ids;
};

} // namespace

TEST(HolePlacement, CutoutsGoToTheFirstPanelHoldingThemStrictly) {
    AcDbDatabase db;
    CHole3dViewArray arr;
    AcDbObjectId idLoose = AddBox(db, 5, 5, 10, 10, false);
    CollectHole3dViews(&db, arr);
    EXPECT_TRUE(arr.empty()); // no panel: no second pass, nothing collected

    AcDbObjectId idOld = AddBox(db, 0, 0, 100, 100, true);
    AcDbObjectId idNew = AddBox(db, 50, 0, 200, 100, true);
    AcDbObjectId idShared = AddBox(db, 60, 10, 70, 20, false);   // inside both
    AcDbObjectId idSecond = AddBox(db, 150, 10, 160, 20, false); // in the newer only
    AddBox(db, 0, 0, 100, 100, false);                           // exactly the outline
    AddBox(db, 190, 40, 210, 60, false);                         // crosses an outline
    AppendToModelSpace(db,
                       new AcDbLine(AcGePoint3d(-5, 50, 1), AcGePoint3d(105, 50, 1))); // overshoots
    AcDbObjectId idText =
        AppendToModelSpace(db, new AcDbLine(AcGePoint3d(20, 20, 50), AcGePoint3d(30, 30, -50)));
    CollectHole3dViews(&db, arr);
    ASSERT_EQ(arr.size(), 2u);
    EXPECT_EQ(arr[0]->m_idPanel, idOld);
    EXPECT_EQ(arr[1]->m_idPanel, idNew);
    EXPECT_EQ(arr[0]->m_arrHoleIds, (AcDbObjectIdArray{idLoose, idShared, idText})); // z ignored
    EXPECT_EQ(arr[1]->m_arrHoleIds, (AcDbObjectIdArray{idSecond}));
    EXPECT_DOUBLE_EQ(arr[1]->m_ptMax.x, 200.0);
    ClearHole3dViews(arr);
    EXPECT_TRUE(arr.empty());
    CollectHole3dViews(nullptr, arr);
    EXPECT_TRUE(arr.empty());
}

TEST_F(TrackerFixture, SamplesCarryTheCornerToTheCursorAndPanZoomKeepTracking) {
    input.Add(2, 0, 0, 'a');       // another key: read again
    input.Add(5, 30, 40);          // the corner goes to the cursor
    input.Add(11, 999, 999, 1405); // pan, sampled where the cursor was
    input.Add(11, 0, 0, 1494);     // window zoom
    input.Add(5, 35, 42);
    input.Add(11, 0, 0, 7777); // another command number: read again
    input.Add(3, 500, 500);    // a pick accepts where the last sample left it
    EXPECT_TRUE(TrackPanelToCursor(ids));
    EXPECT_EQ(editor.m_log, L"._RTPAN ;._RTZOOM _W ;");
    AcGePoint3d pt = MinCorner(ids[0]);
    EXPECT_DOUBLE_EQ(pt.x, 35.0);
    EXPECT_DOUBLE_EQ(pt.y, 42.0);
    EXPECT_DOUBLE_EQ(pt.z, -2.0); // z never changes
    EXPECT_DOUBLE_EQ(MinCorner(ids[1]).x, 45.0);
    EXPECT_EQ(host.m_strPrinted, L"\n 选择插入点<Enter结束>:");
}

TEST_F(TrackerFixture, EnterOrSpaceOrMenuZeroAcceptsInPlace) {
    for (int nKey : {13, 32}) {
        input.Add(2, 0, 0, nKey);
        EXPECT_TRUE(TrackPanelToCursor(ids)) << nKey;
    }
    input.Add(11, 0, 0, 0);
    EXPECT_TRUE(TrackPanelToCursor(ids));
    EXPECT_DOUBLE_EQ(MinCorner(ids[0]).x, 0.0);
}

TEST_F(TrackerFixture, TheOtherButtonOrAFailedReadErasesEverythingTracked) {
    input.Add(5, 30, 40);
    input.Add(25, 0, 0);
    EXPECT_FALSE(TrackPanelToCursor(ids));
    for (AcDbObjectId id : ids)
        EXPECT_TRUE(id.isErased());

    AcDbObjectIdArray more = {AddBox(db, 0, 0, 1, 1, false)};
    EXPECT_FALSE(TrackPanelToCursor(more)); // the queue is empty: the read fails
    EXPECT_TRUE(more[0].isErased());
}
