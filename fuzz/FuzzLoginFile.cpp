// The FTP login file: its lines read and decoded, written back and read alike.
#include "FuzzSupport.h"

#include "shared/FtpLoginInfo.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::wstring strPath = FuzzFile(L"login.dat", data, size);
    CStringArray lines;
    if (!ReadLoginInfo(strPath, lines))
        return 0;
    for (const std::wstring& strLine : lines)
        DecodeLoginText(EncodeLoginText(strLine));
    WriteLoginInfo(strPath, lines);
    CStringArray back;
    ReadLoginInfo(strPath, back);
    return 0;
}
