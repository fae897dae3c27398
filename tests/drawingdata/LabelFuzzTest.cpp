// Random, malformed and very long labels through every label function: no crash, no hang.
#include "drawingdata/GetTextFromMText.h"
#include "drawingdata/LabelExpand.h"
#include "drawingdata/LabelSplit.h"
#include "drawingdata/LabelText.h"

#include "LabelNameTables.h"

#include <gtest/gtest.h>

#include <random>

namespace {

// Characters that the rules look at, full-width forms and a few strangers.
const std::wstring kAlphabet = L"0123456789KMXTDnabcAZ-~,:()'\\;{} ～，－：’１Ｋ端子\x1\xFFFF";

std::wstring RandomLabel(std::mt19937& rng, size_t nMaxLength) {
    std::uniform_int_distribution<size_t> length(0, nMaxLength);
    std::uniform_int_distribution<size_t> pick(0, kAlphabet.size() - 1);
    std::wstring label(length(rng), L' ');
    for (wchar_t& ch : label)
        ch = kAlphabet[pick(rng)];
    return label;
}

void RunAll(const std::wstring& label, const std::wstring& other) {
    static const CZhuangZhiDzNameArray devices = MakeDeviceTable();
    static const CZhuangZhiDzNameArray terminals = MakeTerminalTable();
    CStringArray labels;
    ExpandLabel(label, labels);
    ASSERT_LE(static_cast<long long>(labels.size()), kMaxExpandedLabels);
    std::wstring dev, term, sep;
    for (const wchar_t* kind : {L"", kLabelKindTerminal, kLabelKindDeviceTerminal}) {
        int nResult = SplitLabelWithTables(label, devices, terminals, dev, term, sep, kind);
        ASSERT_TRUE(nResult >= 0 && nResult <= 2);
    }
    int n = CompareLabels(label, other);
    bool bBothEmpty = label.empty() && other.empty();
    ASSERT_EQ(n > 0, CompareLabels(other, label) < 0 || bBothEmpty);
    CGetTextFromMText mtext;
    mtext.GetPlainText(label);
    std::wstring strPrefix;
    StripLabelPrefix(label, strPrefix);
}

} // namespace

TEST(LabelFuzz, RandomLabelsNeverCrash) {
    std::mt19937 rng(20261121);
    for (int i = 0; i < 20000; ++i)
        RunAll(RandomLabel(rng, 24), RandomLabel(rng, 24));
}

TEST(LabelFuzz, VeryLongLabelsFinish) {
    std::mt19937 rng(7);
    for (int i = 0; i < 20; ++i)
        RunAll(RandomLabel(rng, 20000), RandomLabel(rng, 200));
    std::wstring strDigits(100000, L'9');
    RunAll(strDigits + L"~1", strDigits);
    std::wstring strList;
    for (int i = 0; i < 20000; ++i)
        strList += L"1~9,";
    RunAll(strList, L"KM1");
    RunAll(std::wstring(50000, L'-') + L"KM1", std::wstring(50000, L':'));
    RunAll(std::wstring(50000, L'\\') + L"P;", L"");
}
