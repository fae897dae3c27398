// Fixes the clock behind version dates for the life of the object.
#pragma once

#include "shared/OperateVersionFile.h"

#include <ctime>

// Starts at 2026-11-21 16:02:09; m_bFails makes the local-time conversion fail.
class CFixedVersionClock {
public:
    CFixedVersionClock() {
        s_time = std::tm{};
        strptime("2026-11-21 16:02:09", "%Y-%m-%d %H:%M:%S", &s_time);
        s_bFails = false;
        SetVersionClock(&Now);
    }
    ~CFixedVersionClock() { SetVersionClock(nullptr); }

    static inline std::tm s_time{};
    static inline bool s_bFails = false;

private:
    static bool Now(std::tm& t) {
        t = s_time;
        return !s_bFails;
    }
};
