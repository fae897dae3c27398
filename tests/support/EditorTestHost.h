// A headless editor for tests: the reference host's command loop with the test host's boxes and
// paths.
#pragma once

#include "TestHost.h"
#include "app/ModelessWindow.h"
#include "editor/EditorHost.h"

#include <deque>
#include <string>

class CEditorTestHost : public CTestHost {
public:
    CEditorTestHost();
    // Runs the lines as a script would, with everything posted meanwhile.
    void Run(std::deque<std::wstring> lines);
    // Makes the lines the answers of the next prompts, without running the loop.
    void Feed(std::deque<std::wstring> lines);

    CEditorHost m_editor;
};

// Writes an empty drawing with the host's codec.
void WriteEmptyDrawing(const std::wstring& strPath);

// A browser that records what the frame does to it.
class CFakeBrowser : public ILibraryBrowser {
public:
    bool Create() override { return m_bCreatable; }
    void Show() override { m_strLog += L"show;"; }
    void Activate() override { m_strLog += L"activate;"; }
    bool IsIconic() override { return m_bIconic; }
    void Restore() override { m_strLog += L"restore;"; }
    void DestroyWindow() override { ++m_nDestroyed; }
    void ReloadList() override { m_strLog += L"reload;"; }
    void SelectListItem(const std::wstring& strName) override {
        m_strLog += L"select " + strName + L";";
    }

    bool m_bCreatable = true;
    bool m_bIconic = false;
    std::wstring m_strLog;
    static inline int m_nDestroyed = 0;
};
