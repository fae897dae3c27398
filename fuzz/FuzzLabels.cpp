// Labels and label ranges as a designer types them: order, keys, expansion and splitting.
#include "FuzzSupport.h"

#include "base/CodePage.h"
#include "drawingdata/LabelExpand.h"
#include "drawingdata/LabelSplit.h"
#include "drawingdata/LabelText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::wstring text =
        DecodeTextIn("UTF-8", std::string_view(reinterpret_cast<const char*>(data), size));
    size_t nBar = text.find(L'|');
    std::wstring a = text.substr(0, nBar);
    std::wstring b = nBar == std::wstring::npos ? L"" : text.substr(nBar + 1);
    // An empty label sorts last even against another empty one, as it always has.
    auto sign = [](int n) { return (n > 0) - (n < 0); };
    if (!a.empty() && !b.empty() && sign(CompareLabels(a, b)) != -sign(CompareLabels(b, a)))
        FuzzFail("label order is not antisymmetric");
    CompareLabelKeys(ParseLabelKey(a, true), ParseLabelKey(b, false));
    LabelToInt(a);
    LabelHasInnerDash(a);
    std::wstring prefix, number;
    SplitTrailingNumber(a, prefix, number);
    CStringArray labels;
    ExpandLabel(a, labels);
    labels.clear();
    ExpandLabelRange(text, labels);
    static const CZhuangZhiDzNameArray devices{{L"KM", 1}, {L"QF", 1}, {L"n", 0}};
    static const CZhuangZhiDzNameArray strips{{L"XT", 1}, {L"D", 0}};
    std::wstring device, terminal, separator;
    SplitLabelWithTables(a, devices, strips, device, terminal, separator, b);
    return 0;
}
