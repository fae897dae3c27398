// Reading the thumbnail out of DWG-shaped files: entry codes, sentinel, short files, real drawings.
#include "ui/DwgThumbnail.h"

#include "PreviewBuilders.h"
#include "TestHost.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <gtest/gtest.h>

namespace {

const std::string kDib = MakeDib8(3, 2, {RGB(255, 0, 0)}, [](int x, int) { return x % 2; });

HDIB ReadAsDwg(const std::string& bytes) {
    CTempDir dir;
    WriteBytes(dir / L"a.dwg", bytes);
    return ReadDwgThumbnail(dir / L"a.dwg");
}

} // namespace

TEST(DwgThumbnail, FindsTheImageBehindUpToTwoHeaderEntries) {
    for (const auto& codes :
         std::vector<std::vector<int>>{{2}, {3}, {1, 2}, {1, 1, 2}, {1, 3, 2}}) {
        HDIB h = ReadAsDwg(MakeDwgBytes(kDib, codes));
        ASSERT_TRUE(h) << codes.size();
        EXPECT_EQ(std::string(h->bytes.begin(), h->bytes.end()), kDib);
    }
    for (const auto& codes : std::vector<std::vector<int>>{{1, 1, 1}, {1, 6}, {}, {1, 1, 2, 2}})
        EXPECT_FALSE(ReadAsDwg(MakeDwgBytes(kDib, codes))) << codes.size();
}

TEST(DwgThumbnail, RefusesDamagedAndShortFiles) {
    std::string good = MakeDwgBytes(kDib), badSentinel = good, hugeEntry = good;
    badSentinel[40 + 15] ^= 1;
    hugeEntry[40 + 21 + 9 + 5 + 3] = '\x7F'; // size of the image entry
    for (const std::string& bad : {badSentinel, hugeEntry, good.substr(0, 16), std::string()})
        EXPECT_FALSE(ReadAsDwg(bad));
    // Cut inside the section header, the entry table and the image itself.
    for (size_t n : {50u, 60u, 70u, static_cast<unsigned>(good.size() - 40)})
        EXPECT_FALSE(ReadAsDwg(good.substr(0, n))) << n;
    EXPECT_FALSE(ReadDwgThumbnail(L"\\nowhere\\missing.dwg"));
}

TEST(DwgThumbnail, ReadsRealDrawings) {
    std::wstring strDir = FromOsPath(QM_DWG_SAMPLES) + L"\\";
    if (ReadBytes(strDir + L"example_2000.dwg").empty())
        GTEST_SKIP() << "no sample drawings at " << QM_DWG_SAMPLES;
    HDIB h = ReadDwgThumbnail(strDir + L"example_2000.dwg");
    ASSERT_TRUE(h);
    EXPECT_EQ(h->bytes.size(), 24248u);
    // Three entries, the image being the first of two of code 2.
    h = ReadDwgThumbnail(strDir + L"2007_ATMOS-DC22S.dwg");
    ASSERT_TRUE(h);
    EXPECT_EQ(h->bytes.size(), 163880u);
    // No entries; a PNG entry (code 6); no preview section at all.
    for (const wchar_t* name : {L"2018_Leader.dwg", L"example_2013.dwg", L"r11_entities-2d.dwg"})
        EXPECT_FALSE(ReadDwgThumbnail(strDir + name)) << WideToUtf8(name);
}
