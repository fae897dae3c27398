// The slide script: the same three lines wherever a slide is made through automation.
#include "library/SlideScript.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/HostAutomation.h"
#include "shared/fileops/FileOps.h"

std::wstring SlidePathOf(const std::wstring& strDwgPath) {
    return RemoveFileExt(strDwgPath) + L".sld";
}

std::vector<std::wstring> SlideScriptLines(const std::wstring& strSlidePath) {
    std::vector<std::wstring> lines = {
        L"(Command \"GRID\" \"OFF\")",
        Format(L"(Command \"MSLIDE\" \"%s\") ", strSlidePath),
        L"(Command \"GRID\" \"ON\")",
    };
    for (std::wstring& strLine : lines)
        StrReplace(strLine, L"\\", L"\\\\");
    return lines;
}

bool SendSlideScript(IAcadDocument* pDoc, const std::wstring& strSlidePath) {
    if (!pDoc)
        return false;
    bool bAll = true;
    for (const std::wstring& strLine : SlideScriptLines(strSlidePath))
        bAll = pDoc->SendCommand(strLine) && bAll;
    return bAll;
}
