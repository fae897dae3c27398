// Directory listings from FTP servers, line by line, in the Unix and MS-DOS styles.
#include "FuzzSupport.h"

#include "ftp/FtpListing.h"

#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    while (!text.empty()) {
        size_t n = text.find('\n');
        std::string_view line = text.substr(0, n);
        FTP_LIST_ENTRY entry;
        ParseListLine(line, entry);
        text = n == std::string_view::npos ? std::string_view() : text.substr(n + 1);
    }
    return 0;
}
