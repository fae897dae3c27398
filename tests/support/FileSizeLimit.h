// A full disk on demand: caps the size of files this process writes for one scope.
#pragma once

#include <csignal>
#include <sys/resource.h>

// Writes past the cap fail with EFBIG (SIGXFSZ is ignored meanwhile), as
// writes on a full disk fail with ENOSPC.
class CFileSizeLimit {
public:
    explicit CFileSizeLimit(rlim_t nBytes) {
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_old);
        rlimit cap = m_old;
        cap.rlim_cur = nBytes;
        ::setrlimit(RLIMIT_FSIZE, &cap);
    }
    ~CFileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    CFileSizeLimit(const CFileSizeLimit&) = delete;
    CFileSizeLimit& operator=(const CFileSizeLimit&) = delete;

private:
    rlimit m_old{};
    void (*m_oldHandler)(int) = nullptr;
};
