// The browser's item list: its two sorts, its pages of sixteen cells and the search box's match.
#include "library/LibraryListOrder.h"

#include "base/StrUtil.h"
#include "drawingdata/LabelText.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <unordered_map>

void CSortStringArray::Sort() {
    // A stable sort gives exactly the bubble sort's order in n log n.
    std::stable_sort(begin(), end(), [](const std::wstring& a, const std::wstring& b) {
        return CompareNoCase(a, b) < 0;
    });
}

namespace {

// CompareLabels of one path element, parsed once: the exchange sort compares
// every pair, and parsing in the inner loop would make 10,000 names take seconds.
struct LABEL_KEY {
    uint64_t nHigh = 0; // prefix number, rank of the letters
    uint64_t nLow = 0;  // leading number, suffix value
};

struct PATH_ELEMENT {
    int nFoldId = 0; // equal for names equal without regard to case
    bool bEmpty = false;
    bool bInnerDash = false;
    LABEL_KEY full; // the whole element
    LABEL_KEY cut;  // the element before its first dash
};

// One name: its stem's element inline, so that the inner loop reads one
// entry after the other; directories as element ids in a shared array.
struct NAME_ENTRY {
    PATH_ELEMENT stem;
    int nDirs = 0;
    int nDirOffset = 0;
    int nIndex = 0; // position in the names as given
};

uint64_t Biased(int n) {
    return static_cast<uint64_t>(static_cast<int64_t>(n) + 0x80000000LL);
}

class CLabelSorter {
public:
    explicit CLabelSorter(const CStringArray& names) {
        for (const std::wstring& name : names)
            m_names.push_back(ParseName(name, static_cast<int>(m_names.size())));
        RankMids();
        for (size_t i = 0; i < m_names.size(); ++i)
            m_names[i].stem = m_elements[m_stemIds[i]];
    }

    // Rules for the pair earlier A and later B: true when B must come first.
    bool MustSwap(const NAME_ENTRY& a, const NAME_ENTRY& b) const {
        if (a.nDirs == 0 && b.nDirs == 0)
            return Compare(a.stem, b.stem) > 0;
        const int* pDirsA = m_dirIds.data() + a.nDirOffset;
        const int* pDirsB = m_dirIds.data() + b.nDirOffset;
        int k = 0;
        while (k < a.nDirs && k < b.nDirs &&
               m_elements[pDirsA[k]].nFoldId == m_elements[pDirsB[k]].nFoldId)
            ++k;
        bool bDirA = k < a.nDirs, bDirB = k < b.nDirs;
        if (bDirA != bDirB)
            return bDirA; // items of a directory precede those of its subdirectories
        if (!bDirA)
            return Compare(a.stem, b.stem) > 0;
        return Compare(m_elements[pDirsA[k]], m_elements[pDirsB[k]]) > 0;
    }

    void Sort(CStringArray& names) {
        std::vector<NAME_ENTRY> entries = m_names;
        if (!SortByTotalOrder(entries)) {
            entries = m_names;
            for (size_t i = 0; i < entries.size(); ++i)
                for (size_t j = i + 1; j < entries.size(); ++j)
                    if (MustSwap(entries[i], entries[j]))
                        std::swap(entries[i], entries[j]);
        }
        CStringArray sorted;
        sorted.reserve(names.size());
        for (const NAME_ENTRY& entry : entries)
            sorted.push_back(std::move(names[entry.nIndex]));
        names.swap(sorted);
    }

private:
    // When the pair rule is a strict total order on these names, the exchange
    // sort can only end in the one sorted order, which n log n reaches too:
    // no empty element, dashes on all elements or none (so no pair is cut),
    // one key per spelling, and no two names alike. False leaves the
    // exchange to decide, ties and all.
    bool SortByTotalOrder(std::vector<NAME_ENTRY>& entries) const {
        if (m_elements.empty())
            return true;
        bool bDash = m_elements.front().bInnerDash;
        std::map<std::pair<uint64_t, uint64_t>, int> foldOfKey;
        for (const PATH_ELEMENT& element : m_elements) {
            if (element.bEmpty || element.bInnerDash != bDash)
                return false;
            auto [it, bNew] =
                foldOfKey.try_emplace({element.full.nHigh, element.full.nLow}, element.nFoldId);
            if (!bNew && it->second != element.nFoldId)
                return false;
        }
        auto less = [this](const NAME_ENTRY& a, const NAME_ENTRY& b) { return MustSwap(b, a); };
        std::sort(entries.begin(), entries.end(), less);
        for (size_t i = 1; i < entries.size(); ++i)
            if (!less(entries[i - 1], entries[i]))
                return false;
        return true;
    }

    static int Compare(const PATH_ELEMENT& a, const PATH_ELEMENT& b) {
        if (a.bEmpty)
            return 1;
        if (b.bEmpty)
            return -1;
        bool bCut = a.bInnerDash != b.bInnerDash;
        const LABEL_KEY& x = bCut ? a.cut : a.full;
        const LABEL_KEY& y = bCut ? b.cut : b.full;
        if (x.nHigh != y.nHigh)
            return x.nHigh < y.nHigh ? -1 : 1;
        if (x.nLow != y.nLow)
            return x.nLow < y.nLow ? -1 : 1;
        return 0;
    }

    int ElementId(const std::wstring& text) {
        auto [it, bNew] = m_elementIds.try_emplace(text, static_cast<int>(m_elements.size()));
        if (!bNew)
            return it->second;
        auto [fold, bNewFold] =
            m_foldIds.try_emplace(StrMakeLower(text), static_cast<int>(m_foldIds.size()));
        PATH_ELEMENT element;
        element.nFoldId = fold->second;
        element.bEmpty = text.empty();
        element.bInnerDash = LabelHasInnerDash(text);
        m_elements.push_back(element);
        m_keys.push_back({ParseLabelKey(text, false), ParseLabelKey(text, true)});
        return it->second;
    }

    NAME_ENTRY ParseName(const std::wstring& name, int nIndex) {
        NAME_ENTRY entry;
        entry.nIndex = nIndex;
        entry.nDirOffset = static_cast<int>(m_dirIds.size());
        size_t nStart = 0;
        for (size_t nAt; (nAt = name.find(L'\\', nStart)) != std::wstring::npos; nStart = nAt + 1)
            m_dirIds.push_back(ElementId(name.substr(nStart, nAt - nStart)));
        entry.nDirs = static_cast<int>(m_dirIds.size()) - entry.nDirOffset;
        std::wstring stem = name.substr(nStart);
        if (size_t nDot = stem.rfind(L'.'); nDot != std::wstring::npos)
            stem.resize(nDot);
        m_stemIds.push_back(ElementId(stem));
        return entry;
    }

    // The letters compare as plain strings: their rank among all of them
    // orders them the same way.
    void RankMids() {
        std::map<std::wstring, int> ranks;
        for (const auto& [full, cut] : m_keys) {
            ranks.emplace(full.strMid, 0);
            ranks.emplace(cut.strMid, 0);
        }
        int nRank = 0;
        for (auto& [mid, rank] : ranks)
            rank = nRank++;
        for (size_t i = 0; i < m_elements.size(); ++i) {
            m_elements[i].full = Pack(m_keys[i].first, ranks[m_keys[i].first.strMid]);
            m_elements[i].cut = Pack(m_keys[i].second, ranks[m_keys[i].second.strMid]);
        }
    }

    static LABEL_KEY Pack(const STRUCT_LABEL_KEY& key, int nMidRank) {
        return {Biased(key.nPre) << 32 | static_cast<uint32_t>(nMidRank),
                Biased(key.nLead) << 32 | Biased(key.nSuffix)};
    }

    std::vector<NAME_ENTRY> m_names;
    std::vector<int> m_stemIds;
    std::vector<int> m_dirIds;
    std::vector<PATH_ELEMENT> m_elements;
    std::vector<std::pair<STRUCT_LABEL_KEY, STRUCT_LABEL_KEY>> m_keys;
    std::unordered_map<std::wstring, int> m_elementIds;
    std::unordered_map<std::wstring, int> m_foldIds;
};

} // namespace

void SortByLabel(CStringArray& names) {
    CLabelSorter sorter(names);
    sorter.Sort(names);
}

void SortLibraryNames(CStringArray& names) {
    CSortStringArray plain;
    plain.swap(names);
    plain.Sort();
    names.swap(plain);
    SortByLabel(names);
}

int GetPageCount(int nItems) {
    return nItems <= 0 ? 0 : (nItems + kCellsPerPage - 1) / kCellsPerPage;
}

int GetPageOfItem(int nItem) {
    return GetPageCount(nItem + 1);
}

int GetCellOfItem(int nItem) {
    return nItem % kCellsPerPage;
}

int GetCellNameIndex(int nCell, int nPage) {
    return nCell + nPage * kCellsPerPage - kCellsPerPage;
}

int GetPageAfterWheel(int nPage, int nPages, int nDelta) {
    if (nPages <= 1)
        return nPage;
    if (nDelta > 0 && nPage > 1)
        return nPage - 1;
    if (nDelta < 0 && nPage < nPages)
        return nPage + 1;
    return nPage;
}

int FindSearchMatch(const CStringArray& texts, const std::wstring& strTyped) {
    if (strTyped.empty())
        return texts.empty() ? -1 : 0;
    for (size_t i = 0; i < texts.size(); ++i) {
        std::wstring_view text = texts[i];
        if (StrFind(text, L'\\', 1) >= 0)
            text = text.substr(StrReverseFind(text, L'\\') + 1);
        if (EqualsNoCase(text.substr(0, std::min(text.size(), strTyped.size())), strTyped))
            return static_cast<int>(i);
    }
    return -1;
}
