// Lays out the shared demo for `./qm run shared`: DIR/site, the server's root, and the two
// workstations DIR/ws1 and DIR/ws2.
#include "DemoSite.h"

#include "dxf/DxfCodec.h"

#include "base/StrUtil.h"

#include <cstdio>
#include <cstdlib>
#include <string>

int main(int argc, char** argv) {
    if (argc != 5 || std::atoi(argv[2]) <= 0) {
        std::fputs("usage: demo_site DIR PORT USER PASSWORD\n", stderr);
        return 2;
    }
    acdbSetFileCodec(&GetDxfCodec());
    std::string osDir = argv[1];
    if (!MakeSharedDemo(osDir, osDir + "/site", std::atoi(argv[2]), Utf8ToWide(argv[3]),
                        Utf8ToWide(argv[4]))) {
        std::fprintf(stderr, "demo_site: cannot lay out the shared demo in %s\n", argv[1]);
        return 1;
    }
    return 0;
}
