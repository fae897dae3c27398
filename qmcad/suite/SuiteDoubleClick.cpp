// The broker's answer: function 5 hands over the armed handle once.
#include "suite/SuiteDoubleClick.h"

std::wstring CSuiteDoubleClick::CommandFor(AcDbObjectId id) {
    AcDb3dSolid* pSolid = nullptr;
    if (id.isNull() || acdbOpenObject(pSolid, id, AcDb::kForRead) != Acad::eOk)
        return std::wstring();
    // A panel is the solid that carries its record; the panel module edits it.
    resbuf* pRecord = pSolid->xData(L"3dHolePanel");
    pSolid->close();
    if (!pRecord)
        return std::wstring();
    acutRelRb(pRecord);
    Arm(id.handle().text());
    return L"EditPanel";
}

int CSuiteDoubleClick::Call(int nFunction, std::wstring& strText) {
    if (nFunction != 5 || m_strHandle.empty())
        return 0;
    strText = m_strHandle;
    m_strHandle.clear(); // a later command typed by hand takes its own pick path
    return 1;
}
