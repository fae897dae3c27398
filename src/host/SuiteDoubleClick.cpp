// The broker's free function over the host's service table.
#include "host/SuiteDoubleClick.h"

#include "host/HostServices.h"

int TzStDblClick(int nFunction, std::wstring& strText) {
    ISuiteDoubleClick* pBroker = GetHostServices().pDoubleClick;
    return pBroker ? pBroker->Call(nFunction, strText) : 0;
}
