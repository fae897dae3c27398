// The converter process: reused across files, restarted after failures, killed at the time-out.
#include "dwg/DwgWorker.h"

#include "TestHost.h"
#include "base/SysPath.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>

namespace {

std::string Sample(const char* name) {
    return std::string(QM_DWG_SAMPLES) + "/" + name;
}

bool HaveSamples() {
    return std::system(("test -r " + Sample("example_2018.dwg")).c_str()) == 0;
}

struct DwgWorkerFixture : ::testing::Test {
    CDwgWorker::OPTIONS Options() const {
        CDwgWorker::OPTIONS opt = DwgWorkerOptionsFromEnv();
        opt.nTimeoutMs = 60000; // a loaded machine is slow, not hung
        return opt;
    }
    std::string Out(const char* name) const { return m_dir.OsPath() + name; }
    CTempDir m_dir;
};

using DwgWorker = DwgWorkerFixture;

} // namespace

TEST_F(DwgWorker, OneProcessConvertsFileAfterFileAndIsReplacedAfterAFailure) {
    if (!HaveSamples())
        GTEST_SKIP() << "no sample drawings at " << QM_DWG_SAMPLES;
    CDwgWorker worker(Options());
    std::string err;
    ASSERT_EQ(worker.Convert(Sample("example_2018.dwg"), Out("a.dxf"), err), CDwgWorker::RESULT::Ok)
        << err;
    ASSERT_EQ(worker.Convert(Sample("r11_entities-2d.dwg"), Out("b.dxf"), err),
              CDwgWorker::RESULT::Ok)
        << err;
    EXPECT_EQ(worker.Starts(), 1);
    EXPECT_EQ(ReadBytes(m_dir / L"a.dxf").substr(0, 3), "999"); // LibreDWG's banner comment

    // A file the converter cannot read ends that process; the next file gets a fresh one.
    EXPECT_EQ(worker.Convert(Sample("example_2004.dwg"), Out("c.dxf"), err),
              CDwgWorker::RESULT::Failed);
    EXPECT_FALSE(err.empty());
    EXPECT_FALSE(worker.IsRunning());
    EXPECT_EQ(worker.Convert(Sample("2018_Leader.dwg"), Out("d.dxf"), err), CDwgWorker::RESULT::Ok)
        << err;
    EXPECT_EQ(worker.Starts(), 2);
}

TEST_F(DwgWorker, NamesAndCharactersOfPathsReachTheConverterIntact) {
    if (!HaveSamples())
        GTEST_SKIP() << "no sample drawings at " << QM_DWG_SAMPLES;
    CDwgWorker worker(Options());
    std::string err;
    std::string out = Out("开孔 图 (1).dxf");
    ASSERT_EQ(worker.Convert(Sample("r11_entities-2d.dwg"), out, err), CDwgWorker::RESULT::Ok)
        << err;
    EXPECT_FALSE(ReadBytes(FromOsPath(out)).empty());
    // A missing input is a failed conversion, not a hang or a crash.
    EXPECT_EQ(worker.Convert(m_dir.OsPath() + "none.dwg", Out("x.dxf"), err),
              CDwgWorker::RESULT::Failed);
}

TEST_F(DwgWorker, AHungConversionIsKilledAtTheTimeOut) {
    CDwgWorker::OPTIONS opt = Options();
    opt.strScript = std::string(std::getenv("QM_TEST_DATA")) + "/dwg/hung_worker.mjs";
    opt.nTimeoutMs = 1500;
    CDwgWorker worker(opt);
    std::string err;
    auto t0 = std::chrono::steady_clock::now();
    EXPECT_EQ(worker.Convert("/dev/null", Out("x.dxf"), err), CDwgWorker::RESULT::TimedOut);
    auto elapsed = std::chrono::steady_clock::now() - t0;
    EXPECT_GE(elapsed, std::chrono::milliseconds(1400));
    EXPECT_LT(elapsed, std::chrono::seconds(20));
    EXPECT_FALSE(worker.IsRunning());
    EXPECT_NE(err.find("2 s"), std::string::npos) << err;
}

TEST_F(DwgWorker, AMissingRuntimeOrPackageIsToldApart) {
    CDwgWorker::OPTIONS opt = Options();
    opt.strNode = "/nonexistent/node";
    std::string err;
    EXPECT_EQ(CDwgWorker(opt).Convert("/dev/null", Out("x.dxf"), err),
              CDwgWorker::RESULT::NoRuntime);
    // The converter script where its npm packages were never installed.
    opt = Options();
    WriteBytes(m_dir / L"dwgconv.mjs", ReadBytes(FromOsPath(opt.strScript)));
    opt.strScript = m_dir.OsPath() + "dwgconv.mjs";
    EXPECT_EQ(CDwgWorker(opt).Convert("/dev/null", Out("x.dxf"), err),
              CDwgWorker::RESULT::NoPackage);
    EXPECT_NE(err.find("@mlightcad/libredwg-web"), std::string::npos) << err;
    opt.strScript = m_dir.OsPath() + "none.mjs";
    EXPECT_EQ(CDwgWorker(opt).Convert("/dev/null", Out("x.dxf"), err),
              CDwgWorker::RESULT::NoPackage);
}
