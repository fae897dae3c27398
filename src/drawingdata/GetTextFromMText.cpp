// Plain text out of a multi-line text's contents, so that labels from single and multi-line texts
// compare equal.
#include "drawingdata/GetTextFromMText.h"

#include "base/StrUtil.h"

namespace {

bool IsFormatCodeChar(wchar_t ch) {
    static const std::wstring_view kCodes = L"Ff~OoLlCHWQTPpSA{}";
    return kCodes.find(ch) != std::wstring_view::npos;
}

} // namespace

std::wstring CGetTextFromMText::GetPlainText(const std::wstring& contents) {
    std::wstring text = contents;
    if (!text.empty() && text[0] != L';')
        StrReplace(text, L"\\P", L"");
    if (text.find(L'\\') == std::wstring::npos)
        return text;

    m_marks.clear();
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L';')
            m_marks.push_back({static_cast<int>(i), 2});
        else if (text[i] == L'\\' && i + 1 < text.size() && IsFormatCodeChar(text[i + 1]))
            m_marks.push_back({static_cast<int>(i), 1});
    }
    if (m_marks.empty())
        return text;

    // Walked from the end as the codes nest; each mark removes a span of the
    // original text, collected first so that a long text costs one pass.
    std::vector<bool> removed(text.size(), false);
    auto Remove = [&removed](int nFrom, int nCount) {
        for (int i = nFrom; i < nFrom + nCount && i < static_cast<int>(removed.size()); ++i)
            removed[i] = true;
    };
    for (int k = static_cast<int>(m_marks.size()) - 1; k >= 0; --k) {
        const TypeSpecialSymbPos& mark = m_marks[k];
        if (mark.type == 1) {
            Remove(mark.pos, 2);
        } else if (k > 0) {
            const TypeSpecialSymbPos& before = m_marks[k - 1];
            if (before.type == 2) {
                Remove(mark.pos, 1);
            } else {
                Remove(before.pos, mark.pos - before.pos + 1); // the code and its argument
                --k;
            }
        }
    }
    std::wstring kept;
    kept.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i)
        if (!removed[i] && text[i] != L'{' && text[i] != L'}')
            kept += text[i];
    text.swap(kept);
    m_marks.clear();
    return StrTrim(text);
}
