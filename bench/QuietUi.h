// A host user interface for benchmarks: boxes answer OK, nothing is printed unless
// QM_BENCH_VERBOSE is set.
#pragma once

#include "base/Environment.h"
#include "host/HostUi.h"

#include <cstdio>
#include <cwchar>

class CQuietUi : public IHostUi {
public:
    int MessageBox(const std::wstring&, const std::wstring&, unsigned) override { return IDOK; }
    void Print(const std::wstring& s) override {
        if (EnvIsSet("QM_BENCH_VERBOSE"))
            std::fputws(s.c_str(), stderr);
    }
    void BeginWaitCursor() override {}
    void EndWaitCursor() override {}
};
