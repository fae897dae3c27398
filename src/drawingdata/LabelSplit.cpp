// Cutting one label into device, separator and terminal, by the suite's name tables.
#include "drawingdata/LabelSplit.h"

#include "app/ArxApp.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "drawingdata/LabelNameFiles.h"
#include "drawingdata/LabelText.h"
#include "host/HostServices.h"

#include <algorithm>

namespace {

// Whether a name found at nPos counts by its row's flag.
bool CountsAt(int nFlag, long long nPos) {
    return (nFlag == 1 && nPos >= 0) || (nFlag == 0 && nPos >= 1);
}

bool AnyNameIn(const std::wstring& text, const CZhuangZhiDzNameArray& table) {
    for (const STRUCT_ZHUANGZHI_DZ_NAME& row : table)
        if (!row.name.empty() && text.find(row.name) != std::wstring::npos)
            return true;
    return false;
}

// The row whose last occurrence in the text stands furthest right; the
// earlier row wins a tie. Null when no name occurs.
const STRUCT_ZHUANGZHI_DZ_NAME* FindLastName(const std::wstring& text,
                                             const CZhuangZhiDzNameArray& table, long long& nPos) {
    const STRUCT_ZHUANGZHI_DZ_NAME* pFound = nullptr;
    nPos = -1;
    for (const STRUCT_ZHUANGZHI_DZ_NAME& row : table) {
        size_t n = row.name.empty() ? std::wstring::npos : text.rfind(row.name);
        if (n != std::wstring::npos && static_cast<long long>(n) > nPos) {
            nPos = static_cast<long long>(n);
            pFound = &row;
        }
    }
    return pFound;
}

// The furthest last occurrence among the names that count there.
long long LastCountingPos(const std::wstring& text, const CZhuangZhiDzNameArray& table) {
    long long nBest = -1;
    for (const STRUCT_ZHUANGZHI_DZ_NAME& row : table) {
        size_t n = row.name.empty() ? std::wstring::npos : text.rfind(row.name);
        if (n != std::wstring::npos && CountsAt(row.flag, static_cast<long long>(n)))
            nBest = std::max(nBest, static_cast<long long>(n));
    }
    return nBest;
}

int ClassifyByPositions(long long nPosT, bool bCountsT, long long nPosD, bool bCountsD) {
    if (bCountsT && nPosT > nPosD)
        return LABEL_IS_TERMINAL_STRIP;
    if (bCountsD && nPosD > nPosT)
        return LABEL_IS_DEVICE;
    return LABEL_IS_OTHER;
}

int ClassifyCountingNames(const std::wstring& device, const CZhuangZhiDzNameArray& devices,
                          const CZhuangZhiDzNameArray& terminals) {
    long long nPosT = LastCountingPos(device, terminals), nPosD = LastCountingPos(device, devices);
    return ClassifyByPositions(nPosT, nPosT >= 0, nPosD, nPosD >= 0);
}

// The furthest name is taken first and its flag looked at afterwards.
int ClassifyFurthestNames(const std::wstring& device, const CZhuangZhiDzNameArray& devices,
                          const CZhuangZhiDzNameArray& terminals) {
    long long nPosT, nPosD;
    const STRUCT_ZHUANGZHI_DZ_NAME* pT = FindLastName(device, terminals, nPosT);
    const STRUCT_ZHUANGZHI_DZ_NAME* pD = FindLastName(device, devices, nPosD);
    return ClassifyByPositions(nPosT, CountsAt(pT ? pT->flag : 1, nPosT), nPosD,
                               CountsAt(pD ? pD->flag : 1, nPosD));
}

std::wstring ColonsToDashes(std::wstring text) {
    StrReplace(text, L":", L"-");
    return text;
}

// A label being cut: the state the steps hand on.
struct SPLIT_WORK {
    std::wstring strPrefix;
    std::wstring strRest;
    bool bDashAsColon = false;
};

// The part of the rest behind a name found at nPos: apostrophes go to the
// device, a separator is taken off. Returns the tail.
std::wstring CutTail(const SPLIT_WORK& work, size_t nDevLength, std::wstring& dev,
                     std::wstring& sep) {
    std::wstring tail = work.strRest.substr(std::min(nDevLength, work.strRest.size()));
    size_t nQuotes = 0;
    while (nQuotes < tail.size() && tail[nQuotes] == L'\'')
        ++nQuotes;
    dev.append(nQuotes, L'\'');
    tail.erase(0, nQuotes);
    sep.clear();
    if (!tail.empty() &&
        (tail[0] == L':' || (tail[0] == L'-' && (work.bDashAsColon || tail.size() > 1)))) {
        sep = tail.substr(0, 1);
        tail.erase(0, 1);
    }
    return tail;
}

bool SplitAtTerminalStrip(const SPLIT_WORK& work, const CZhuangZhiDzNameArray& terminals,
                          std::wstring& outDevice, std::wstring& outTerminal,
                          std::wstring& outSeparator) {
    long long nPos;
    const STRUCT_ZHUANGZHI_DZ_NAME* pRow = FindLastName(work.strRest, terminals, nPos);
    if (!pRow)
        return false;
    const std::wstring& rest = work.strRest;
    std::wstring head = rest.substr(0, nPos);
    std::wstring dev = head + pRow->name;
    if (work.bDashAsColon)
        dev = ColonsToDashes(dev);
    int nLastColon = StrReverseFind(rest, L':');
    if (nLastColon == nPos + 1 && !work.bDashAsColon)
        dev = rest.substr(0, nLastColon);
    std::wstring sep;
    std::wstring tail = CutTail(work, dev.size(), dev, sep);
    bool bDigitTail = !tail.empty() && IsLabelDigit(tail[0]);
    if (head.empty()) {
        if (pRow->flag != 1 || !(tail.empty() || bDigitTail))
            return false;
    } else {
        if (pRow->name.back() == L'D' && head.back() == L':')
            return false;
        if (!tail.empty() && !bDigitTail)
            return false;
        if (work.bDashAsColon)
            tail = ColonsToDashes(tail);
    }
    outDevice = work.strPrefix + dev;
    outTerminal = tail;
    outSeparator = sep;
    return true;
}

bool SplitAtDevice(const SPLIT_WORK& work, const CZhuangZhiDzNameArray& devices,
                   std::wstring& outDevice, std::wstring& outTerminal, std::wstring& outSeparator) {
    long long nPos;
    const STRUCT_ZHUANGZHI_DZ_NAME* pRow = FindLastName(work.strRest, devices, nPos);
    if (!pRow)
        return false;
    std::wstring head = work.strRest.substr(0, nPos);
    std::wstring dev = head + pRow->name;
    std::wstring sep;
    std::wstring tail = CutTail(work, dev.size(), dev, sep);
    if (!sep.empty() && work.bDashAsColon)
        sep = L"-";
    if (head.empty() && pRow->flag != 1)
        return false;
    outDevice = work.strPrefix + (work.bDashAsColon && !head.empty() ? ColonsToDashes(dev) : dev);
    outTerminal = work.bDashAsColon ? ColonsToDashes(tail) : tail;
    outSeparator = sep;
    return true;
}

bool HasInnerDash(const std::wstring& text) {
    int nDash = StrFind(text, L'-', 1);
    return nDash >= 0 && nDash != static_cast<int>(text.size()) - 1;
}

// No ":" in the rest: a dash inside it may stand for one.
void DashesToColons(SPLIT_WORK& work, const CZhuangZhiDzNameArray& devices, bool bDeviceTerminal) {
    std::wstring& rest = work.strRest;
    if (bDeviceTerminal) {
        for (const STRUCT_ZHUANGZHI_DZ_NAME& row : devices) {
            size_t n = row.name.empty() ? std::wstring::npos : rest.find(row.name);
            if (n == std::wstring::npos)
                continue;
            if (n + row.name.size() < rest.size() && HasInnerDash(rest)) {
                StrReplace(rest, L"-", L":");
                work.bDashAsColon = true;
            }
            return;
        }
    }
    if (HasInnerDash(rest)) {
        StrReplace(rest, L"-", L":");
        work.bDashAsColon = true;
    }
}

// The last resort on the whole label: the first ":" past index 0, or the
// last inner dash, separates, unless that leaves no terminal.
int SplitFallback(const std::wstring& whole, bool bGeneric, const CZhuangZhiDzNameArray& devices,
                  const CZhuangZhiDzNameArray& terminals, std::wstring& outDevice,
                  std::wstring& outTerminal, std::wstring& outSeparator) {
    if (whole.size() >= 3 && whole.ends_with(L"--")) {
        outDevice = whole.substr(0, whole.size() - 2);
        outSeparator = outTerminal = L"-";
        return LABEL_IS_OTHER;
    }
    outDevice = whole;
    outTerminal.clear();
    outSeparator.clear();
    std::wstring strPrefix2;
    std::wstring rest2 = StripLabelPrefix(whole, strPrefix2);
    bool bDashUsed = false;
    if (StrFind(rest2, L':') < 0) {
        StrReplace(rest2, L"－", L"-");
        int nDash = StrReverseFind(rest2, L'-');
        int nLast = static_cast<int>(rest2.size()) - 1;
        if (nDash >= 0 && nDash == nLast)
            nDash = StrReverseFind(StrLeft(rest2, nDash), L'-');
        if (nDash > 0 && nDash != nLast) {
            rest2[nDash] = L':';
            bDashUsed = true;
        }
    }
    int nColon = rest2.size() > 1 ? StrFind(rest2, L':', 1) : -1;
    if (nColon >= 1) {
        outSeparator = bDashUsed ? L"-" : L":";
        outTerminal = rest2.substr(nColon + 1);
        outDevice = strPrefix2 + rest2.substr(0, nColon);
    }
    if (outTerminal == L")")
        outTerminal.clear();
    bool bDashSeparates = outSeparator == L"-" || outSeparator == L"－";
    if (outTerminal.empty() || outDevice.empty() || (bGeneric && bDashSeparates)) {
        outDevice = whole;
        outTerminal.clear();
        outSeparator.clear();
    }
    return ClassifyFurthestNames(outDevice, devices, terminals);
}

} // namespace

int SplitLabelWithTables(const std::wstring& label, const CZhuangZhiDzNameArray& deviceTable,
                         const CZhuangZhiDzNameArray& terminalTable, std::wstring& outDevice,
                         std::wstring& outTerminal, std::wstring& outSeparator,
                         const std::wstring& kind) {
    outDevice.clear();
    outTerminal.clear();
    outSeparator.clear();
    bool bTerminal = kind == kLabelKindTerminal, bDeviceTerminal = kind == kLabelKindDeviceTerminal;
    std::wstring whole = label;
    StrReplace(whole, L"－", L"-");
    StrReplace(whole, L"：", L":");
    StrReplace(whole, L"’", L"'");
    if (std::wstring trimmed = StrTrim(whole); !trimmed.empty())
        whole = trimmed;

    SPLIT_WORK work;
    work.strRest = StripLabelPrefix(whole, work.strPrefix);
    bool bHadDash = !work.strRest.empty() && work.strRest[0] == L'-';
    if (bHadDash)
        work.strRest.erase(0, 1);
    std::wstring& rest = work.strRest;
    if (StrFind(rest, L':') >= 0) {
        if (bHadDash)
            rest.insert(0, 1, L'-');
        bHadDash = false;
        int nColon = StrFind(rest, L':', 1);
        if (rest.size() >= 2 && nColon >= 1) {
            outSeparator = L":";
            outTerminal = rest.substr(nColon + 1);
            outDevice = work.strPrefix + rest.substr(0, nColon);
            if (bTerminal)
                return AnyNameIn(rest, terminalTable) ? LABEL_IS_TERMINAL_STRIP : LABEL_IS_OTHER;
            if (bDeviceTerminal)
                return AnyNameIn(rest, deviceTable) ? LABEL_IS_DEVICE : LABEL_IS_OTHER;
            return ClassifyCountingNames(outDevice, deviceTable, terminalTable);
        }
    } else {
        DashesToColons(work, deviceTable, bDeviceTerminal);
    }
    if (bHadDash)
        rest.insert(0, 1, L'-');

    if (bTerminal &&
        SplitAtTerminalStrip(work, terminalTable, outDevice, outTerminal, outSeparator))
        return LABEL_IS_TERMINAL_STRIP;
    if (bDeviceTerminal && SplitAtDevice(work, deviceTable, outDevice, outTerminal, outSeparator))
        return LABEL_IS_DEVICE;
    return SplitFallback(whole, !bTerminal && !bDeviceTerminal, deviceTable, terminalTable,
                         outDevice, outTerminal, outSeparator);
}

namespace {

// The suite's tables and the extra settings, kept while their stamps hold.
// Within one command the stamps are looked at once: a command splits
// thousands of labels, and an edited file applies from the next command on.
struct LABEL_NAME_CACHE {
    bool bLoaded = false;
    unsigned long nCheckedInCommand = 0; // the command serial of the last look
    const void* pHost = nullptr;
    std::wstring strHostStamp;
    std::wstring strExtraStamp;
    CZhuangZhiDzNameArray devices;
    CZhuangZhiDzNameArray terminals;
    CStringArray extraSymbols; // read as the suite does; no rule looks at it
};

std::wstring FileStamp(const std::wstring& strPath) {
    FS_FIND_DATA info;
    if (strPath.empty() || !FsGetInfo(strPath, info))
        return strPath + L"|-";
    return Format(L"%s|%d.%09d|%d", strPath, info.nModified, info.nModifiedNs, info.nSize);
}

const LABEL_NAME_CACHE& CurrentLabelNames() {
    static LABEL_NAME_CACHE cache;
    const void* pHost = GetHostServices().pLabelNames;
    unsigned long nCommand = CurrentCommandSerial();
    if (cache.bLoaded && cache.pHost == pHost && nCommand != 0 &&
        cache.nCheckedInCommand == nCommand)
        return cache;
    cache.nCheckedInCommand = nCommand;
    std::wstring strHostStamp = TzDll_GetZhuangZhiAndDzNameStamp();
    std::wstring strExtraPath = GetExtraAddDzSettingsPath();
    std::wstring strExtraStamp = FileStamp(strExtraPath);
    if (cache.bLoaded && cache.pHost == pHost && cache.strHostStamp == strHostStamp &&
        cache.strExtraStamp == strExtraStamp)
        return cache;
    TzDll_CreatZhuangZhiAndDzNameArray(cache.devices, cache.terminals);
    ReadExtraDzSymbols(strExtraPath, cache.extraSymbols);
    cache.pHost = pHost;
    cache.strHostStamp = strHostStamp;
    cache.strExtraStamp = strExtraStamp;
    // A host without a stamp cannot tell changes: ask it again next time.
    cache.bLoaded = !strHostStamp.empty() || !pHost;
    return cache;
}

} // namespace

void SplitDeviceLabel(const std::wstring& label, std::wstring& outDevice, std::wstring& outTerminal,
                      const std::wstring& special) {
    const LABEL_NAME_CACHE& names = CurrentLabelNames();
    outDevice.clear();
    outTerminal.clear();
    std::wstring strSeparator;
    SplitLabelWithTables(label, names.devices, names.terminals, outDevice, outTerminal,
                         strSeparator, special);
}
