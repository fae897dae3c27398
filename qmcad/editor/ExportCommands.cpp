// PANELEXPORT: the drawing's panels as cut plates for the workshop (STEP and flat DXF).
#include "editor/EditorHost.h"
#include "editor/NativeCommands.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "solid/PanelExport.h"

namespace {

// The folder of the current drawing, in the system's form with a final backslash.
std::wstring DrawingFolder(CEditorHost& ed) {
    SYSVAR_VALUE prefix;
    if (ed.m_vars.Get(L"DWGPREFIX", prefix) != RTNORM)
        return std::wstring();
    return prefix.strText;
}

int PanelExport(CEditorHost& ed) {
    CHostDocument* pDoc = ed.Doc();
    if (!pDoc)
        return RTERROR;
    std::wstring strDefault = DrawingFolder(ed), strAnswer;
    if (!ed.GetInput(Format(L"输出目录 <%s>: ", strDefault.c_str()), strAnswer))
        return RTCAN;
    std::wstring strDir = StrTrim(strAnswer);
    if (strDir.empty())
        strDir = strDefault;
    if (strDir.find(L'/') != std::wstring::npos)
        strDir = FromOsPath(WideToUtf8(strDir));
    if (!FsIsDirectory(strDir)) {
        ed.Print(Format(L"目录<%s>不存在。\n", strDir.c_str()));
        return RTERROR;
    }
    std::vector<std::wstring> lines;
    std::string strOsDir = ToOsPath(strDir);
    while (strOsDir.size() > 1 && strOsDir.back() == '/')
        strOsDir.pop_back();
    int nWritten = ExportPanels(*pDoc->database(), strOsDir, lines);
    for (const std::wstring& strLine : lines)
        ed.Print(strLine + L"\n");
    ed.Print(Format(L"已输出 %d 块面板。\n", nWritten));
    return nWritten > 0 ? RTNORM : RTERROR;
}

} // namespace

void AddExportCommands(CEditorHost& editor) {
    editor.AddCommand(L"PANELEXPORT", [&editor] { return PanelExport(editor); });
}
