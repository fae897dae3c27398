// Reader of (command ...) forms.
#include "editor/LispReader.h"

#include "base/StrUtil.h"

#include <cwctype>

namespace {

bool ReadString(const std::wstring& s, size_t& i, std::wstring& out) {
    ++i; // opening quote
    while (i < s.size() && s[i] != L'"') {
        wchar_t c = s[i++];
        if (c != L'\\') {
            out.push_back(c);
            continue;
        }
        if (i >= s.size())
            return false;
        wchar_t e = s[i++];
        out.push_back(e == L'n' ? L'\n' : e == L't' ? L'\t' : e == L'r' ? L'\r' : e);
    }
    if (i >= s.size())
        return false;
    ++i; // closing quote
    return true;
}

bool ReadAtom(const std::wstring& s, size_t& i, std::wstring& out) {
    size_t start = i;
    while (i < s.size() && !std::iswspace(s[i]) && s[i] != L'(' && s[i] != L')' && s[i] != L'"')
        ++i;
    std::wstring atom = s.substr(start, i - start);
    if (EqualsNoCase(atom, L"nil")) {
        out.clear();
        return true;
    }
    wchar_t* end = nullptr;
    std::wcstod(atom.c_str(), &end);
    if (atom.empty() || !end || *end != 0)
        return false; // symbols are not evaluated
    out = atom;
    return true;
}

LISP_FORM Refuse(const std::wstring& strWhy) {
    LISP_FORM form;
    form.strError = strWhy;
    return form;
}

} // namespace

LISP_FORM ReadLispForm(const std::wstring& strText) {
    std::wstring s = StrTrim(strText);
    if (s.size() < 2 || s.front() != L'(' || s.back() != L')')
        return Refuse(L"not a form");
    size_t i = 1;
    auto skip = [&] {
        while (i < s.size() && std::iswspace(s[i]))
            ++i;
    };
    skip();
    size_t start = i;
    while (i < s.size() && std::iswalpha(s[i]))
        ++i;
    if (!EqualsNoCase(s.substr(start, i - start), L"command"))
        return Refuse(L"only (command ...) is read");
    LISP_FORM form;
    for (skip(); i < s.size() - 1; skip()) {
        std::wstring word;
        bool bRead = s[i] == L'"' ? ReadString(s, i, word) : ReadAtom(s, i, word);
        if (!bRead)
            return Refuse(L"bad argument");
        form.words.push_back(word);
    }
    if (i != s.size() - 1)
        return Refuse(L"unbalanced form");
    form.bOk = true;
    form.bCancel = form.words.empty();
    return form;
}
