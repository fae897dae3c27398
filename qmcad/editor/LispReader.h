// The subset of the editor's LISP that posted command strings use.
#pragma once

#include <string>
#include <vector>

// Read: "(command)" in any case with no arguments cancels the active
// command; "(command "W1" "W2" ...)" runs W1 with the other words as its
// answers. Arguments are strings (escapes \\ \" \n \t \r), numbers and the
// symbol nil, which stands for an empty answer. Anything else is refused.
struct LISP_FORM {
    bool bOk = false;
    bool bCancel = false;
    std::vector<std::wstring> words;
    std::wstring strError;
};

LISP_FORM ReadLispForm(const std::wstring& strText);
