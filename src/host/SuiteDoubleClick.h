// The suite's double-click broker: which entity's double-click started the running command.
#pragma once

#include <string>

class ISuiteDoubleClick {
public:
    virtual ~ISuiteDoubleClick() = default;
    // Function 5: 1 with the handle text of the double-clicked entity when that is how the
    // running command came to be started, else 0 and the text left alone.
    virtual int Call(int nFunction, std::wstring& strText) = 0;
};

// The broker by the suite's name; without one the answer is 0, so callers take their pick path.
int TzStDblClick(int nFunction, std::wstring& strText);
