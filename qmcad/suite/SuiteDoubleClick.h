// Stand-in for the suite's double-click broker: the desktop arms it with the entity a
// double-click landed on before it posts the command; the command's first question takes it.
#pragma once

#include "host/SuiteDoubleClick.h"
#include "host/db/AcDb.h"

class CSuiteDoubleClick : public ISuiteDoubleClick {
public:
    // The command a double-click on the entity starts, the broker armed with its handle;
    // empty (and nothing armed) for an entity no module of the suite edits this way.
    std::wstring CommandFor(AcDbObjectId id);
    void Arm(const std::wstring& strHandle) { m_strHandle = strHandle; }
    int Call(int nFunction, std::wstring& strText) override;

private:
    std::wstring m_strHandle; // empty when the running command came from elsewhere
};
