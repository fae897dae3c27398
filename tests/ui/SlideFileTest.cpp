// Slide files: every record kind in both byte orders, the old header, round trips, damaged files.
#include "base/SlideFile.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

// Hand-written slide bytes with one record of each kind; 2-byte values in the chosen order.
std::string AllRecords(bool bHighFirst, int nLevel) {
    std::string s("AutoCAD Slide\r\n\x1a\0\x56", 18);
    auto b = [&](int v) { s += static_cast<char>(v & 0xFF); };
    auto w = [&](int v) { bHighFirst ? (b(v >> 8), b(v)) : (b(v), b(v >> 8)); };
    b(nLevel), w(100), w(50);
    if (nLevel == 1) {
        double d = 2.0;
        unsigned char raw[8];
        std::memcpy(raw, &d, 8);
        for (int i = 0; i < 8; ++i)
            b(raw[bHighFirst ? 7 - i : i]);
        w(0), b(0);
    } else {
        b(0x00), b(0x2D), b(0x31), b(0x01), w(0), w(0x1234); // aspect 2.0e7 always low byte first
    }
    w(0xFF07), w(10), w(20), w(30), w(40); // colour 7, vector
    w(0xFB05), b(-2), b(10), b(0);         // offset vector from the last point (10, 20)
    w(0xFE03), b(4);                       // common endpoint from (15, 18)
    w(0xFF01), w(0xFD00), w(3), w(-1);     // colour 1, a polygon of three
    w(0xFD00), w(0), w(0), w(0xFD00), w(10), w(0), w(0xFD00), w(0), w(10);
    w(0xFD00), w(0), w(-1), w(0xFC00);
    return s;
}

CSlide SampleSlide() {
    CSlide s;
    s.m_nHighX = 799, s.m_nHighY = 599, s.m_dAspect = 4.0 / 3;
    s.m_vectors = {{0, 0, 799, 599, 7},
                   {400, 300, 410, 290, 1},
                   {410, 290, 420, 300, 1},
                   {420, 300, 420, 300, 3},
                   {100, 500, 700, 500, 250}};
    s.m_fills = {{5, 2, {{10, 10}, {50, 10}, {30, 40}}}, {6, 5, {{1, 1}, {2, 2}, {1, 3}}}};
    return s;
}

} // namespace

TEST(SlideFile, ReadsEveryRecordInBothByteOrdersAndTheOldHeader) {
    const std::vector<STRUCT_SLIDE_VECTOR> vectors = {
        {10, 20, 30, 40, 7}, {15, 18, 20, 20, 7}, {15, 18, 18, 22, 7}};
    const STRUCT_SLIDE_FILL fill{1, 3, {{0, 0}, {10, 0}, {0, 10}}};
    for (bool bHighFirst : {false, true})
        for (int nLevel : {2, 1}) {
            CSlide s;
            ASSERT_TRUE(ReadSlide(AllRecords(bHighFirst, nLevel), s)) << bHighFirst << nLevel;
            EXPECT_EQ(s.m_nLevel, nLevel);
            EXPECT_EQ(s.m_nHighX, 100);
            EXPECT_EQ(s.m_nHighY, 50);
            EXPECT_DOUBLE_EQ(s.m_dAspect, 2.0);
            EXPECT_EQ(s.m_vectors, vectors);
            ASSERT_EQ(s.m_fills.size(), 1u);
            EXPECT_EQ(s.m_fills[0], fill);
        }
}

TEST(SlideFile, RoundTripsAndPacksShortVectors) {
    CSlide original = SampleSlide(), back;
    for (bool bHighFirst : {false, true}) {
        ASSERT_TRUE(ReadSlide(WriteSlide(original, bHighFirst), back));
        EXPECT_EQ(back.m_vectors, original.m_vectors);
        EXPECT_EQ(back.m_fills, original.m_fills);
        EXPECT_NEAR(back.m_dAspect, original.m_dAspect, 1e-7);
    }
    // A chain from the first vector's start point: 3-byte common endpoints.
    CSlide chain;
    chain.m_vectors.push_back({100, 100, 0, 0, 7});
    for (int i = 0; i < 99; ++i)
        chain.m_vectors.push_back({100 + i, 100, 101 + i, 100, 7});
    EXPECT_EQ(WriteSlide(chain).size(), 31u + 2 + 8 + 99 * 3 + 2);
    chain.m_vectors = {{5000, 5000, 40000, -3, 7}};
    ASSERT_TRUE(ReadSlide(WriteSlide(chain), back));
    EXPECT_EQ(back.m_vectors[0], (STRUCT_SLIDE_VECTOR{5000, 5000, 32767, 0, 7}));
}

TEST(SlideFile, RefusesDamagedSlides) {
    std::string good = WriteSlide(SampleSlide());
    CSlide s;
    for (size_t n = 0; n < good.size(); ++n)
        ASSERT_FALSE(ReadSlide(good.substr(0, n), s)) << "cut at " << n;
    EXPECT_TRUE(s.m_vectors.empty());
    std::string undefined = good, noTest = good, notSlide = good;
    undefined.insert(31, "\x00\x90", 2);
    noTest[29] = 0x35;
    notSlide[0] = 'a';
    for (const std::string& bad : {undefined, noTest, notSlide})
        EXPECT_FALSE(ReadSlide(bad, s));
}

TEST(SlideFile, ViewSlideFitsTheWindowAndCutsWhatLiesOutside) {
    CSlide s;
    std::vector<STRUCT_VIEW_VECTOR> v = {
        {0, 0, 100, 100, 1}, {-100, 50, 50, 50, 2}, {-10, -10, -5, -5, 3}};
    ASSERT_TRUE(MakeViewSlide(v, 0, 0, 100, 100, 201, 101, s));
    EXPECT_EQ(s.m_nHighX, 200);
    EXPECT_DOUBLE_EQ(s.m_dAspect, 201.0 / 101);
    EXPECT_EQ(s.m_vectors,
              (std::vector<STRUCT_SLIDE_VECTOR>{{50, 0, 150, 100, 1}, {0, 50, 100, 50, 2}}));
    EXPECT_FALSE(MakeViewSlide(v, 0, 0, 0, 100, 201, 101, s));
    EXPECT_FALSE(MakeViewSlide(v, 0, 0, 100, 100, 1, 101, s));
}
