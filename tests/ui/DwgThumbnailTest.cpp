// Reading the thumbnail out of DWG-shaped files: entry codes, sentinel, short files, real drawings.
#include "ui/DwgThumbnail.h"

#include "PreviewBuilders.h"
#include "TestHost.h"
#include "base/SysPath.h"

#include <gtest/gtest.h>

namespace {

std::string SmallDib() {
    return MakeDib8(3, 2, {RGB(0, 0, 0), RGB(255, 0, 0)}, [](int x, int) { return x % 2; });
}

HDIB ReadBytesAsDwg(const CTempDir& dir, const std::string& bytes) {
    WriteBytes(dir / L"a.dwg", bytes);
    return ReadDwgThumbnail(dir / L"a.dwg");
}

} // namespace

TEST(DwgThumbnail, FindsTheImageBehindUpToTwoHeaderEntries) {
    CTempDir dir;
    std::string dib = SmallDib();
    for (std::vector<int> codes :
         std::vector<std::vector<int>>{{2}, {3}, {1, 2}, {1, 1, 2}, {1, 3, 2}}) {
        HDIB h = ReadBytesAsDwg(dir, MakeDwgBytes(dib, codes));
        ASSERT_TRUE(h) << codes.size();
        EXPECT_EQ(std::string(h->bytes.begin(), h->bytes.end()), dib);
    }
    EXPECT_FALSE(ReadBytesAsDwg(dir, MakeDwgBytes(dib, {1, 1, 1})));
    EXPECT_FALSE(ReadBytesAsDwg(dir, MakeDwgBytes(dib, {1, 6})));
    EXPECT_FALSE(ReadBytesAsDwg(dir, MakeDwgBytes(dib, {})));
    EXPECT_FALSE(ReadBytesAsDwg(dir, MakeDwgBytes(dib, {1, 1, 2, 2})));
}

TEST(DwgThumbnail, RefusesDamagedAndShortFiles) {
    CTempDir dir;
    std::string good = MakeDwgBytes(SmallDib());
    std::string badSentinel = good;
    badSentinel[40 + 15] ^= 1;
    EXPECT_FALSE(ReadBytesAsDwg(dir, badSentinel));
    EXPECT_FALSE(ReadBytesAsDwg(dir, good.substr(0, 16)));
    EXPECT_FALSE(ReadBytesAsDwg(dir, ""));
    // Cut inside the section header, the entry table and the image itself.
    for (size_t n : {50u, 60u, 70u, static_cast<unsigned>(good.size() - 40)})
        EXPECT_FALSE(ReadBytesAsDwg(dir, good.substr(0, n))) << n;
    std::string hugeEntry = good;
    hugeEntry[40 + 21 + 9 + 5 + 3] = '\x7F'; // size of the image entry
    EXPECT_FALSE(ReadBytesAsDwg(dir, hugeEntry));
    EXPECT_FALSE(ReadDwgThumbnail(dir / L"missing.dwg"));
}

TEST(DwgThumbnail, ReadsRealDrawings) {
    std::wstring strDir = FromOsPath(QM_DWG_SAMPLES) + L"\\";
    if (ReadBytes(strDir + L"example_2000.dwg").empty())
        GTEST_SKIP() << "no sample drawings at " << QM_DWG_SAMPLES;
    HDIB h = ReadDwgThumbnail(strDir + L"example_2000.dwg");
    ASSERT_TRUE(h);
    EXPECT_EQ(h->bytes.size(), 24248u);
    EXPECT_EQ(h->bytes[0], 40);
    // Three entries, the image being the first of two of code 2.
    h = ReadDwgThumbnail(strDir + L"2007_ATMOS-DC22S.dwg");
    ASSERT_TRUE(h);
    EXPECT_EQ(h->bytes.size(), 163880u);
    // No entries; a PNG entry (code 6); no preview section at all.
    EXPECT_FALSE(ReadDwgThumbnail(strDir + L"2018_Leader.dwg"));
    EXPECT_FALSE(ReadDwgThumbnail(strDir + L"example_2013.dwg"));
    EXPECT_FALSE(ReadDwgThumbnail(strDir + L"r11_entities-2d.dwg"));
}
