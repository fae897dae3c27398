// Slide files: every record kind in both byte orders, the old header, round trips, damaged files.
#include "ui/SlideFile.h"

#include "TestHost.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

// Hand-written slide bytes; 2-byte values follow the chosen order.
class CSlideBytes {
public:
    explicit CSlideBytes(bool bHighFirst, int nLevel = 2) : m_bHighFirst(bHighFirst) {
        m_s.assign("AutoCAD Slide\r\n\x1a\0", 17);
        B(0x56), B(nLevel), W(100), W(50);
        if (nLevel == 1) {
            double d = 2.0;
            unsigned char raw[8];
            std::memcpy(raw, &d, 8);
            for (int i = 0; i < 8; ++i)
                B(raw[bHighFirst ? 7 - i : i]);
            W(0), B(0);
        } else {
            B(0x00), B(0x2D), B(0x31), B(0x01); // 2.0 * 10^7, low byte first always
            W(0), W(0x1234);
        }
    }
    void B(int v) { m_s += static_cast<char>(v & 0xFF); }
    void W(int v) {
        if (m_bHighFirst)
            B(v >> 8), B(v);
        else
            B(v), B(v >> 8);
    }
    // One record of each kind.
    std::string AllRecords() {
        W(0xFF07);
        W(10), W(20), W(30), W(40);    // vector
        W(0xFB05), B(-2), B(10), B(0); // offset vector from the last point (10, 20)
        W(0xFE03), B(4);               // common endpoint from (15, 18)
        W(0xFF01);
        W(0xFD00), W(3), W(-1);
        W(0xFD00), W(0), W(0), W(0xFD00), W(10), W(0), W(0xFD00), W(0), W(10);
        W(0xFD00), W(0), W(-1);
        W(0xFC00);
        return m_s;
    }
    std::string m_s;

private:
    bool m_bHighFirst;
};

void ExpectAllRecords(const CSlide& s) {
    EXPECT_EQ(s.m_nHighX, 100);
    EXPECT_EQ(s.m_nHighY, 50);
    EXPECT_DOUBLE_EQ(s.m_dAspect, 2.0);
    ASSERT_EQ(s.m_vectors.size(), 3u);
    const STRUCT_SLIDE_VECTOR& a = s.m_vectors[0];
    EXPECT_EQ(std::vector<int>({a.nFromX, a.nFromY, a.nToX, a.nToY, a.nColour}),
              std::vector<int>({10, 20, 30, 40, 7}));
    const STRUCT_SLIDE_VECTOR& b = s.m_vectors[1];
    EXPECT_EQ(std::vector<int>({b.nFromX, b.nFromY, b.nToX, b.nToY}),
              std::vector<int>({15, 18, 20, 20}));
    const STRUCT_SLIDE_VECTOR& c = s.m_vectors[2];
    EXPECT_EQ(std::vector<int>({c.nFromX, c.nFromY, c.nToX, c.nToY}),
              std::vector<int>({15, 18, 18, 22}));
    ASSERT_EQ(s.m_fills.size(), 1u);
    EXPECT_EQ(s.m_fills[0].nColour, 1);
    EXPECT_EQ(s.m_fills[0].nBefore, 3u);
    ASSERT_EQ(s.m_fills[0].points.size(), 3u);
    EXPECT_EQ(s.m_fills[0].points[2].y, 10);
}

bool SameSlide(const CSlide& a, const CSlide& b) {
    auto vec = [](const STRUCT_SLIDE_VECTOR& v) {
        return std::vector<int>{v.nFromX, v.nFromY, v.nToX, v.nToY, v.nColour};
    };
    if (a.m_nHighX != b.m_nHighX || a.m_nHighY != b.m_nHighY ||
        std::abs(a.m_dAspect - b.m_dAspect) > 1e-7 || a.m_vectors.size() != b.m_vectors.size() ||
        a.m_fills.size() != b.m_fills.size())
        return false;
    for (size_t i = 0; i < a.m_vectors.size(); ++i)
        if (vec(a.m_vectors[i]) != vec(b.m_vectors[i]))
            return false;
    for (size_t i = 0; i < a.m_fills.size(); ++i)
        if (a.m_fills[i].nColour != b.m_fills[i].nColour ||
            a.m_fills[i].nBefore != b.m_fills[i].nBefore ||
            a.m_fills[i].points.size() != b.m_fills[i].points.size())
            return false;
    return true;
}

CSlide SampleSlide() {
    CSlide s;
    s.m_nHighX = 799, s.m_nHighY = 599, s.m_dAspect = 4.0 / 3;
    s.m_vectors = {{0, 0, 799, 599, 7},
                   {400, 300, 410, 290, 1},
                   {410, 290, 420, 300, 1},
                   {420, 300, 420, 300, 3},
                   {100, 500, 700, 500, 250}};
    s.m_fills = {{5, 2, {{10, 10}, {50, 10}, {30, 40}}}, {6, 5, {{1, 1}, {2, 2}, {1, 3}, {0, 2}}}};
    return s;
}

} // namespace

TEST(SlideFile, ReadsEveryRecordInBothByteOrdersAndTheOldHeader) {
    for (bool bHighFirst : {false, true})
        for (int nLevel : {2, 1}) {
            CSlide s;
            ASSERT_TRUE(ReadSlide(CSlideBytes(bHighFirst, nLevel).AllRecords(), s))
                << bHighFirst << nLevel;
            EXPECT_EQ(s.m_nLevel, nLevel);
            ExpectAllRecords(s);
        }
}

TEST(SlideFile, RoundTripsInBothByteOrders) {
    CSlide original = SampleSlide(), back;
    for (bool bHighFirst : {false, true}) {
        std::string bytes = WriteSlide(original, bHighFirst);
        EXPECT_EQ(bytes.substr(17, 2), std::string("\x56\x02", 2));
        ASSERT_TRUE(ReadSlide(bytes, back));
        EXPECT_TRUE(SameSlide(original, back)) << bHighFirst;
    }
    CTempDir dir;
    ASSERT_TRUE(WriteSlideFile(dir / L"a.sld", original));
    ASSERT_TRUE(ReadSlideFile(dir / L"a.sld", back));
    EXPECT_TRUE(SameSlide(original, back));
    EXPECT_FALSE(ReadSlideFile(dir / L"none.sld", back));
}

TEST(SlideFile, PacksConnectedShortVectors) {
    CSlide s;
    s.m_nHighX = 1000, s.m_nHighY = 1000;
    for (int i = 0; i < 100; ++i)
        s.m_vectors.push_back({100 + i, 100, 101 + i, 100, 7});
    // Header, one colour, one full vector, then 5-byte offset vectors, end of file.
    EXPECT_EQ(WriteSlide(s).size(), 31u + 2 + 8 + 99 * 5 + 2);
    // A chain from the first vector's start point: 3-byte common endpoints.
    CSlide chain;
    chain.m_vectors.push_back({100, 100, 0, 0, 7});
    for (int i = 0; i < 99; ++i)
        chain.m_vectors.push_back({100 + i, 100, 101 + i, 100, 7});
    EXPECT_EQ(WriteSlide(chain).size(), 31u + 2 + 8 + 99 * 3 + 2);
    s.m_vectors.push_back({5000, 5000, 40000, -3, 7}); // clamped into the slide's range
    CSlide back;
    ASSERT_TRUE(ReadSlide(WriteSlide(s), back));
    EXPECT_EQ(back.m_vectors.back().nToX, 32767);
    EXPECT_EQ(back.m_vectors.back().nToY, 0);
}

TEST(SlideFile, RefusesDamagedSlides) {
    std::string good = WriteSlide(SampleSlide());
    CSlide s;
    for (size_t n = 0; n < good.size(); ++n)
        ASSERT_FALSE(ReadSlide(good.substr(0, n), s)) << "cut at " << n;
    EXPECT_TRUE(s.m_vectors.empty());
    std::string undefined = good;
    undefined.insert(31, "\x00\x90", 2);
    EXPECT_FALSE(ReadSlide(undefined, s));
    std::string noTest = good;
    noTest[29] = 0x35;
    EXPECT_FALSE(ReadSlide(noTest, s));
    std::string notSlide = good;
    notSlide[0] = 'a';
    EXPECT_FALSE(ReadSlide(notSlide, s));
}

TEST(SlideFile, ViewSlideFitsTheWindowAndCutsWhatLiesOutside) {
    CSlide s;
    std::vector<STRUCT_VIEW_VECTOR> v = {
        {0, 0, 100, 100, 1}, {-100, 50, 50, 50, 2}, {-10, -10, -5, -5, 3}};
    ASSERT_TRUE(MakeViewSlide(v, 0, 0, 100, 100, 201, 101, s));
    EXPECT_EQ(s.m_nHighX, 200);
    EXPECT_DOUBLE_EQ(s.m_dAspect, 201.0 / 101);
    ASSERT_EQ(s.m_vectors.size(), 2u);
    const STRUCT_SLIDE_VECTOR &a = s.m_vectors[0], &b = s.m_vectors[1];
    EXPECT_EQ(std::vector<int>({a.nFromX, a.nFromY, a.nToX, a.nToY, a.nColour}),
              std::vector<int>({50, 0, 150, 100, 1}));
    EXPECT_EQ(std::vector<int>({b.nFromX, b.nFromY, b.nToX, b.nToY}),
              std::vector<int>({0, 50, 100, 50}));
    EXPECT_FALSE(MakeViewSlide(v, 0, 0, 0, 100, 201, 101, s));
    EXPECT_FALSE(MakeViewSlide(v, 0, 0, 100, 100, 1, 101, s));
}
