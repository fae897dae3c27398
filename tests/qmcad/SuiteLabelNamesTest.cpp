// The name-table stand-in: its files, its defaults, and a changed file reaching the next split.
#include "suite/SuiteLabelNames.h"

#include "TestHost.h"
#include "base/SysPath.h"
#include "drawingdata/LabelSplit.h"
#include "host/HostServices.h"
#include "shared/fileops/FileOps.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace {

std::wstring Rows(const CZhuangZhiDzNameArray& table) {
    std::wstring strRows;
    for (const auto& row : table)
        strRows += row.name + L"=" + std::to_wstring(row.flag) + L" ";
    return strRows;
}

std::wstring SplitTerminal(const std::wstring& label) {
    std::wstring dev, term;
    SplitDeviceLabel(label, dev, term, kLabelKindTerminal);
    return dev + L"|" + term;
}

} // namespace

TEST(SuiteLabelNames, DefaultsStandInForMissingFiles) {
    CTestHost host;
    CTempDir dir;
    host.m_strCommonRes = dir.Path();
    CSuiteLabelNames names(host);
    CZhuangZhiDzNameArray devices, terminals;
    ASSERT_TRUE(names.CreatZhuangZhiAndDzNameArray(devices, terminals));
    EXPECT_EQ(Rows(devices), Rows(CSuiteLabelNames::DefaultDevices()));
    EXPECT_EQ(Rows(terminals), Rows(CSuiteLabelNames::DefaultTerminals()));
    std::wstring strStamp = names.NameTablesStamp();

    ASSERT_TRUE(names.WriteDefaultFiles());
    EXPECT_NE(names.NameTablesStamp(), strStamp);
    ASSERT_TRUE(names.CreatZhuangZhiAndDzNameArray(devices, terminals)); // now from the files
    EXPECT_EQ(Rows(devices), Rows(CSuiteLabelNames::DefaultDevices()));

    ASSERT_TRUE(
        WriteTextFile(dir / L"Data\\TzDzName.txt", L"# 端子排\n\n XT | 1 \nX\nD|0\n|1\nZ|x\n"));
    ASSERT_TRUE(names.CreatZhuangZhiAndDzNameArray(devices, terminals));
    EXPECT_EQ(Rows(terminals), L"XT=1 X=1 D=0 Z=0 ");

    host.m_strCommonRes.clear();
    EXPECT_FALSE(names.CreatZhuangZhiAndDzNameArray(devices, terminals));
    EXPECT_TRUE(devices.empty() && terminals.empty());
}

TEST(SuiteLabelNames, ChangedFileReachesTheNextSplit) {
    CTestHost host;
    CTempDir dir;
    host.m_strCommonRes = dir.Path();
    CSuiteLabelNames names(host);
    HOST_SERVICES services = GetHostServices();
    services.pLabelNames = &names;
    SetHostServices(services);
    ASSERT_TRUE(names.WriteDefaultFiles());

    EXPECT_EQ(SplitTerminal(L"1D5"), L"1D|5");
    std::wstring strFile = dir / L"Data\\TzDzName.txt";
    ASSERT_TRUE(WriteTextFile(strFile, L"XT|1\n"));
    EXPECT_EQ(SplitTerminal(L"1D5"), L"1D5|");
    // Same size: the modification time tells (set apart from the last write,
    // which the file system's clock may not).
    ASSERT_TRUE(WriteTextFile(strFile, L"D |0\n"));
    std::filesystem::path osFile = ToOsPath(strFile);
    std::filesystem::last_write_time(osFile, std::filesystem::last_write_time(osFile) +
                                                 std::chrono::seconds(2));
    EXPECT_EQ(SplitTerminal(L"1D5"), L"1D|5");
}
