// The desktop test driver: a timer that feeds steps to the editor's waits.
#include "GuiDriver.h"

#include "host/HostServices.h"

#include <QApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QTest>
#include <QTimer>

CGuiTestEditor::CGuiTestEditor() {
    m_editor.m_docs.NewDocument();
    SetHostServices(m_editor.Services());
    m_pWindow = std::make_unique<CMainWindow>(m_editor, m_ui);
    m_pWindow->resize(900, 700);
    m_pWindow->show();
    m_pView = m_pWindow->View();
    m_pWindow->Refresh();
    VIEW_STATE& view = m_pView->State();
    view.direction = {0, 0, 1};
    view.dHeight = m_pView->height() / 4.0;
    view.target = AcGePoint3d(m_pView->width() / 8.0, m_pView->height() / 8.0, 0);
}

CGuiTestEditor::~CGuiTestEditor() {
    m_pWindow.reset();
    SetHostServices(HOST_SERVICES{});
}

void CGuiTestEditor::Run() {
    QTimer timer;
    int nTicks = 0;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        if (++nTicks > 5000) { // a step that never lets the editor wait: give up
            m_pWindow->close();
            return;
        }
        if (!m_pWindow->CommandLine()->IsWaitingIdle())
            return;
        if (m_steps.empty()) {
            m_pWindow->close();
            return;
        }
        auto step = std::move(m_steps.front());
        m_steps.pop_front();
        step();
    });
    timer.start(1);
    m_editor.SetSource([this](std::wstring& s) { return m_pWindow->Read(s); }, false);
    m_editor.RunLoop();
}

AcDbDatabase* CGuiTestEditor::Database() {
    return acdbHostApplicationServices()->workingDatabase();
}

QPoint CGuiTestEditor::Pixel(const AcGePoint3d& pt) {
    return m_pView->ToScreen(pt).toPoint();
}

void CGuiTestEditor::Click(const AcGePoint3d& pt, Qt::MouseButton button) {
    Move(pt);
    QTest::mouseClick(m_pView, button, {}, Pixel(pt));
}

void CGuiTestEditor::Move(const AcGePoint3d& pt) {
    QPointF px = Pixel(pt);
    QMouseEvent event(QEvent::MouseMove, px, m_pView->mapToGlobal(px), Qt::NoButton, Qt::NoButton,
                      Qt::NoModifier);
    QApplication::sendEvent(m_pView, &event);
}

void CGuiTestEditor::Type(const QString& text) {
    QLineEdit* pInput = m_pWindow->CommandLine()->Input();
    pInput->setText(text);
    emit pInput->returnPressed();
}
