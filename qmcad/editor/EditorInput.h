// The reference host's answers to the editor's input functions, read from the command line.
#pragma once

#include "host/HostInput.h"
#include "host/db/DbCore.h"
#include "host/db/GrReadValue.h"

#include <functional>

class CEditorHost;

// What an input function is waiting for, so that a screen can show it (a
// rubber band, a rectangle, a pick box, the dragged objects) and turn mouse
// input into the answer text below.
struct INPUT_REQUEST {
    enum KIND { Point, Corner, Text, EntityPick, Selection, Drag, Events };
    KIND eKind = Text;
    const AcGePoint3d* pBase = nullptr;      // points and corners: the rubber band's anchor
    const AcDbObjectIdArray* pIds = nullptr; // drags: what follows the cursor
    const DragSampler* pSampler = nullptr;
};

class IInputFeedback {
public:
    virtual ~IInputFeedback() = default;
    virtual void BeginInput(const INPUT_REQUEST& request) = 0;
    virtual void EndInput() = 0;
};

// Input is text, one answer a line: a point is "x,y" or "x,y,z", "@dx,dy"
// relative to the base; an entity is a point inside its extents or its
// hexadecimal handle; a selection is lines of such picks, "ALL", or a window
// "W x,y x,y" (entities inside) or "C x,y x,y" (entities inside or crossing),
// ended by an empty line; an event of acedGrRead is a point (picked), "~x,y"
// (tracked), "*Button*" (the other mouse button), "*Menu* code" (a menu
// command) or one key. "*Cancel*" or the end of input cancels.
class CEditorInput : public IHostInput {
public:
    explicit CEditorInput(CEditorHost& editor) : m_editor(editor) {}
    int GetPoint(const AcGePoint3d* pBase, const std::wstring& strPrompt, AcGePoint3d& pt) override;
    int GetCorner(const AcGePoint3d& base, const std::wstring& strPrompt, AcGePoint3d& pt) override;
    int GetString(bool bAllowSpaces, const std::wstring& strPrompt, std::wstring& strText) override;
    int GetReal(const std::wstring& strPrompt, double& dValue) override;
    int EntSel(const std::wstring& strPrompt, AcDbObjectId& id, AcGePoint3d& pt) override;
    int SSGet(const std::wstring& strMode, AcDbObjectIdArray& ids) override;
    int SSGetWindow(const std::wstring& strMode, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
                    AcDbObjectIdArray& ids) override;
    int DragGen(const AcDbObjectIdArray& ids, const std::wstring& strPrompt,
                const DragSampler& sampler, AcGePoint3d& pt) override;
    int GrRead(int nTrack, int& nType, GRREAD_VALUE& value) override;
    // The editor keeps the world system as its one user system.
    int Trans(const AcGePoint3d& pt, int nFrom, int nTo, bool bDisp, AcGePoint3d& result) override;

    // A screen that shows what input is awaited; none on a console.
    IInputFeedback* m_pFeedback = nullptr;
    // A screen's pick box: the entity drawn nearest to the point, if any. Without
    // it a point picks the first entity whose extents hold it.
    std::function<bool(const AcGePoint3d&, AcDbObjectId&)> m_pickAt;

private:
    // RTNORM with a trimmed answer, RTNONE for an empty one, RTCAN when cancelled.
    int Read(const std::wstring& strPrompt, std::wstring& strAnswer);
    int ReadPoint(const AcGePoint3d* pBase, const std::wstring& strPrompt, AcGePoint3d& pt);
    bool Pick(const std::wstring& strText, AcDbObjectId& id);
    bool PickWindow(const std::wstring& strText, AcDbObjectIdArray& ids);
    void AddInWindow(bool bCrossing, const AcGePoint3d& a, const AcGePoint3d& b,
                     AcDbObjectIdArray& ids);

    CEditorHost& m_editor;
};

// "x,y[,z]", or "@dx,dy[,dz]" added to the base; false for anything else.
bool ParsePointText(const std::wstring& strText, const AcGePoint3d* pBase, AcGePoint3d& pt);

// The bracket of one input function for the screen's feedback.
class CInputScope {
public:
    CInputScope(IInputFeedback* pFeedback, const INPUT_REQUEST& request) : m_pFeedback(pFeedback) {
        if (m_pFeedback)
            m_pFeedback->BeginInput(request);
    }
    ~CInputScope() {
        if (m_pFeedback)
            m_pFeedback->EndInput();
    }
    CInputScope(const CInputScope&) = delete;
    CInputScope& operator=(const CInputScope&) = delete;

private:
    IInputFeedback* m_pFeedback;
};
