// printf semantics for the system's texts with wide %s.
#include "base/Format.h"

#include <gtest/gtest.h>

TEST(Format, ConversionsTheSystemUses) {
    EXPECT_EQ(Format(L"%s%s.dwg", std::wstring(L"d:\\lib\\"), L"5x10"), L"d:\\lib\\5x10.dwg");
    EXPECT_EQ(Format(L"[TIME:]%d-%d-%d %d:%d:%d", 2026, 11, 21, 9, 5, 0),
              L"[TIME:]2026-11-21 9:5:0");
    EXPECT_EQ(Format(L"%2.2d%2.2d", 7, 12), L"0712");
    EXPECT_EQ(Format(L"%.2f|%f", 2.005, 1.5), L"2.00|1.500000");
    EXPECT_EQ(Format(L"%X|%x", 255, 0x1A2B), L"FF|1a2b");
    EXPECT_EQ(Format(L"%X", -1), L"FFFFFFFF"); // 32-bit int as on the platform
    EXPECT_EQ(Format(L"100%%"), L"100%");
}

TEST(Format, WidthPrecisionAndJustification) {
    EXPECT_EQ(Format(L"[%5s][%-5s][%.2s]", L"ab", L"ab", L"abc"), L"[   ab][ab   ][ab]");
    EXPECT_EQ(Format(L"[%*d]", 4, 7), L"[   7]");
    EXPECT_EQ(Format(L"%c", L'块'), L"块");
    EXPECT_EQ(Format(L"%ld %lld %I64d", 1L, 2LL, 3LL), L"1 2 3");
}

TEST(Format, MismatchedAndMissingArgumentsNeverCrash) {
    EXPECT_EQ(Format(L"%d %s"), L"0 ");
    EXPECT_EQ(Format(L"%s", 42), L"42");
    EXPECT_EQ(Format(L"%d", 2.9), L"2");
    EXPECT_EQ(Format(L"%f", 3), L"3.000000");
    EXPECT_EQ(Format(L"%q 50%"), L"%q 50%"); // malformed specs stand as written
}
