// "Server.xml" and the client's version file: records read, rewritten, and read again alike.
#include "FuzzSupport.h"

#include "shared/OperateVersionFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::wstring strPath = FuzzFile(L"Server.xml", data, size);
    COperateVersionFile file(strPath);
    file.ReadRecords();
    file.UpdateRecord(L"InstallHole\\a.dwg", L"1");
    COperateVersionFile again(strPath);
    again.ReadRecords();
    return 0;
}
