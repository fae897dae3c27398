// Points, picks, selections, drags and input events answered from command-line text.
#include "editor/EditorInput.h"

#include "base/StrUtil.h"
#include "editor/EditorHost.h"
#include "host/db/AcDb.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>

namespace {

const wchar_t* const kNeedPoint = L"需要点或选项关键字。\n";

AcDbObjectIdArray ModelSpaceEntities() {
    AcDbObjectIdArray ids;
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    AcDbBlockTableRecord* pSpace = nullptr;
    if (!pDb || acdbOpenObject(pSpace, pDb->modelSpaceId(), AcDb::kForRead) != Acad::eOk)
        return ids;
    AcDbBlockTableRecordIterator* pIter = nullptr;
    if (pSpace->newIterator(pIter) == Acad::eOk) {
        for (; !pIter->done(); pIter->step())
            ids.push_back(pIter->getEntityId());
        delete pIter;
    }
    pSpace->close();
    return ids;
}

bool Contains(AcDbObjectId id, const AcGePoint3d& pt) {
    AcDbEntity* pEnt = nullptr;
    if (acdbOpenObject(pEnt, id, AcDb::kForRead) != Acad::eOk)
        return false;
    AcDbExtents ext;
    bool bIn = pEnt->getGeomExtents(ext) == Acad::eOk && ext.isValid() &&
               pt.x >= ext.minPoint().x && pt.x <= ext.maxPoint().x && pt.y >= ext.minPoint().y &&
               pt.y <= ext.maxPoint().y;
    pEnt->close();
    return bIn;
}

} // namespace

bool ParsePointText(const std::wstring& strText, const AcGePoint3d* pBase, AcGePoint3d& pt) {
    std::wstring s = StrTrim(strText);
    bool bRelative = !s.empty() && s[0] == L'@';
    if (bRelative)
        s = StrMid(s, 1);
    double v[3] = {0, 0, 0};
    int n = 0;
    const wchar_t* p = s.c_str();
    while (n < 3) {
        wchar_t* end = nullptr;
        v[n] = std::wcstod(p, &end);
        if (end == p)
            return false;
        ++n;
        p = end;
        if (*p != L',')
            break;
        ++p;
    }
    if (*p != 0 || n < 2)
        return false;
    AcGePoint3d base = bRelative && pBase ? *pBase : AcGePoint3d();
    pt = AcGePoint3d(base.x + v[0], base.y + v[1], base.z + v[2]);
    return true;
}

int CEditorInput::Read(const std::wstring& strPrompt, std::wstring& strAnswer) {
    if (!m_editor.GetInput(strPrompt, strAnswer))
        return RTCAN;
    strAnswer = StrTrim(strAnswer);
    if (EqualsNoCase(strAnswer, L"*Cancel*"))
        return RTCAN;
    return strAnswer.empty() ? RTNONE : RTNORM;
}

int CEditorInput::ReadPoint(const AcGePoint3d* pBase, const std::wstring& strPrompt,
                            AcGePoint3d& pt) {
    for (;;) {
        std::wstring strAnswer;
        int nResult = Read(strPrompt, strAnswer);
        if (nResult != RTNORM)
            return nResult;
        if (ParsePointText(strAnswer, pBase, pt))
            return RTNORM;
        m_editor.m_ui.Print(kNeedPoint);
    }
}

int CEditorInput::GetPoint(const AcGePoint3d* pBase, const std::wstring& strPrompt,
                           AcGePoint3d& pt) {
    CInputScope scope(m_pFeedback, {INPUT_REQUEST::Point, pBase});
    return ReadPoint(pBase, strPrompt, pt);
}

int CEditorInput::GetCorner(const AcGePoint3d& base, const std::wstring& strPrompt,
                            AcGePoint3d& pt) {
    CInputScope scope(m_pFeedback, {INPUT_REQUEST::Corner, &base});
    return ReadPoint(&base, strPrompt, pt);
}

int CEditorInput::GetString(bool bAllowSpaces, const std::wstring& strPrompt,
                            std::wstring& strText) {
    CInputScope scope(m_pFeedback, {INPUT_REQUEST::Text});
    std::wstring strAnswer;
    if (!m_editor.GetInput(strPrompt, strAnswer) || EqualsNoCase(strAnswer, L"*Cancel*"))
        return RTCAN;
    // Without spaces allowed, a blank ends the answer as Enter does.
    size_t blank = strAnswer.find(L' ');
    strText = bAllowSpaces || blank == std::wstring::npos ? strAnswer : strAnswer.substr(0, blank);
    return RTNORM;
}

int CEditorInput::GetReal(const std::wstring& strPrompt, double& dValue) {
    CInputScope scope(m_pFeedback, {INPUT_REQUEST::Text});
    for (;;) {
        std::wstring strAnswer;
        int nResult = Read(strPrompt, strAnswer);
        if (nResult != RTNORM)
            return nResult;
        wchar_t* end = nullptr;
        double d = std::wcstod(strAnswer.c_str(), &end);
        if (end && *end == 0) {
            dValue = d;
            return RTNORM;
        }
        m_editor.m_ui.Print(L"需要数值。\n");
    }
}

bool CEditorInput::Pick(const std::wstring& strText, AcDbObjectId& id) {
    AcGePoint3d pt;
    if (ParsePointText(strText, nullptr, pt)) {
        if (m_pickAt)
            return m_pickAt(pt, id);
        for (AcDbObjectId candidate : ModelSpaceEntities())
            if (Contains(candidate, pt)) {
                id = candidate;
                return true;
            }
        return false;
    }
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    AcDbHandle handle(strText.c_str());
    AcDbObjectId found;
    if (!pDb || handle.isNull() || pDb->getAcDbObjectId(found, false, handle) != Acad::eOk)
        return false;
    if (!found.isValid() || found.isErased())
        return false;
    id = found;
    return true;
}

// "W x,y x,y": what lies inside the window; "C x,y x,y": what lies inside or
// crosses it, judged by the extents. False when the text is no window.
bool CEditorInput::PickWindow(const std::wstring& strText, AcDbObjectIdArray& ids) {
    if (strText.size() < 2 || strText[1] != L' ')
        return false;
    wchar_t mode = static_cast<wchar_t>(std::towupper(strText[0]));
    if (mode != L'W' && mode != L'C')
        return false;
    std::wstring rest = StrTrim(StrMid(strText, 2));
    size_t blank = rest.find(L' ');
    AcGePoint3d a, b;
    if (blank == std::wstring::npos || !ParsePointText(rest.substr(0, blank), nullptr, a) ||
        !ParsePointText(rest.substr(blank + 1), nullptr, b))
        return false;
    AddInWindow(mode == L'C', a, b, ids);
    return true;
}

// Adds each model-space entity inside the window (or, crossing, touching it) once.
void CEditorInput::AddInWindow(bool bCrossing, const AcGePoint3d& a, const AcGePoint3d& b,
                               AcDbObjectIdArray& ids) {
    double x0 = std::min(a.x, b.x), x1 = std::max(a.x, b.x);
    double y0 = std::min(a.y, b.y), y1 = std::max(a.y, b.y);
    for (AcDbObjectId id : ModelSpaceEntities()) {
        AcDbExtents ext;
        if (!acdbWithObject<AcDbEntity>(id, [&](AcDbEntity& e) { e.getGeomExtents(ext); }) ||
            !ext.isValid())
            continue;
        const AcGePoint3d &lo = ext.minPoint(), &hi = ext.maxPoint();
        bool bInside = lo.x >= x0 && hi.x <= x1 && lo.y >= y0 && hi.y <= y1;
        bool bTouches = lo.x <= x1 && hi.x >= x0 && lo.y <= y1 && hi.y >= y0;
        if ((bInside || (bCrossing && bTouches)) &&
            std::find(ids.begin(), ids.end(), id) == ids.end())
            ids.push_back(id);
    }
}

int CEditorInput::SSGetWindow(const std::wstring& strMode, const AcGePoint3d& pt1,
                              const AcGePoint3d& pt2, AcDbObjectIdArray& ids) {
    ids.clear();
    std::wstring strWord = StrMakeUpper(StrTrimLeft(StrTrim(strMode), L"_"));
    if (strWord != L"W" && strWord != L"C")
        return RTERROR;
    AddInWindow(strWord == L"C", pt1, pt2, ids);
    return ids.empty() ? RTERROR : RTNORM;
}

int CEditorInput::EntSel(const std::wstring& strPrompt, AcDbObjectId& id, AcGePoint3d& pt) {
    CInputScope scope(m_pFeedback, {INPUT_REQUEST::EntityPick});
    std::wstring strAnswer;
    int nResult = Read(strPrompt, strAnswer);
    if (nResult == RTCAN)
        return RTCAN;
    if (nResult != RTNORM || !Pick(strAnswer, id))
        return RTERROR;
    if (!ParsePointText(strAnswer, nullptr, pt))
        pt = AcGePoint3d();
    return RTNORM;
}

int CEditorInput::SSGet(const std::wstring& strMode, AcDbObjectIdArray& ids) {
    ids.clear();
    if (EqualsNoCase(strMode, L"X") || EqualsNoCase(strMode, L"_X")) {
        ids = ModelSpaceEntities();
        return ids.empty() ? RTERROR : RTNORM;
    }
    CInputScope scope(m_pFeedback, {INPUT_REQUEST::Selection});
    for (;;) {
        std::wstring strAnswer;
        int nResult = Read(L"选择对象: ", strAnswer);
        if (nResult == RTCAN)
            return RTCAN;
        if (nResult == RTNONE)
            break;
        if (EqualsNoCase(strAnswer, L"ALL")) {
            ids = ModelSpaceEntities();
            continue;
        }
        if (PickWindow(strAnswer, ids))
            continue;
        AcDbObjectId id;
        if (!Pick(strAnswer, id)) {
            m_editor.m_ui.Print(L"未找到对象。\n");
            continue;
        }
        if (std::find(ids.begin(), ids.end(), id) == ids.end())
            ids.push_back(id);
    }
    return ids.empty() ? RTERROR : RTNORM;
}

int CEditorInput::DragGen(const AcDbObjectIdArray& ids, const std::wstring& strPrompt,
                          const DragSampler& sampler, AcGePoint3d& pt) {
    INPUT_REQUEST request{INPUT_REQUEST::Drag};
    request.pIds = &ids;
    request.pSampler = &sampler;
    CInputScope scope(m_pFeedback, request);
    int nResult = ReadPoint(nullptr, strPrompt, pt);
    if (nResult != RTNORM)
        return nResult;
    AcGeMatrix3d xform;
    if (sampler && sampler(pt, xform))
        for (AcDbObjectId id : ids) {
            AcDbEntity* pEnt = nullptr;
            if (acdbOpenObject(pEnt, id, AcDb::kForWrite) != Acad::eOk)
                continue;
            pEnt->transformBy(xform);
            pEnt->close();
        }
    return RTNORM;
}

int CEditorInput::GrRead(int, int& nType, GRREAD_VALUE& value) {
    CInputScope scope(m_pFeedback, {INPUT_REQUEST::Events});
    std::wstring strAnswer;
    if (!m_editor.GetInput(L"", strAnswer))
        return RTCAN;
    std::wstring s = StrTrim(strAnswer);
    if (EqualsNoCase(s, L"*Cancel*"))
        return RTCAN;
    value = GRREAD_VALUE();
    if (EqualsNoCase(s, L"*Button*")) {
        nType = 25;
        return RTNORM;
    }
    if (EqualsNoCase(StrLeft(s, 6), L"*Menu*")) {
        nType = 11;
        value.nKey = static_cast<int>(std::wcstol(s.c_str() + 6, nullptr, 10));
        return RTNORM;
    }
    bool bTrack = !s.empty() && s[0] == L'~';
    if (ParsePointText(bTrack ? StrMid(s, 1) : s, nullptr, value.pt)) {
        nType = bTrack ? 5 : 3;
        return RTNORM;
    }
    nType = 2;
    value.nKey = s.empty() ? 13 : s[0]; // Enter, or the key typed
    return RTNORM;
}

int CEditorInput::Trans(const AcGePoint3d& pt, int nFrom, int nTo, bool, AcGePoint3d& result) {
    auto known = [](int n) { return n == kTransWorld || n == kTransUser; };
    if (!known(nFrom) || !known(nTo))
        return RTERROR;
    result = pt;
    return RTNORM;
}
