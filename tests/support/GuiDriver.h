// Drives the desktop in tests: steps run one by one whenever the editor waits for input.
#pragma once

#include "gui/GuiUi.h"
#include "gui/MainWindow.h"

#include <QPoint>

#include <deque>
#include <functional>
#include <memory>

// An editor with its main window, offscreen, a new drawing open and the
// view fixed: plan, target at the origin's corner, 4 pixels a unit.
class CGuiTestEditor {
public:
    CGuiTestEditor();
    ~CGuiTestEditor();

    // Queues a step; it runs when the editor next waits with nothing to read.
    void Then(std::function<void()> step) { m_steps.push_back(std::move(step)); }
    // Runs the editor's loop through the steps, then closes the window.
    void Run();

    // The pixel of a model point, and input sent there.
    QPoint Pixel(const AcGePoint3d& pt);
    void Click(const AcGePoint3d& pt, Qt::MouseButton button = Qt::LeftButton);
    void Move(const AcGePoint3d& pt);
    void Type(const QString& text); // into the command line, then Enter
    AcDbDatabase* Database();

    CGuiUi m_ui;
    CEditorHost m_editor{m_ui};
    std::unique_ptr<CMainWindow> m_pWindow;
    CDrawingView* m_pView = nullptr;

private:
    std::deque<std::function<void()>> m_steps;
};
