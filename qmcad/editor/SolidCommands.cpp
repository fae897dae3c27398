// Solid commands: extrusion of closed profiles, boxes by corner and sizes, subtraction.
#include "editor/EditorHost.h"
#include "editor/NativeCommands.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "solid/OcctModeler.h"

#include <cmath>
#include <numbers>

namespace {

// The profile of a closed polyline or a circle; false for anything else.
bool ProfileOf(const AcDbEntity& ent, std::vector<PROFILE_SEGMENT>& profile) {
    profile.clear();
    if (auto* p = dynamic_cast<const AcDbCircle*>(&ent)) {
        if (dynamic_cast<const AcDbArc*>(&ent) || p->radius() <= 0)
            return false;
        AcGePoint3d start = p->center() + AcGeVector3d(p->radius(), 0, 0);
        profile.push_back({start, start, true, p->center(), true});
        return true;
    }
    if (auto* p = dynamic_cast<const AcDbPolyline*>(&ent)) {
        const auto& v = p->vertices();
        bool bClosed = p->isClosed() || (v.size() > 2 && v.front().pt == v.back().pt);
        if (!bClosed || v.size() < 2)
            return false;
        double z = p->elevation();
        size_t n = v.size();
        for (size_t i = 0; i < n; ++i) {
            AcGePoint3d a(v[i].pt.x, v[i].pt.y, z), b(v[(i + 1) % n].pt.x, v[(i + 1) % n].pt.y, z);
            if (a.distanceTo(b) < 1e-12)
                continue;
            PROFILE_SEGMENT s;
            s.a = a;
            s.b = b;
            if (std::fabs(v[i].dBulge) > 1e-12) {
                double theta = 4 * std::atan(v[i].dBulge), chord = a.distanceTo(b);
                double r = chord / (2 * std::sin(std::fabs(theta) / 2));
                double nx = -(b.y - a.y) / chord, ny = (b.x - a.x) / chord;
                double off = r * std::cos(theta / 2) * (theta > 0 ? 1 : -1);
                s.bArc = true;
                s.centre = AcGePoint3d((a.x + b.x) / 2 + nx * off, (a.y + b.y) / 2 + ny * off, z);
                s.bCounterClockwise = theta > 0;
            }
            profile.push_back(s);
        }
        return profile.size() >= 2 || (profile.size() == 1 && profile[0].bArc);
    }
    if (auto* p = dynamic_cast<const AcDbHeavyPolyline*>(&ent)) {
        const auto& v = p->vertices();
        if (!p->isClosed() || v.size() < 3)
            return false;
        for (size_t i = 0; i < v.size(); ++i) {
            PROFILE_SEGMENT s;
            s.a = v[i].pt;
            s.b = v[(i + 1) % v.size()].pt;
            profile.push_back(s);
        }
        return true;
    }
    return false;
}

AcDbObjectId AppendToSpace(AcDbDatabase& db, AcDbEntity* pEnt) {
    AcDbBlockTableRecord* pSpace = nullptr;
    AcDbObjectId id;
    if (acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
        delete pEnt;
        return id;
    }
    if (pSpace->appendAcDbEntity(id, pEnt) == Acad::eOk)
        pEnt->close();
    else
        delete pEnt;
    pSpace->close();
    return id;
}

// Layer name of the current layer, for new entities.
std::wstring CurrentLayer(AcDbDatabase& db) {
    std::wstring strName = L"0";
    acdbWithObject<AcDbLayerTableRecord>(
        db.clayer(), [&](const AcDbLayerTableRecord& r) { strName = r.name(); });
    return strName;
}

int Extrude(CEditorHost& ed) {
    AcDbDatabase* pDb = ed.Db();
    AcDbObjectIdArray ids;
    if (!pDb || ed.m_input.SSGet(L"", ids) != RTNORM)
        return RTERROR;
    double dHeight = 0;
    int nResult = ed.m_input.GetReal(L"指定拉伸的高度或 [方向(D)/路径(P)/倾斜角(T)]: ", dHeight);
    if (nResult != RTNORM)
        return nResult == RTNONE ? RTERROR : nResult;
    if (std::fabs(dHeight) < 1e-12) {
        ed.Print(L"值必须非零。\n");
        return RTERROR;
    }
    bool bDelete = ed.m_vars.Short(L"DELOBJ") != 0;
    int nMade = 0;
    for (AcDbObjectId id : ids) {
        AcDbEntity* pEnt = nullptr;
        if (acdbOpenObject(pEnt, id, AcDb::kForRead) != Acad::eOk)
            continue;
        std::vector<PROFILE_SEGMENT> profile;
        std::vector<std::string> body;
        bool bOk = ProfileOf(*pEnt, profile) && GetOcctModeler().Extrude(profile, dHeight, body);
        if (!bOk) {
            pEnt->close();
            continue;
        }
        auto* pSolid = new AcDb3dSolid;
        pSolid->setPropertiesFrom(*pEnt);
        pSolid->setBody(std::move(body));
        if (bDelete && pEnt->upgradeOpen() == Acad::eOk)
            pEnt->erase();
        pEnt->close();
        if (!AppendToSpace(*pDb, pSolid).isNull())
            ++nMade;
    }
    if (nMade == 0) {
        ed.Print(L"未找到有效的拉伸对象。\n");
        return RTERROR;
    }
    return RTNORM;
}

int Box(CEditorHost& ed) {
    AcDbDatabase* pDb = ed.Db();
    AcGePoint3d corner, other;
    if (!pDb || ed.m_input.GetPoint(nullptr, L"指定第一个角点或 [中心(C)]: ", corner) != RTNORM)
        return RTERROR;
    std::wstring strAnswer;
    if (!ed.GetInput(L"指定其他角点或 [立方体(C)/长度(L)]: ", strAnswer))
        return RTCAN;
    strAnswer = StrTrim(strAnswer);
    double l = 0, w = 0, h = 0;
    if (EqualsNoCase(strAnswer, L"L") || EqualsNoCase(strAnswer, L"_L")) {
        if (ed.m_input.GetReal(L"指定长度: ", l) != RTNORM ||
            ed.m_input.GetReal(L"指定宽度: ", w) != RTNORM)
            return RTERROR;
    } else if (ParsePointText(strAnswer, &corner, other)) {
        l = other.x - corner.x;
        w = other.y - corner.y;
    } else {
        ed.Print(L"需要点或选项关键字。\n");
        return RTERROR;
    }
    if (ed.m_input.GetReal(L"指定高度或 [两点(2P)]: ", h) != RTNORM)
        return RTERROR;
    std::vector<std::string> body;
    if (std::fabs(l) < 1e-12 || std::fabs(w) < 1e-12 || std::fabs(h) < 1e-12 ||
        !GetOcctModeler().MakeBox(std::fabs(l), std::fabs(w), std::fabs(h), body)) {
        ed.Print(L"值必须非零。\n");
        return RTERROR;
    }
    AcGeVector3d centre(corner.x + l / 2, corner.y + w / 2, corner.z + h / 2);
    if (!GetOcctModeler().Transform(body, AcGeMatrix3d::translation(centre)))
        return RTERROR;
    auto* pSolid = new AcDb3dSolid;
    pSolid->setLayer(CurrentLayer(*pDb));
    pSolid->setLineWeight(static_cast<short>(ed.m_vars.Short(L"CELWEIGHT")));
    pSolid->setBody(std::move(body));
    return AppendToSpace(*pDb, pSolid).isNull() ? RTERROR : RTNORM;
}

// The solids of a selection; other entities are passed over.
std::vector<AcDbObjectId> Solids(const AcDbObjectIdArray& ids) {
    std::vector<AcDbObjectId> solids;
    for (AcDbObjectId id : ids)
        acdbWithObject<AcDb3dSolid>(id, [&](const AcDb3dSolid&) { solids.push_back(id); });
    return solids;
}

int Subtract(CEditorHost& ed) {
    AcDbObjectIdArray first, second;
    ed.Print(L"选择要从中减去的实体、曲面和面域...\n");
    if (ed.m_input.SSGet(L"", first) == RTCAN)
        return RTCAN;
    std::vector<AcDbObjectId> targets = Solids(first);
    if (targets.empty()) {
        ed.Print(L"未选择实体、曲面或面域。\n");
        return RTERROR;
    }
    ed.Print(L"选择要减去的实体、曲面和面域...\n");
    if (ed.m_input.SSGet(L"", second) == RTCAN)
        return RTCAN;
    std::vector<AcDbObjectId> tools = Solids(second);
    for (AcDbObjectId id : targets)
        std::erase(tools, id);
    if (tools.empty())
        return RTNORM; // nothing to take away
    std::vector<std::vector<std::string>> toolBodies;
    for (AcDbObjectId id : tools)
        acdbWithObject<AcDb3dSolid>(id,
                                    [&](const AcDb3dSolid& s) { toolBodies.push_back(s.body()); });
    std::vector<const std::vector<std::string>*> toolPtrs;
    for (const auto& body : toolBodies)
        toolPtrs.push_back(&body);
    for (AcDbObjectId id : targets) {
        AcDb3dSolid* pSolid = nullptr;
        if (acdbOpenObject(pSolid, id, AcDb::kForWrite) != Acad::eOk)
            return RTERROR;
        std::vector<std::string> body = pSolid->body();
        std::string strError;
        bool bOk = GetOcctModeler().Subtract(body, toolPtrs, strError);
        if (bOk)
            pSolid->setBody(std::move(body));
        pSolid->close();
        if (!bOk) {
            ed.Print(Format(L"布尔运算失败，实体未改变: %s。\n", Utf8ToWide(strError)));
            return RTERROR;
        }
    }
    for (AcDbObjectId id : tools) {
        AcDbEntity* pEnt = nullptr;
        if (acdbOpenObject(pEnt, id, AcDb::kForWrite) == Acad::eOk) {
            pEnt->erase();
            pEnt->close();
        }
    }
    return RTNORM;
}

} // namespace

void AddSolidCommands(CEditorHost& editor) {
    editor.AddCommand(L"EXTRUDE", [&editor] { return Extrude(editor); });
    editor.AddCommand(L"BOX", [&editor] { return Box(editor); });
    editor.AddCommand(L"SUBTRACT", [&editor] { return Subtract(editor); });
}
