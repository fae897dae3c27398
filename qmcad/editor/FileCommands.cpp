// File commands at the command line: NEW, OPEN, QSAVE, SAVE, SAVEAS and CLOSE, with the editor's
// version words, backup files and the file-name prompts used when dialogs are off.
#include "editor/EditorHost.h"
#include "editor/NativeCommands.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

namespace {

// The save version of a version word ("2000") or of DefaultFormatForSave ("12").
bool VersionOfWord(const std::wstring& strWord, AcDb::AcDbDwgVersion& version) {
    std::wstring w = StrMakeUpper(StrTrimLeft(StrTrim(strWord), L"_"));
    struct WORD {
        const wchar_t* pWord;
        const wchar_t* pFormat;
        AcDb::AcDbDwgVersion version;
    };
    static const WORD kWords[] = {{L"R14", L"8", AcDb::kDHL_1014},
                                  {L"2000", L"12", AcDb::kDHL_1015},
                                  {L"2004", L"24", AcDb::kDHL_1800},
                                  {L"2007", L"36", AcDb::kDHL_2100},
                                  {L"2010", L"48", AcDb::kDHL_2400}};
    for (const WORD& word : kWords)
        if (w == word.pWord || w == word.pFormat) {
            version = word.version;
            return true;
        }
    return false;
}

AcDb::AcDbDwgVersion DefaultVersion(CEditorHost& ed) {
    std::wstring strFormat;
    AcDb::AcDbDwgVersion version = AcDb::kDHL_CURRENT;
    if (ed.m_vars.GetEnv(L"DefaultFormatForSave", strFormat) == RTNORM)
        VersionOfWord(strFormat, version);
    return version;
}

// A file name typed at a prompt, in the system's form, with ".dwg" when it has no extension.
std::wstring DrawingPath(const std::wstring& strAnswer) {
    std::wstring strPath = StrTrim(strAnswer);
    if (strPath.size() >= 2 && strPath.front() == L'"' && strPath.back() == L'"')
        strPath = strPath.substr(1, strPath.size() - 2);
    if (strPath.find(L'/') != std::wstring::npos)
        strPath = FromOsPath(WideToUtf8(strPath));
    size_t slash = strPath.find_last_of(L'\\');
    size_t dot = strPath.find_last_of(L'.');
    if (!strPath.empty() &&
        (dot == std::wstring::npos || (slash != std::wstring::npos && dot < slash)))
        strPath += L".dwg";
    return strPath;
}

int Save(CEditorHost& ed, const std::wstring& strPath, AcDb::AcDbDwgVersion version) {
    CHostDocument* pDoc = ed.Doc();
    bool bBak = ed.m_vars.Short(L"ISAVEBAK") != 0;
    Acad::ErrorStatus es = pDoc->database()->saveAs(strPath.c_str(), bBak, version);
    if (es != Acad::eOk) {
        ed.Print(Format(L"无法保存图形“%s”。\n", strPath));
        return RTERROR;
    }
    pDoc->Rename(strPath);
    pDoc->Undo().SetSaved();
    return RTNORM;
}

int SaveAs(CEditorHost& ed, bool bAskVersion) {
    CHostDocument* pDoc = ed.Doc();
    if (!pDoc)
        return RTERROR;
    AcDb::AcDbDwgVersion version = DefaultVersion(ed);
    std::wstring strAnswer;
    if (bAskVersion) {
        if (!ed.GetInput(L"输入文件格式 "
                         L"[R14(LT98&LT97)/2000(LT2000)/2004(LT2004)/2007(LT2007)/2010(LT2010)/"
                         L"标准(S)/DXF(DXF)/模板(T)] <2010>: ",
                         strAnswer))
            return RTCAN;
        std::wstring w = StrMakeUpper(StrTrimLeft(StrTrim(strAnswer), L"_"));
        if (!w.empty() && w != L"S" && w != L"DXF" && w != L"T" && !VersionOfWord(w, version)) {
            ed.Print(L"需要选项关键字。\n");
            return RTERROR;
        }
    }
    if (!ed.GetInput(Format(L"保存图形为 <%s>: ", pDoc->fileName()), strAnswer))
        return RTCAN;
    std::wstring strPath = StrTrim(strAnswer).empty() ? pDoc->fileName() : DrawingPath(strAnswer);
    if (strPath.find(L'\\') == std::wstring::npos)
        strPath = FsGetCurrentDirectory() + L"\\" + strPath;
    if (FsExists(strPath)) {
        if (!ed.GetInput(Format(L"图形 %s 已存在。是否替换? [是(Y)/否(N)] <否>: ", strPath),
                         strAnswer))
            return RTCAN;
        if (!EqualsNoCase(StrTrim(strAnswer), L"Y") && !EqualsNoCase(StrTrim(strAnswer), L"_Y"))
            return RTCAN;
    }
    return Save(ed, strPath, version);
}

int QSave(CEditorHost& ed) {
    CHostDocument* pDoc = ed.Doc();
    if (!pDoc)
        return RTERROR;
    if (!pDoc->IsTitled())
        return SaveAs(ed, false);
    return Save(ed, pDoc->fileName(), DefaultVersion(ed));
}

int Open(CEditorHost& ed) {
    std::wstring strAnswer;
    if (!ed.GetInput(L"输入要打开的图形文件名: ", strAnswer))
        return RTCAN;
    std::wstring strPath = StrTrim(strAnswer);
    if (strPath.size() >= 2 && strPath.front() == L'"' && strPath.back() == L'"')
        strPath = strPath.substr(1, strPath.size() - 2);
    if (strPath.find(L'/') != std::wstring::npos) // a path typed the OS's way
        strPath = FromOsPath(WideToUtf8(strPath));
    if (!ed.m_docs.OpenDocument(strPath)) {
        ed.Print(Format(L"无法打开“%s”。\n", strPath));
        return RTERROR;
    }
    return RTNORM;
}

int New(CEditorHost& ed) {
    if (ed.m_vars.Short(L"FILEDIA") == 0) {
        std::wstring strTemplate;
        if (!ed.GetInput(L"输入样板文件名或 [. (无)] <acadiso.dwt>: ", strTemplate))
            return RTCAN;
    }
    return ed.m_docs.NewDocument() ? RTNORM : RTERROR;
}

int Close(CEditorHost& ed) {
    CHostDocument* pDoc = ed.Doc();
    if (!pDoc)
        return RTERROR;
    if (pDoc->Undo().IsModified()) {
        std::wstring strAnswer;
        if (!ed.GetInput(Format(L"是否将改动保存到 %s? [是(Y)/否(N)] <是>: ", pDoc->fileName()),
                         strAnswer))
            return RTCAN;
        std::wstring a = StrMakeUpper(StrTrimLeft(StrTrim(strAnswer), L"_"));
        if (a.empty() || a == L"Y") {
            if (QSave(ed) != RTNORM)
                return RTERROR;
        } else if (a != L"N") {
            return RTCAN;
        }
    }
    ed.m_docs.CloseDocument(pDoc);
    return RTNORM;
}

} // namespace

void AddFileCommands(CEditorHost& editor) {
    editor.AddCommand(L"NEW", [&editor] { return New(editor); });
    editor.AddCommand(L"OPEN", [&editor] { return Open(editor); });
    editor.AddCommand(L"CLOSE", [&editor] { return Close(editor); });
    editor.AddCommand(L"QSAVE", [&editor] { return QSave(editor); });
    editor.AddCommand(L"SAVE", [&editor] { return SaveAs(editor, false); });
    editor.AddCommand(L"SAVEAS", [&editor] { return SaveAs(editor, true); });
}
