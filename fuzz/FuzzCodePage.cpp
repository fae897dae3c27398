// Code-page conversion of outside bytes: GBK and UTF-8 decoding, and encoding what was decoded.
#include "FuzzSupport.h"

#include "base/CodePage.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::wstring gbk = DecodeTextIn("GBK", bytes);
    EncodeTextIn("GBK", gbk);
    std::wstring utf8 = DecodeTextIn("UTF-8", bytes);
    if (DecodeTextIn("UTF-8", EncodeTextIn("UTF-8", utf8)) != utf8)
        FuzzFail("UTF-8 text does not survive a round trip");
    DecodeText(bytes);
    return 0;
}
