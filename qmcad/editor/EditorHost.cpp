// Command loop of the reference host and its native commands.
#include "editor/EditorHost.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "editor/LispReader.h"

#include <cwctype>

namespace {

const wchar_t* const kPrompt = L"命令: ";

std::vector<std::wstring> SplitWords(const std::wstring& strLine) {
    std::vector<std::wstring> words;
    size_t i = 0;
    while (i < strLine.size()) {
        while (i < strLine.size() && std::iswspace(strLine[i]))
            ++i;
        size_t start = i;
        while (i < strLine.size() && !std::iswspace(strLine[i]))
            ++i;
        if (i > start)
            words.push_back(strLine.substr(start, i - start));
    }
    return words;
}

} // namespace

CEditorHost::CEditorHost(IHostUi& ui) : m_docs(m_vars), m_ui(ui) {
    m_docs.m_runGuarded = [this](const std::function<void()>& call) {
        RunGuarded(m_strActive.empty() ? std::wstring(L"(应用程序)") : m_strActive, call);
    };
    m_vars.DefineComputed(L"CMDNAMES", [this] { return SYSVAR_VALUE::Text(m_strActive); });
    m_vars.DefineComputed(L"DWGTITLED", [this] {
        CHostDocument* pDoc = m_docs.Current();
        return SYSVAR_VALUE::Short(pDoc && pDoc->IsTitled() ? 1 : 0);
    });
    m_vars.DefineComputed(L"DWGNAME", [this] {
        CHostDocument* pDoc = m_docs.Current();
        std::wstring strName = pDoc ? pDoc->fileName() : L"";
        return SYSVAR_VALUE::Text(StrMid(strName, StrReverseFind(strName, L'\\') + 1));
    });
    m_vars.DefineComputed(L"DWGPREFIX", [this] {
        CHostDocument* pDoc = m_docs.Current();
        std::wstring strName = pDoc ? pDoc->fileName() : L"";
        int nSlash = StrReverseFind(strName, L'\\');
        return SYSVAR_VALUE::Text(nSlash < 0 ? L"" : StrLeft(strName, nSlash + 1));
    });
    AddNativeCommands();
}

HOST_SERVICES CEditorHost::Services() {
    HOST_SERVICES services;
    services.pUi = &m_ui;
    services.pEditor = this;
    services.pCommands = &m_commands;
    services.pDocuments = &m_docs;
    services.pAutomation = &m_automation;
    services.pInput = &m_input;
    return services;
}

void CEditorHost::SetSource(LineSource source, bool bEchoInput) {
    m_source = std::move(source);
    m_bEchoInput = bEchoInput;
}

bool CEditorHost::NextLine(std::wstring& strLine, bool& bEcho) {
    bool bPrompted = false;
    for (;;) {
        m_docs.RunApplicationContextQueue();
        if (CHostDocument* pDoc = m_docs.Current(); pDoc && !pDoc->m_posted.empty()) {
            strLine = pDoc->m_posted.front().strText;
            bEcho = pDoc->m_posted.front().bEcho;
            pDoc->m_posted.pop_front();
            return true;
        }
        if (!m_source || m_bQuit)
            return false;
        if (!m_bEchoInput && !bPrompted)
            Print(kPrompt);
        bPrompted = true;
        bEcho = m_bEchoInput;
        LINE_READ read = m_source(strLine);
        if (read != LINE_READ::Woken)
            return read == LINE_READ::Line;
    }
}

void CEditorHost::RunLoop() {
    m_bQuit = false;
    while (!m_bQuit) {
        std::wstring strLine;
        bool bEcho = false;
        if (!NextLine(strLine, bEcho))
            break;
        ExecuteLine(strLine, bEcho);
    }
}

void CEditorHost::ExecuteLine(const std::wstring& strLine, bool bEcho) {
    std::wstring strText = StrTrim(strLine);
    if (bEcho)
        Print(Format(L"%s%s\n", kPrompt, strText));
    if (strText.empty())
        return; // Enter on an empty line repeats nothing
    if (strText.front() == L'(') {
        LISP_FORM form = ReadLispForm(strText);
        if (!form.bOk) {
            Print(Format(L"; 错误: 无法读取的表达式 %s\n", strText));
            return;
        }
        if (form.bCancel)
            return; // nothing is active between lines: the cancel has nothing to end
        m_pending.assign(form.words.begin() + 1, form.words.end());
        RunCommand(form.words.front());
        m_pending.clear();
        return;
    }
    std::vector<std::wstring> words = SplitWords(strText);
    m_pending.assign(words.begin() + 1, words.end());
    RunCommand(words.front());
    // A space ends an input as Enter does: what the command left is the next command.
    while (!m_pending.empty() && !m_bQuit) {
        std::wstring strNext = m_pending.front();
        m_pending.pop_front();
        RunCommand(strNext);
    }
}

// The editor outlives any command: what escapes one ends it with one line,
// and the command loop goes on with the documents as they are.
void CEditorHost::RunGuarded(const std::wstring& strName, const std::function<void()>& body) {
    std::wstring strWhat;
    try {
        body();
        return;
    } catch (const std::bad_alloc&) {
        strWhat = L"内存不足";
    } catch (const std::exception& e) {
        strWhat = Utf8ToWide(e.what());
    } catch (...) {
        strWhat = L"未知异常";
    }
    try {
        Print(Format(L"; 错误: 命令 %s 异常中止（%s）\n", strName, strWhat));
    } catch (...) {
        // Nothing is left to tell it with.
    }
}

void CEditorHost::RunCommand(const std::wstring& strName) {
    const HOST_COMMAND* pCommand = m_commands.Find(strName);
    if (!pCommand) {
        Print(Format(L"未知命令“%s”。按 F1 查看帮助。\n", StrMakeUpper(strName)));
        return;
    }
    std::wstring strOuter = m_strActive;
    m_strActive = pCommand->strGlobal;
    bool bSession = (pCommand->nFlags & ACRX_CMD_SESSION) != 0;
    if (bSession)
        m_docs.EnterApplicationContext();
    auto function = pCommand->function; // the command may unregister itself
    RunGuarded(pCommand->strGlobal, function);
    if (bSession)
        m_docs.LeaveApplicationContext();
    m_strActive = strOuter;
    m_docs.RunApplicationContextQueue();
}

bool CEditorHost::GetInput(const std::wstring& strPrompt, std::wstring& strAnswer) {
    if (!m_pending.empty()) {
        strAnswer = m_pending.front();
        m_pending.pop_front();
        return true;
    }
    bool bPrompted = false;
    for (;;) {
        if (CHostDocument* pDoc = m_docs.Current(); pDoc && !pDoc->m_posted.empty()) {
            strAnswer = pDoc->m_posted.front().strText;
            pDoc->m_posted.pop_front();
            return true;
        }
        if (!bPrompted)
            Print(strPrompt);
        bPrompted = true;
        LINE_READ read = m_source ? m_source(strAnswer) : LINE_READ::End;
        if (read == LINE_READ::End)
            return false;
        if (read == LINE_READ::Line)
            break;
    }
    if (m_bEchoInput)
        Print(strAnswer + L"\n");
    return true;
}

bool CEditorHost::RunTextNow(CHostDocument* pDoc, const std::wstring& strText) {
    auto isOpen = [this, pDoc] {
        for (AcApDocument* p : m_docs.documents())
            if (p == pDoc)
                return true;
        return false;
    };
    if (!isOpen() || !m_docs.activateDocument(pDoc))
        return false;
    std::deque<POSTED_LINE> waiting;
    waiting.swap(pDoc->m_posted);
    m_docs.sendStringToExecute(pDoc, strText, false, true, true);
    LineSource source = std::move(m_source);
    m_source = nullptr;
    while (isOpen() && !pDoc->m_posted.empty() && !m_bQuit) {
        POSTED_LINE line = pDoc->m_posted.front();
        pDoc->m_posted.pop_front();
        ExecuteLine(line.strText, line.bEcho);
    }
    m_source = std::move(source);
    if (isOpen())
        pDoc->m_posted.insert(pDoc->m_posted.end(), waiting.begin(), waiting.end());
    return true;
}

int CEditorHost::GetVar(const std::wstring& strName, SYSVAR_VALUE& value) {
    return m_vars.Get(strName, value);
}
int CEditorHost::SetVar(const std::wstring& strName, const SYSVAR_VALUE& value) {
    return m_vars.Set(strName, value);
}
int CEditorHost::GetEnv(const std::wstring& strName, std::wstring& strValue) {
    return m_vars.GetEnv(strName, strValue);
}
int CEditorHost::SetEnv(const std::wstring& strName, const std::wstring& strValue) {
    m_vars.SetEnv(strName, strValue);
    return RTNORM;
}

int CEditorHost::Command(const std::vector<std::wstring>& words) {
    if (words.empty())
        return RTNORM;
    const HOST_COMMAND* pCommand = m_commands.Find(words.front());
    if (!pCommand)
        return RTERROR;
    // The nested command sees only its own answers.
    std::deque<std::wstring> outer;
    outer.swap(m_pending);
    m_pending.assign(words.begin() + 1, words.end());
    if (m_vars.Short(L"CMDECHO") != 0)
        Print(Format(L"%s%s\n", kPrompt, words.front()));
    RunCommand(words.front());
    m_pending.swap(outer);
    return RTNORM;
}

int CEditorHost::SyncFileOpen(const std::wstring& strPath) {
    return m_docs.OpenDocument(strPath) ? RTNORM : RTERROR;
}

bool CEditorHost::SetMouseFilter(bool bOn) {
    m_bMouseFiltered = bOn;
    return true;
}

void CEditorHost::AddNativeCommands() {
    m_commands.AddNative(L"ZOOM", [this] {
        std::wstring strOption;
        GetInput(L"指定窗口的角点，输入比例因子 (nX 或 nXP)，或者 [全部(A)/范围(E)/窗口(W)]: ",
                 strOption);
    });
    m_commands.AddNative(L"SETVAR", [this] {
        std::wstring strName, strValue;
        if (!GetInput(L"输入变量名: ", strName) || !GetInput(L"输入新值: ", strValue))
            return;
        SYSVAR_VALUE value;
        if (m_vars.Get(strName, value) != RTNORM) {
            Print(Format(L"未知变量名“%s”。\n", strName));
            return;
        }
        if (value.nType == RTSHORT)
            value.nShort = static_cast<int>(std::wcstol(strValue.c_str(), nullptr, 10));
        else
            value.strText = strValue;
        if (m_vars.Set(strName, value) != RTNORM)
            Print(Format(L"变量“%s”是只读的。\n", strName));
    });
    m_commands.AddNative(L"NEW", [this] { m_docs.NewDocument(); });
    m_commands.AddNative(L"OPEN", [this] {
        std::wstring strPath;
        if (!GetInput(L"输入要打开的图形文件名: ", strPath))
            return;
        if (strPath.find(L'/') != std::wstring::npos) // a path typed the OS's way
            strPath = FromOsPath(WideToUtf8(strPath));
        if (!m_docs.OpenDocument(strPath))
            Print(Format(L"无法打开“%s”。\n", strPath));
    });
    m_commands.AddNative(L"CLOSE", [this] { m_docs.CloseDocument(m_docs.Current()); });
    m_commands.AddNative(L"QUIT", [this] { m_bQuit = true; });
    m_commands.AddNative(L"EXIT", [this] { m_bQuit = true; });
}
