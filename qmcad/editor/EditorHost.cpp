// Command loop of the reference host and its native commands.
#include "editor/EditorHost.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "editor/LispReader.h"
#include "editor/NativeCommands.h"
#include "solid/OcctModeler.h"

#include <cwctype>
#include <exception>

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
    acdbSetSolidModeler(&GetOcctModeler()); // solids are OpenCASCADE bodies
    m_vars.m_onChange = [this](const std::wstring& strKey, const SYSVAR_VALUE& old) {
        if (CHostDocument* pDoc = m_docs.Current())
            pDoc->Undo().NoteVar(strKey, old);
    };
    m_vars.DefineBound(
        L"DIMLFAC",
        [this] {
            SYSVAR_VALUE v;
            v.nType = RTREAL;
            v.dReal = Db() ? Db()->dimlfac() : 1.0;
            return v;
        },
        [this](const SYSVAR_VALUE& v) {
            if (!Db() || v.dReal == 0)
                return false;
            Db()->setDimlfac(v.dReal);
            return true;
        });
    m_vars.DefineBound(
        L"CLAYER",
        [this] {
            std::wstring strName = L"0";
            if (Db())
                acdbWithObject<AcDbLayerTableRecord>(
                    Db()->clayer(), [&](const AcDbLayerTableRecord& r) { strName = r.name(); });
            return SYSVAR_VALUE::Text(strName);
        },
        [this](const SYSVAR_VALUE& v) {
            AcDbLayerTable* pTable = nullptr;
            if (!Db() || Db()->getLayerTable(pTable, AcDb::kForRead) != Acad::eOk)
                return false;
            AcDbObjectId id;
            bool bFound = pTable->getAt(v.strText, id) == Acad::eOk;
            pTable->close();
            return bFound && Db()->setClayer(id) == Acad::eOk;
        });
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
        // While the editor waits for a command, the windows' handlers run in
        // the application context, as the modeless windows of the suite expect.
        LINE_READ read;
        {
            struct CContext {
                CDocManager& docs;
                explicit CContext(CDocManager& d) : docs(d) { docs.EnterApplicationContext(); }
                ~CContext() { docs.LeaveApplicationContext(); }
            } context(m_docs);
            read = m_source(strLine);
        }
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
    if (m_onDrawingChanged)
        m_onDrawingChanged();
}

// The editor outlives any command: what escapes one ends it with one line,
// and the command loop goes on with the documents as they are.
bool CEditorHost::RunGuarded(const std::wstring& strName, const std::function<void()>& body) {
    std::wstring strWhat;
    try {
        body();
        return true;
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
    return false;
}

void CEditorHost::AddCommand(const std::wstring& strName, std::function<int()> function) {
    bool bRollBack = !EqualsNoCase(strName, L"UNDO"); // undo works on the log itself
    m_commands.AddNative(strName, [this, function, bRollBack] {
        CHostDocument* pDoc = m_docs.Current();
        int nResult = RTERROR;
        try {
            nResult = function();
        } catch (const std::exception& e) {
            Print(Format(L"; 错误: %s\n", Utf8ToWide(e.what())));
        }
        m_nResult = nResult;
        if (nResult == RTNORM || !bRollBack || !pDoc || pDoc != m_docs.Current())
            return;
        // A failed command leaves the drawing as it found it.
        pDoc->Undo().RollBack(m_vars, pDoc->m_view);
    });
}

int CEditorHost::RunCommand(const std::wstring& strName) {
    const HOST_COMMAND* pCommand = m_commands.Find(strName);
    if (!pCommand) {
        Print(Format(L"未知命令“%s”。按 F1 查看帮助。\n", StrMakeUpper(strName)));
        return RTERROR;
    }
    std::wstring strOuter = m_strActive;
    m_strActive = pCommand->strGlobal;
    bool bSession = (pCommand->nFlags & ACRX_CMD_SESSION) != 0;
    if (bSession)
        m_docs.EnterApplicationContext();
    auto function = pCommand->function; // the command may unregister itself
    // Every command is an undo step of the document it starts in (the undo
    // command itself only works on the log); one that throws is taken back whole.
    CHostDocument* pDoc = EqualsNoCase(pCommand->strGlobal, L"UNDO") ? nullptr : m_docs.Current();
    if (pDoc)
        pDoc->Undo().BeginCommand(pDoc->m_view);
    m_nResult = RTNORM;
    bool bCompleted = RunGuarded(pCommand->strGlobal, function);
    int nResult = bCompleted ? m_nResult : RTERROR;
    for (AcApDocument* p : m_docs.documents())
        if (p == pDoc) {
            if (!bCompleted)
                pDoc->Undo().RollBack(m_vars, pDoc->m_view);
            pDoc->Undo().EndCommand();
        }
    if (bSession)
        m_docs.LeaveApplicationContext();
    m_strActive = strOuter;
    m_docs.RunApplicationContextQueue();
    return nResult;
}

bool CEditorHost::GetInput(const std::wstring& strPrompt, std::wstring& strAnswer) {
    bool bPause = !m_pending.empty() && m_pending.front() == L"\\";
    if (bPause)
        m_pending.pop_front();
    if (!m_pending.empty() && !bPause) {
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
    int nResult = RunCommand(words.front());
    m_pending.swap(outer);
    return nResult;
}

int CEditorHost::SyncFileOpen(const std::wstring& strPath) {
    return m_docs.OpenDocument(strPath) ? RTNORM : RTERROR;
}

bool CEditorHost::SetMouseFilter(bool bOn) {
    m_bMouseFiltered = bOn;
    return true;
}

void CEditorHost::AddNativeCommands() {
    m_commands.AddNative(L"SETVAR", [this] {
        std::wstring strName, strValue;
        if (!GetInput(L"输入变量名: ", strName) || !GetInput(L"输入新值: ", strValue))
            return;
        SYSVAR_VALUE value;
        if (m_vars.Get(strName, value) != RTNORM) {
            Print(Format(L"未知变量名“%s”。\n", strName));
            m_nResult = RTERROR;
            return;
        }
        wchar_t* end = nullptr;
        if (value.nType == RTSHORT) {
            value.nShort = static_cast<int>(std::wcstol(strValue.c_str(), &end, 10));
        } else if (value.nType == RTREAL) {
            value.dReal = std::wcstod(strValue.c_str(), &end);
        } else if (value.nType == RT3DPOINT || value.nType == RTPOINT) {
            AcGePoint3d pt;
            if (!ParsePointText(strValue, nullptr, pt)) {
                Print(L"需要点。\n");
                m_nResult = RTERROR;
                return;
            }
            value.pt[0] = pt.x, value.pt[1] = pt.y, value.pt[2] = pt.z;
        } else {
            value.strText = strValue;
        }
        if (end && (end == strValue.c_str() || *end)) {
            Print(L"需要数值。\n");
            m_nResult = RTERROR;
            return;
        }
        if (m_vars.Set(strName, value) != RTNORM) {
            Print(Format(L"变量“%s”是只读的。\n", strName));
            m_nResult = RTERROR;
        }
    });
    m_commands.AddNative(L"QUIT", [this] { m_bQuit = true; });
    m_commands.AddNative(L"EXIT", [this] { m_bQuit = true; });
    AddSolidCommands(*this);
    AddDrawingCommands(*this);
    AddViewCommands(*this);
    AddFileCommands(*this);
    AddExportCommands(*this);
}
