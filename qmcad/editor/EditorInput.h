// The reference host's answers to the editor's input functions, read from the command line.
#pragma once

#include "host/HostInput.h"
#include "host/db/DbCore.h"
#include "host/db/GrReadValue.h"

class CEditorHost;

// Input is text, one answer a line: a point is "x,y" or "x,y,z", "@dx,dy"
// relative to the base; an entity is a point inside its extents or its
// hexadecimal handle; a selection is lines of such picks or "ALL", ended by
// an empty line; an event of acedGrRead is a point (picked), "~x,y"
// (tracked) or one key. "*Cancel*" or the end of input cancels.
class CEditorInput : public IHostInput {
public:
    explicit CEditorInput(CEditorHost& editor) : m_editor(editor) {}
    int GetPoint(const AcGePoint3d* pBase, const std::wstring& strPrompt, AcGePoint3d& pt) override;
    int GetCorner(const AcGePoint3d& base, const std::wstring& strPrompt, AcGePoint3d& pt) override;
    int GetString(bool bAllowSpaces, const std::wstring& strPrompt, std::wstring& strText) override;
    int GetReal(const std::wstring& strPrompt, double& dValue) override;
    int EntSel(const std::wstring& strPrompt, AcDbObjectId& id, AcGePoint3d& pt) override;
    int SSGet(const std::wstring& strMode, AcDbObjectIdArray& ids) override;
    int DragGen(const AcDbObjectIdArray& ids, const std::wstring& strPrompt,
                const DragSampler& sampler, AcGePoint3d& pt) override;
    int GrRead(int nTrack, int& nType, GRREAD_VALUE& value) override;

private:
    // RTNORM with a trimmed answer, RTNONE for an empty one, RTCAN when cancelled.
    int Read(const std::wstring& strPrompt, std::wstring& strAnswer);
    bool Pick(const std::wstring& strText, AcDbObjectId& id);

    CEditorHost& m_editor;
};

// "x,y[,z]", or "@dx,dy[,dz]" added to the base; false for anything else.
bool ParsePointText(const std::wstring& strText, const AcGePoint3d* pBase, AcGePoint3d& pt);
