// What the module's commands ask of the user through the editor: points, entities, selections,
// drags.
#pragma once

#include "host/ResultCodes.h"

#include <functional>
#include <string>
#include <vector>

// The drawing database's value types, which the contract only passes on; the
// callers include them from host/db (the contract never does).
struct AcGePoint3d;
class AcGeMatrix3d;
class AcDbObjectId;
using AcDbObjectIdArray = std::vector<AcDbObjectId>;
// One event of acedGrRead, defined beside the point type (host/db/GrReadValue.h).
struct GRREAD_VALUE;

// Called while dragging with the cursor point; fills the transform of the
// dragged objects and answers false to leave them where they are.
using DragSampler = std::function<bool(const AcGePoint3d& ptCursor, AcGeMatrix3d& xform)>;

class IHostInput {
public:
    virtual ~IHostInput() = default;
    // RTNORM with the point, RTNONE on Enter, RTCAN when cancelled.
    virtual int GetPoint(const AcGePoint3d* pBase, const std::wstring& strPrompt,
                         AcGePoint3d& pt) = 0;
    virtual int GetCorner(const AcGePoint3d& base, const std::wstring& strPrompt,
                          AcGePoint3d& pt) = 0;
    virtual int GetString(bool bAllowSpaces, const std::wstring& strPrompt,
                          std::wstring& strText) = 0;
    virtual int GetReal(const std::wstring& strPrompt, double& dValue) = 0;
    // RTNORM with an entity of the working database, RTERROR when nothing was picked.
    virtual int EntSel(const std::wstring& strPrompt, AcDbObjectId& id, AcGePoint3d& pt) = 0;
    // Mode "X" takes every entity of model space without asking; otherwise
    // the user picks. RTNORM with at least one id, RTERROR with none.
    virtual int SSGet(const std::wstring& strMode, AcDbObjectIdArray& ids) = 0;
    // Mode "W" takes what lies inside the window of the two corners, "C" also
    // what crosses it; nothing is asked. RTNORM with at least one id.
    virtual int SSGetWindow(const std::wstring& /*strMode*/, const AcGePoint3d& /*pt1*/,
                            const AcGePoint3d& /*pt2*/, AcDbObjectIdArray& /*ids*/) {
        return RTERROR;
    }
    // RTNORM with the final point after the sampler saw it.
    virtual int DragGen(const AcDbObjectIdArray& ids, const std::wstring& strPrompt,
                        const DragSampler& sampler, AcGePoint3d& pt) = 0;
    // RTNORM with one input event, RTCAN when cancelled.
    virtual int GrRead(int nTrack, int& nType, GRREAD_VALUE& value) = 0;
    // A point (or with bDisp a displacement) from one coordinate system to
    // another: RTNORM, or RTERROR for a system the editor does not know.
    virtual int Trans(const AcGePoint3d& pt, int nFrom, int nTo, bool bDisp,
                      AcGePoint3d& result) = 0;
};

// Coordinate system codes of acedTrans.
enum : int { kTransWorld = 0, kTransUser = 1 };

// The editor's input functions by their own names; without a host they answer RTCAN.
int acedGetPoint(const AcGePoint3d* pBase, const std::wstring& strPrompt, AcGePoint3d& pt);
int acedGetCorner(const AcGePoint3d& base, const std::wstring& strPrompt, AcGePoint3d& pt);
int acedGetString(bool bAllowSpaces, const std::wstring& strPrompt, std::wstring& strText);
int acedGetReal(const std::wstring& strPrompt, double& dValue);
int acedEntSel(const std::wstring& strPrompt, AcDbObjectId& id, AcGePoint3d& pt);
int acedSSGet(const std::wstring& strMode, AcDbObjectIdArray& ids);
int acedSSGet(const std::wstring& strMode, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
              AcDbObjectIdArray& ids);
int acedDragGen(const AcDbObjectIdArray& ids, const std::wstring& strPrompt,
                const DragSampler& sampler, AcGePoint3d& pt);
int acedGrRead(int nTrack, int& nType, GRREAD_VALUE& value);
// Without a host: RTERROR.
int acedTrans(const AcGePoint3d& pt, int nFrom, int nTo, bool bDisp, AcGePoint3d& result);
