// Cutting labels into device, separator and terminal, the name tables and their files.
#include "drawingdata/LabelSplit.h"
#include "app/ArxApp.h"

#include "LabelNameTables.h"
#include "TestHost.h"
#include "drawingdata/LabelNameFiles.h"
#include "shared/fileops/FileOps.h"

#include <gtest/gtest.h>

namespace {

// device|separator|terminal|result, for compact expectations.
std::wstring Split(const std::wstring& label, const std::wstring& kind,
                   const CZhuangZhiDzNameArray& devices = MakeDeviceTable(),
                   const CZhuangZhiDzNameArray& terminals = MakeTerminalTable()) {
    std::wstring dev = L"x", term = L"x", sep = L"x";
    int nResult = SplitLabelWithTables(label, devices, terminals, dev, term, sep, kind);
    return dev + L"|" + sep + L"|" + term + L"|" + std::to_wstring(nResult);
}

const std::wstring kGeneric = L"元件";

} // namespace

TEST(LabelSplit, GenericSymbolsSeparateOnlyAtAColon) {
    EXPECT_EQ(Split(L"KM1:13", kGeneric), L"KM1|:|13|0");
    EXPECT_EQ(Split(L"1-KM1:13", kGeneric), L"1-KM1|:|13|0");
    EXPECT_EQ(Split(L"  KM1：13 ", kGeneric), L"KM1|:|13|0");
    EXPECT_EQ(Split(L"KM1:13:2", kGeneric), L"KM1|:|13:2|0");
    EXPECT_EQ(Split(L"-KM1:13", kGeneric), L"-KM1|:|13|0");
    EXPECT_EQ(Split(L"KM1-13", kGeneric), L"KM1-13|||0");
    EXPECT_EQ(Split(L"KM1－13", kGeneric), L"KM1-13|||0");
    EXPECT_EQ(Split(L":13", kGeneric), L":13|||2");
    EXPECT_EQ(Split(L"   ", kGeneric), L"   |||2");
    EXPECT_EQ(Split(L"KM1-13", L"内部元件"), L"KM1-13|||0"); // an internal component is generic
}

TEST(LabelSplit, DoubleDashEndsAsDashTerminal) {
    EXPECT_EQ(Split(L"KM1--", kGeneric), L"KM1|-|-|2");
    EXPECT_EQ(Split(L"KM1--", kLabelKindTerminal), L"KM1|-|-|2");
    // A single dash at the end is no separator: alone it leaves the label
    // whole; behind another dash the dashes turn to colons, or the dash
    // before it separates.
    EXPECT_EQ(Split(L"KM1-", kGeneric), L"KM1-|||0");
    EXPECT_EQ(Split(L"KM1-", kLabelKindTerminal), L"KM1-|||0");
    EXPECT_EQ(Split(L"XT1-5-", kLabelKindTerminal), L"XT||1:5:|1");
    EXPECT_EQ(Split(L"A-B-", kLabelKindTerminal), L"A|-|B-|2");
}

TEST(LabelSplit, TerminalStripKind) {
    EXPECT_EQ(Split(L"1D-5", kLabelKindTerminal), L"1D|:|5|1");
    EXPECT_EQ(Split(L"1D5", kLabelKindTerminal), L"1D||5|1");
    EXPECT_EQ(Split(L"1D’5", kLabelKindTerminal), L"1D'||5|1"); // apostrophes stay with the strip
    EXPECT_EQ(Split(L"2-1D-3", kLabelKindTerminal), L"2-1D|:|3|1");
    EXPECT_EQ(Split(L"XT3", kLabelKindTerminal), L"XT||3|1");
    // "D" needs a character before it, and not a separator.
    EXPECT_EQ(Split(L"D5", kLabelKindTerminal), L"D5|||2");
    EXPECT_EQ(Split(L"A-D5", kLabelKindTerminal), L"A|-|D5|2");
    // A colon classifies by any strip name in the label.
    EXPECT_EQ(Split(L"XT1:5", kLabelKindTerminal), L"XT1|:|5|1");
    EXPECT_EQ(Split(L"KM1:5", kLabelKindTerminal), L"KM1|:|5|2");
}

TEST(LabelSplit, ClosingBracketIsNoTerminal) {
    EXPECT_EQ(Split(L"KM1-)", kLabelKindTerminal), L"KM1-)|||0");
    EXPECT_EQ(Split(L"KM1:)", kLabelKindTerminal), L"KM1|:|)|2");
}

TEST(LabelSplit, DeviceTerminalKind) {
    EXPECT_EQ(Split(L"1n-5", kLabelKindDeviceTerminal), L"1n|-|5|0");
    EXPECT_EQ(Split(L"3'-1n:5", kLabelKindDeviceTerminal), L"3'-1n|:|5|0");
    EXPECT_EQ(Split(L"1n", kLabelKindDeviceTerminal), L"1n|||0");
    EXPECT_EQ(Split(L"KM1", kLabelKindDeviceTerminal), L"KM||1|0");
    EXPECT_EQ(Split(L"n5", kLabelKindDeviceTerminal), L"n5|||2"); // "n" cannot open a label
    EXPECT_EQ(Split(L"QF1:2", kLabelKindDeviceTerminal), L"QF1|:|2|0");
    EXPECT_EQ(Split(L"AB:2", kLabelKindDeviceTerminal), L"AB|:|2|2");
}

TEST(LabelSplit, ClassificationByFlagsAndPositions) {
    CZhuangZhiDzNameArray devices{{L"KM", 1}, {L"ZZ", 2}};
    CZhuangZhiDzNameArray terminals{{L"X", 1}};
    // With a colon only names that count are looked at: the strip wins.
    EXPECT_EQ(Split(L"X1ZZ:5", kGeneric, devices, terminals), L"X1ZZ|:|5|1");
    // Without one the furthest name is taken first, and "ZZ" never counts.
    EXPECT_EQ(Split(L"X1ZZ", kGeneric, devices, terminals), L"X1ZZ|||2");
    EXPECT_EQ(Split(L"KM1X:5", kGeneric), L"KM1X|:|5|1");
    EXPECT_EQ(Split(L"X1KM:5", kGeneric), L"X1KM|:|5|0");
    EXPECT_EQ(Split(L"1n:5", kGeneric), L"1n|:|5|0");
    EXPECT_EQ(Split(L"n:5", kGeneric), L"n|:|5|2");
}

namespace {

// A host's name library that counts how often it is asked.
class CFakeLabelNames : public ISuiteLabelNames {
public:
    bool CreatZhuangZhiAndDzNameArray(CZhuangZhiDzNameArray& devices,
                                      CZhuangZhiDzNameArray& terminals) override {
        ++m_nFills;
        devices = m_devices;
        terminals = m_terminals;
        return true;
    }
    std::wstring NameTablesStamp() override {
        ++m_nStamps;
        return m_strStamp;
    }

    int m_nFills = 0;
    int m_nStamps = 0;
    std::wstring m_strStamp;
    CZhuangZhiDzNameArray m_devices = MakeDeviceTable();
    CZhuangZhiDzNameArray m_terminals = MakeTerminalTable();
};

void UseLabelNames(ISuiteLabelNames* pNames) {
    HOST_SERVICES services = GetHostServices();
    services.pLabelNames = pNames;
    SetHostServices(services);
}

std::wstring SplitWithHost(const std::wstring& label, const std::wstring& kind) {
    std::wstring dev = L"x", term = L"x";
    SplitDeviceLabel(label, dev, term, kind);
    return dev + L"|" + term;
}

} // namespace

TEST(LabelSplit, WithoutHostTablesAreEmpty) {
    CZhuangZhiDzNameArray devices{{L"stale", 1}}, terminals{{L"stale", 1}};
    EXPECT_FALSE(TzDll_CreatZhuangZhiAndDzNameArray(devices, terminals));
    EXPECT_TRUE(devices.empty() && terminals.empty());
    EXPECT_EQ(SplitWithHost(L"KM1:13", kGeneric), L"KM1|13");
    EXPECT_EQ(SplitWithHost(L"1D5", kLabelKindTerminal), L"1D5|");
}

TEST(LabelSplit, TablesAreKeptUntilTheStampChanges) {
    CTestHost host;
    CTempDir dir;
    host.m_strCommonRes = dir.Path();
    CFakeLabelNames names;
    names.m_strStamp = L"first";
    UseLabelNames(&names);
    EXPECT_EQ(SplitWithHost(L"1D5", kLabelKindTerminal), L"1D|5");
    EXPECT_EQ(SplitWithHost(L"2D5", kLabelKindTerminal), L"2D|5");
    EXPECT_EQ(names.m_nFills, 1);

    names.m_terminals = {{L"X", 1}};
    names.m_strStamp = L"second";
    EXPECT_EQ(SplitWithHost(L"1D5", kLabelKindTerminal), L"1D5|");
    EXPECT_EQ(names.m_nFills, 2);

    // A changed extra settings file is read anew, and changes nothing.
    ASSERT_TRUE(CreateDirPath(dir / L"Data"));
    ASSERT_TRUE(WriteTextFile(GetExtraAddDzSettingsPath(), L"可选符号:-,:,D\n"));
    EXPECT_EQ(SplitWithHost(L"1D5", kLabelKindTerminal), L"1D5|");
    EXPECT_EQ(SplitWithHost(L"1n-5", kLabelKindDeviceTerminal), L"1n|5");
    EXPECT_EQ(names.m_nFills, 3);

    // A host that cannot stamp its tables is asked every time.
    names.m_strStamp.clear();
    SplitWithHost(L"KM1", kGeneric);
    SplitWithHost(L"KM1", kGeneric);
    EXPECT_EQ(names.m_nFills, 5);
    UseLabelNames(nullptr);
}

// A command splits many labels: the stamps are looked at once in it, and an
// edited table applies from the next command on.
TEST(LabelSplit, StampsAreLookedAtOncePerCommand) {
    CTestHost host;
    CTempDir dir;
    host.m_strCommonRes = dir.Path();
    static CFakeLabelNames s_names;
    s_names = CFakeLabelNames();
    s_names.m_strStamp = L"first";
    UseLabelNames(&s_names);
    static std::wstring s_strSeen;
    auto command = [] {
        s_strSeen.clear();
        for (int i = 0; i < 100; ++i)
            s_strSeen = SplitWithHost(L"1D5", kLabelKindTerminal);
        s_names.m_terminals = {{L"X", 1}}; // edited while the command runs
        s_names.m_strStamp = L"second";
        s_strSeen += L";" + SplitWithHost(L"1D5", kLabelKindTerminal);
    };
    RunCommandBody(L"SPLIT", command);
    EXPECT_EQ(s_strSeen, L"1D|5;1D|5");
    EXPECT_EQ(s_names.m_nStamps, 1);
    RunCommandBody(L"SPLIT", [] { s_strSeen = SplitWithHost(L"1D5", kLabelKindTerminal); });
    EXPECT_EQ(s_strSeen, L"1D5|");
    EXPECT_EQ(s_names.m_nStamps, 2);
    EXPECT_EQ(s_names.m_nFills, 2);
    UseLabelNames(nullptr);
}

TEST(LabelNameFiles, SingleLineNamesBetweenTheMarkers) {
    CTempDir dir;
    ASSERT_TRUE(WriteTextFile(dir / L"RpLabelDef.txt",
                              L"QS|1\n$BEGIN_SINGLELINENAME\nQF|1\nTA|0\nKM|x\n|1\nFU|\nno bar\n"
                              L"$END_SINGLELINENAME\nPA|1\n$BEGIN_SINGLELINENAME\nPV|0\n\nPW|1\n"));
    CZhuangZhiDzNameArray rows;
    ASSERT_TRUE(ReadSingleLineNames(dir / L"RpLabelDef.txt", rows));
    std::wstring strRows;
    for (const auto& row : rows)
        strRows += row.name + L"=" + std::to_wstring(row.flag) + L" ";
    EXPECT_EQ(strRows, L"QF=1 TA=0 KM=1 PV=0 "); // an empty line ends the file
    EXPECT_FALSE(ReadSingleLineNames(dir / L"missing.txt", rows));
}

TEST(LabelNameFiles, ExtraSymbolsDefaultToApostrophe) {
    CTempDir dir;
    CStringArray symbols;
    EXPECT_FALSE(ReadExtraDzSymbols(dir / L"missing.txt", symbols));
    EXPECT_EQ(symbols, (CStringArray{L"'"}));
    ASSERT_TRUE(WriteTextFile(dir / L"x.txt", L"其它\n可选符号:*, #\n"));
    EXPECT_TRUE(ReadExtraDzSymbols(dir / L"x.txt", symbols));
    EXPECT_EQ(symbols, (CStringArray{L"*", L"#"}));
}
