// The insertion of a library drawing as an anonymous block, dragged into place and repeated in a
// row, then exploded if asked and followed by the item's part records.
#include "library/BlockInsert.h"

#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "app/LibState.h"
#include "app/ModelessWindow.h"
#include "base/Format.h"
#include "drawingdata/ProcessXdictInfo.h"
#include "host/HostEditor.h"
#include "host/HostInput.h"
#include "host/HostUi.h"
#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include <cmath>
#include <memory>

namespace {

// The rotation has always been converted with this value of pi.
constexpr double kPi = 3.1415926;
// The drag image is this small, so that it hardly shows where it is made.
constexpr double kImageScale = 0.001;

// What one insertion places: the block and how each reference stands.
struct INSERT_PLAN {
    AcDbDatabase* pDb = nullptr;
    AcDbObjectId blockId;
    double dRotation = 0.0; // radians
    double dScale = 1.0;    // X and Y of the real references
    double dDragScale = 1.0;
};

AcGePoint3d UcsToWcs(const AcGePoint3d& pt) {
    AcGePoint3d world = pt;
    acedTrans(pt, kTransUser, kTransWorld, false, world);
    return world;
}

// Appends a reference of the block to model space; its id, null on failure.
AcDbObjectId AppendReference(const INSERT_PLAN& plan, const AcGePoint3d& pt,
                             const AcGeScale3d& scale) {
    AcDbBlockTableRecord* pSpace = nullptr;
    if (acdbOpenObject(pSpace, plan.pDb->modelSpaceId(), AcDb::kForWrite) != Acad::eOk)
        return AcDbObjectId();
    auto* pRef = new AcDbBlockReference(pt, plan.blockId);
    pRef->setRotation(plan.dRotation);
    pRef->setScaleFactors(scale);
    AcDbObjectId id;
    if (pSpace->appendAcDbEntity(id, pRef) == Acad::eOk)
        pRef->close();
    else
        delete pRef;
    pSpace->close();
    return id;
}

AcDbObjectId AppendRealReference(const INSERT_PLAN& plan, const AcGePoint3d& pt) {
    return AppendReference(plan, pt, AcGeScale3d{plan.dScale, plan.dScale, 1.0});
}

// The drag leaves the image where it ended; a later drag starts from the
// tiny image at the origin again, so that it shows the item at its size.
void ResetImage(const INSERT_PLAN& plan, AcDbObjectId imageId) {
    AcDbBlockReference* pImage = nullptr;
    if (acdbOpenObject(pImage, imageId, AcDb::kForWrite) != Acad::eOk)
        return;
    pImage->setPosition(AcGePoint3d());
    pImage->setRotation(plan.dRotation);
    pImage->setScaleFactors(AcGeScale3d{kImageScale, kImageScale, kImageScale});
    pImage->close();
}

// The image follows the cursor at the real size: the drag scale on the
// diagonal, moved by the cursor's distance from the base point (the origin).
int DragImage(const INSERT_PLAN& plan, AcDbObjectId imageId, const std::wstring& strPrompt,
              AcGePoint3d& pt) {
    const AcGePoint3d base;
    const double dScale = plan.dDragScale;
    DragSampler sampler = [base, dScale](const AcGePoint3d& ptCursor, AcGeMatrix3d& xform) {
        AcGePoint3d world = UcsToWcs(ptCursor);
        xform = AcGeMatrix3d();
        for (int i = 0; i < 3; ++i)
            xform.entry[i][i] = dScale;
        xform.entry[0][3] = world.x - base.x;
        xform.entry[1][3] = world.y - base.y;
        xform.entry[2][3] = world.z - base.z;
        return true;
    };
    ResetImage(plan, imageId);
    return acedDragGen({imageId}, L"\n" + strPrompt, sampler, pt);
}

// The second point of a row, asked again while it lies too near the first;
// false when the user cancels.
bool AskSecondPoint(const INSERT_PLAN& plan, AcDbObjectId imageId, const AcGePoint3d& ptFirst,
                    AcGePoint3d& ptSecond) {
    if (DragImage(plan, imageId, L"请指定第二个符号位置:", ptSecond) != RTNORM)
        return false;
    ptSecond = UcsToWcs(ptSecond);
    // Points given on the retry are taken as the drag returns them.
    while (std::fabs(ptSecond.x - ptFirst.x) <= 1.0 && std::fabs(ptSecond.y - ptFirst.y) <= 1.0) {
        if (DragImage(plan, imageId, L"第二个符号位置不适，请重新指定:", ptSecond) != RTNORM)
            return false;
    }
    return true;
}

// The copies after the first, along the axis of the larger difference of
// the two points (X when equal); the other coordinate stays the first's.
void AppendRow(const INSERT_PLAN& plan, int nCount, const AcGePoint3d& ptFirst,
               const AcGePoint3d& ptSecond) {
    double dx = ptSecond.x - ptFirst.x, dy = ptSecond.y - ptFirst.y;
    bool bAlongX = std::fabs(dx) >= std::fabs(dy);
    for (int k = 1; k < nCount; ++k) {
        AcGePoint3d pt = ptFirst;
        if (bAlongX)
            pt.x += k * dx;
        else
            pt.y += k * dy;
        AppendRealReference(plan, pt);
    }
}

// The library drawing as a new anonymous block of the working drawing; a
// null id when it cannot be read (said on the command line) or inserted.
AcDbObjectId InsertBlock(AcDbDatabase* pDb, const std::wstring& strFile) {
    auto pSource = std::make_unique<AcDbDatabase>(false, true);
    if (pSource->readDwgFile(strFile.c_str(), 64) != Acad::eOk) {
        acutPrintf(L"文件<%s>打开失败!", strFile);
        return AcDbObjectId();
    }
    AcDbObjectId blockId;
    if (pDb->insert(blockId, L"*U", pSource.get()) != Acad::eOk)
        return AcDbObjectId();
    return blockId;
}

// Explodes the last reference. A failed explode is followed by a purge and
// stops the insertion before the part records: false.
bool ExplodeLast() {
    AcDbObjectId lastId;
    acdbEntLast(lastId);
    if (acedCommandS({L"explode", lastId.handle().text(), L"\n"}) != RTNORM) {
        acedCommandS({L"purge", L""});
        return false;
    }
    return true;
}

// The item's part records follow its symbols into the current drawing.
void HandOverPartRecords(AcDbDatabase* pDb, const std::wstring& strFile) {
    CProcessXdictInfo info;
    bool bOpenedAnew = GetDatabaseOfFile(strFile, info.sourceDb);
    info.sourcePath = strFile;
    info.sourceSaved = 1;
    info.targetDb = pDb;
    info.targetPath = GetCurDwgPrefix() + GetCurDwgName();
    info.targetSaved = IsCurDwgTitled() ? 1 : 0;
    if (info.sourceDb && info.targetDb)
        info.ProcessInsertedDrawing();
    if (bOpenedAnew)
        delete info.sourceDb;
}

void ShowBrowser(CLibState& state) {
    if (state.pLibDlg)
        state.pLibDlg->Show();
}

} // namespace

int InsertLibraryDrawing(CLibState& state) {
    const std::wstring strFile = state.strDwgFile;
    if (!IsFileExist(strFile)) {
        acutPrintf(L"%s\n", Format(L"文件<%s>不存在!\n", strFile));
        return 0;
    }
    INSERT_PLAN plan;
    plan.pDb = acdbHostApplicationServices()->workingDatabase();
    if (!plan.pDb)
        return 0;
    plan.blockId = InsertBlock(plan.pDb, strFile);
    if (plan.blockId.isNull())
        return 0;
    plan.dRotation = state.dAngle * kPi / 180.0;
    plan.dScale = state.dScale / state.dDrawingScale;
    plan.dDragScale = plan.dScale * 1000.0;

    AppendReference(plan, AcGePoint3d(), AcGeScale3d{kImageScale, kImageScale, kImageScale});
    AcDbObjectId imageId;
    if (acdbEntLast(imageId) != RTNORM)
        return 0;
    AcGePoint3d ptFirst;
    if (DragImage(plan, imageId, L"请指定插入位置:", ptFirst) != RTNORM) {
        acdbEntDel(imageId);
        ShowBrowser(state);
        return 0;
    }
    ptFirst = UcsToWcs(ptFirst);
    AppendRealReference(plan, ptFirst);
    AcGePoint3d ptSecond;
    if (state.nCount >= 2 && AskSecondPoint(plan, imageId, ptFirst, ptSecond))
        AppendRow(plan, state.nCount, ptFirst, ptSecond);

    acdbEntDel(imageId);
    CmdEchoOff(); // left off: the next command that cares sets it again
    if (state.bExplode && !ExplodeLast())
        return 0;
    HandOverPartRecords(plan.pDb, strFile);
    return 1;
}
