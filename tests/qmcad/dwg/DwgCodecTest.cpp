// Binary DWG files through the host's codec: every sample, the cache, bad files, saving over one.
#include "dwg/DwgCodec.h"

#include "TestHost.h"
#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <gtest/gtest.h>

#include <random>

namespace {

std::wstring SampleDir() {
    return FromOsPath(QM_DWG_SAMPLES) + L"\\";
}

size_t ModelSpaceCount(AcDbDatabase& db) {
    AcDbBlockTableRecord* pSpace = nullptr;
    if (acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForRead) != Acad::eOk)
        return 0;
    size_t n = pSpace->entities().size();
    pSpace->close();
    return n;
}

size_t CountOf(const std::wstring& text, const std::wstring& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::wstring::npos; at = text.find(what, at + 1))
        ++n;
    return n;
}

struct DwgCodecFixture : ::testing::Test {
    void SetUp() override {
        if (!FsExists(SampleDir() + L"example_2018.dwg"))
            GTEST_SKIP() << "no sample drawings at " << QM_DWG_SAMPLES;
        m_pCodec = MakeCodec();
        acdbSetFileCodec(m_pCodec.get());
    }
    void TearDown() override { acdbSetFileCodec(nullptr); }
    std::unique_ptr<CDwgCodec> MakeCodec(CDwgWorker::OPTIONS opt = DwgWorkerOptionsFromEnv()) {
        opt.nTimeoutMs = 60000; // a loaded machine is slow, not hung
        return std::make_unique<CDwgCodec>(opt, m_cache.OsPath() + "dwg");
    }
    // A file in the scratch directory, for the tests that write or rename.
    std::wstring Put(const wchar_t* name, const std::string& bytes) {
        std::wstring path = m_dir / name;
        WriteBytes(path, bytes);
        return path;
    }
    CTestHost m_host;
    CTempDir m_dir, m_cache;
    std::unique_ptr<CDwgCodec> m_pCodec;
};

using DwgCodec = DwgCodecFixture;

} // namespace

TEST_F(DwgCodec, EverySampleOpensOrSaysWhyAndOneProcessServesThemAll) {
    std::vector<FS_FIND_DATA> found;
    ASSERT_TRUE(FsFind(SampleDir() + L"*.dwg", found));
    int nOk = 0, nFailed = 0;
    for (const FS_FIND_DATA& f : found) {
        m_host.m_strPrinted.clear();
        AcDbDatabase db(false, true);
        Acad::ErrorStatus es = db.readDwgFile((SampleDir() + f.strName).c_str());
        if (es == Acad::eOk) {
            ++nOk;
            EXPECT_GT(ModelSpaceCount(db), 0u) << WideToUtf8(f.strName);
            EXPECT_GE(m_pCodec->LastReport().strVersion, "AC1009");
            EXPECT_LE(m_pCodec->LastReport().strVersion, "AC1032");
        } else {
            ++nFailed;
            EXPECT_EQ(es, Acad::eBinaryDwgNotSupported);
            EXPECT_NE(m_host.m_strPrinted.find(L"<" + f.strName + L">无法转换："),
                      std::wstring::npos)
                << WideToUtf8(m_host.m_strPrinted);
        }
    }
    EXPECT_GE(nOk, 11); // LibreDWG reads all but one of them
    EXPECT_LE(m_pCodec->Worker().Starts(), 1 + nFailed);
}

TEST_F(DwgCodec, UnknownEntitiesAreKeptAndCounted) {
    AcDbDatabase db(false, true);
    ASSERT_EQ(db.readDwgFile((SampleDir() + L"example_2018.dwg").c_str()), Acad::eOk);
    const DXF_READ_REPORT& report = m_pCodec->LastReport();
    EXPECT_EQ(report.strVersion, "AC1032");
    EXPECT_GT(report.unknownEntities.count("HATCH"), 0u);
    EXPECT_EQ(report.unknownEntities.count("LINE"), 0u);
    EXPECT_NE(m_host.m_strPrinted.find(std::to_wstring(report.UnknownEntityCount()) +
                                       L" 个本程序不绘制的图元"),
              std::wstring::npos)
        << WideToUtf8(m_host.m_strPrinted);
}

TEST_F(DwgCodec, EachDrawingIsConvertedOnceThenComesFromTheCache) {
    std::wstring path = SampleDir() + L"example_2013.dwg";
    AcDbDatabase first(false, true), second(false, true);
    ASSERT_EQ(first.readDwgFile(path.c_str()), Acad::eOk);
    m_host.m_strPrinted.clear();
    ASSERT_EQ(second.readDwgFile(path.c_str()), Acad::eOk);
    EXPECT_EQ(m_pCodec->Conversions(), 1);
    EXPECT_EQ(CountOf(m_host.m_strPrinted, L"请稍候"), 0u); // no wait note for a cached file
    EXPECT_EQ(ModelSpaceCount(second), ModelSpaceCount(first));

    // Another session with the same cache runs no converter at all, even under another name.
    auto pOther = MakeCodec();
    acdbSetFileCodec(pOther.get());
    AcDbDatabase third(false, true);
    ASSERT_EQ(third.readDwgFile(Put(L"改名.dwg", ReadBytes(path)).c_str()), Acad::eOk);
    EXPECT_EQ(pOther->Conversions(), 0);
    EXPECT_EQ(pOther->Worker().Starts(), 0);
}

TEST_F(DwgCodec, ADamagedCacheEntryIsDroppedAndConvertedAgain) {
    std::wstring path = SampleDir() + L"2018_Leader.dwg";
    AcDbDatabase db(false, true);
    ASSERT_EQ(db.readDwgFile(path.c_str()), Acad::eOk);
    std::string entry = m_pCodec->Cache().PathOf(CDwgCache::Key(ReadBytes(path)));
    WriteBytes(FromOsPath(entry), "  0\nSECTION\n  2\nHEADER\n"); // cut short
    EXPECT_NE(db.readDwgFile(path.c_str()), Acad::eOk);
    EXPECT_NE(m_host.m_strPrinted.find(L"转换后的 DXF 无法读取"), std::wstring::npos);
    EXPECT_EQ(db.readDwgFile(path.c_str()), Acad::eOk);
    EXPECT_EQ(m_pCodec->Conversions(), 2);
}

TEST_F(DwgCodec, ABrokenDwgChangesNothingOnDiskAndTheNextFileStillOpens) {
    std::string good = ReadBytes(SampleDir() + L"example_2000.dwg");
    std::string noise = good.substr(0, 128);
    std::mt19937 rng(16);
    while (noise.size() < 64 * 1024)
        noise += static_cast<char>(rng());
    for (const std::string& bytes : {good.substr(0, good.size() / 2), noise}) {
        std::wstring path = Put(L"坏.dwg", bytes);
        m_host.m_strPrinted.clear();
        AcDbDatabase db(false, true);
        EXPECT_NE(db.readDwgFile(path.c_str()), Acad::eOk);
        EXPECT_NE(m_host.m_strPrinted.find(L"<坏.dwg>无法转换"), std::wstring::npos)
            << WideToUtf8(m_host.m_strPrinted);
        EXPECT_TRUE(ReadBytes(path) == bytes);
        EXPECT_FALSE(FsExists(path + L".orig"));
        EXPECT_EQ(m_host.m_nWaitDepth, 0);
    }
    AcDbDatabase db(false, true);
    EXPECT_EQ(db.readDwgFile((SampleDir() + L"r11_entities-2d.dwg").c_str()), Acad::eOk);
}

TEST_F(DwgCodec, SavingOverABinaryDwgKeepsTheOriginalBytesOnce) {
    std::string original = ReadBytes(SampleDir() + L"2000_entities-2d.dwg");
    std::wstring path = Put(L"面板.dwg", original);
    AcDbDatabase db(false, true);
    ASSERT_EQ(db.readDwgFile(path.c_str()), Acad::eOk);
    m_host.m_strPrinted.clear();
    ASSERT_EQ(db.saveAs(path.c_str()), Acad::eOk);
    EXPECT_TRUE(ReadBytes(path + L".orig") == original);
    EXPECT_FALSE(IsBinaryDwg(ReadBytes(path)));
    EXPECT_EQ(CountOf(m_host.m_strPrinted, L"原 DWG 文件已保存为<"), 1u);
    EXPECT_NE(m_host.m_strPrinted.find(L"面板.dwg.orig>"), std::wstring::npos);

    // Later saves write over the drawing, never over the kept original.
    ASSERT_EQ(db.saveAs(path.c_str()), Acad::eOk);
    EXPECT_TRUE(ReadBytes(path + L".orig") == original);
    EXPECT_EQ(CountOf(m_host.m_strPrinted, L"原 DWG 文件已保存为<"), 1u);

    // Another binary DWG put there later gets a copy of its own.
    std::string other = ReadBytes(SampleDir() + L"r11_entities-2d.dwg");
    WriteBytes(path, other);
    ASSERT_EQ(db.saveAs(path.c_str()), Acad::eOk);
    EXPECT_TRUE(ReadBytes(path + L".orig") == original);
    EXPECT_TRUE(ReadBytes(path + L".orig.2") == other);
}

TEST_F(DwgCodec, AMissingConverterNamesWhatToInstall) {
    CDwgWorker::OPTIONS opt = DwgWorkerOptionsFromEnv();
    opt.strNode = "/nonexistent/node";
    auto pNoNode = MakeCodec(opt);
    acdbSetFileCodec(pNoNode.get());
    AcDbDatabase db(false, true);
    std::wstring path = SampleDir() + L"r11_entities-2d.dwg";
    EXPECT_EQ(db.readDwgFile(path.c_str()), Acad::eBinaryDwgNotSupported);
    EXPECT_NE(m_host.m_strPrinted.find(L"nodejs"), std::wstring::npos);

    opt = DwgWorkerOptionsFromEnv();
    opt.strScript = m_dir.OsPath() + "dwgconv.mjs";
    auto pNoPackage = MakeCodec(opt);
    acdbSetFileCodec(pNoPackage.get());
    m_host.m_strPrinted.clear();
    EXPECT_EQ(db.readDwgFile(path.c_str()), Acad::eBinaryDwgNotSupported);
    EXPECT_NE(m_host.m_strPrinted.find(L"npm ci"), std::wstring::npos);
    EXPECT_EQ(CountOf(m_host.m_strPrinted, L"\n"), 1u); // one message, no wait note
}
