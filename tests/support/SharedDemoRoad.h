// What the roads on a shared installation share: the demo site served on loopback, and
// finding a widget by its text.
#pragma once

#include "DemoSite.h"
#include "FtpTestServer.h"
#include "TestHost.h"

#include "dxf/DxfCodec.h"
#include "host/db/AcDb.h"

#include "base/SysPath.h"

#include <QString>
#include <QWidget>

#include <cstdlib>
#include <string>

// The site and its two workstations; the road runs as the workstation of pszHostId.
struct SHARED_DEMO {
    explicit SHARED_DEMO(const char* pszHostId) {
        acdbSetFileCodec(&GetDxfCodec());
        bReady = server.Start() && MakeSharedDemo(dir.OsPath(), ToOsPath(server.Root()),
                                                  server.Port(), server.User(), server.Password());
        ::setenv("QM_HOST_ID", pszHostId, 1);
    }
    ~SHARED_DEMO() { ::unsetenv("QM_HOST_ID"); }
    std::string Config(int n) const {
        return dir.OsPath() + "ws" + std::to_string(n) + "/suite.conf";
    }
    CTempDir dir;
    CFtpTestServer server;
    bool bReady = false;
};

// The first child of that type showing exactly that text.
template <class T> T* Named(QWidget* pParent, const QString& strText) {
    for (T* p : pParent->findChildren<T*>())
        if (p->text() == strText)
            return p;
    return nullptr;
}
