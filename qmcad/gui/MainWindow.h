// The desktop's main window: document tabs, drawing view, command line, status bar and menus.
#pragma once

#include "editor/EditorHost.h"
#include "gui/CommandLinePane.h"
#include "gui/DisplayScene.h"
#include "gui/DrawingView.h"

#include <QMainWindow>

#include <functional>

#include <map>
#include <memory>
#include <vector>

class CGuiUi;
class QLabel;
class QMenu;
class QTabBar;

// The editor's window. It is the module's parent frame, the line source of
// the editor's loop (through its command-line pane) and the screen of the
// editor's input functions.
class CMainWindow : public QMainWindow, public IInputFeedback {
public:
    CMainWindow(CEditorHost& editor, CGuiUi& ui);
    ~CMainWindow() override;

    CDrawingView* View() { return m_pView; }
    CCommandLinePane* CommandLine() { return m_pCommandLine; }
    // The command a double-click on an entity starts (the suite's broker); empty for none.
    std::function<std::wstring(AcDbObjectId id)> m_onEntityDoubleClick;
    // Reads the editor's input from the command line and the mouse.
    CEditorHost::LINE_READ Read(std::wstring& strLine) { return m_pCommandLine->Read(strLine); }
    // Brings tabs, view, title and status words up to date with the editor.
    void Refresh();
    // The document's view set to plan or to the south-west isometric.
    void SetPlanView();
    void SetIsometricView();
    void SetShade(SHADE_MODE eShade);

    void BeginInput(const INPUT_REQUEST& request) override;
    void EndInput() override;

    // The recent files, newest first (OS paths).
    QStringList RecentFiles() const;

protected:
    void closeEvent(QCloseEvent* pEvent) override;

private:
    void BuildLayout();
    void ConnectEditor();
    void ConnectView();
    void BuildMenus();
    // "3DORBIT", "RTPAN" and "RTZOOM" with the mouse, until Enter or Esc.
    int RunInteractiveView(const std::wstring& strCommand);
    void ZoomWindow();
    bool IsIdle();
    // A command line as if typed, run when the loop is free.
    void Post(const std::wstring& strText);
    void OpenFile();
    void SaveFile(bool bAs);
    void AddRecent(const std::wstring& strPath);
    void FillRecentMenu();
    void SyncTabs();
    void OnTabClicked(int nIndex);
    void ShowDocument(AcApDocument* pDoc);
    void UpdateStatusWords();

    CEditorHost& m_editor;
    CGuiUi& m_ui;
    CDisplayScene m_scene;
    CDrawingView* m_pView;
    CCommandLinePane* m_pCommandLine;
    QTabBar* m_pTabs;
    QLabel* m_pCoords;
    QLabel* m_pModes;
    QMenu* m_pRecentMenu = nullptr;
    std::vector<INPUT_REQUEST> m_requests;
    std::vector<AcApDocument*> m_tabDocs;
    AcApDocument* m_pShown = nullptr;
    // What the drawing looked like at the last paint: a wait for input
    // repaints only when it changed (a hidden-line view is costly).
    struct DRAWING_MARK {
        AcDbDatabase* pDb = nullptr;
        uint64_t nHandseed = 0;
        size_t nUndoSteps = 0;
        bool operator==(const DRAWING_MARK&) const = default;
    };
    DRAWING_MARK m_lastMark;
    bool m_bSyncingTabs = false;
};
