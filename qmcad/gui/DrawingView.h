// The drawing view: paints the scene, pans, zooms and orbits, and turns mouse input into answers.
#pragma once

#include "editor/EditorInput.h"
#include "gui/DisplayScene.h"
#include "gui/ObjectSnap.h"
#include "gui/ViewTransform.h"

#include <QImage>
#include <QPoint>
#include <QWidget>

#include <functional>
#include <string>

// Answers are command-line text (see CEditorInput): a click is a point, a
// window is "W a b" or "C a b", the other button is Enter or "*Button*".
class CDrawingView : public QWidget {
public:
    explicit CDrawingView(QWidget* pParent = nullptr);

    void SetScene(CDisplayScene* pScene);
    CDisplayScene* Scene() { return m_pScene; }
    // The view state shown and changed by the gestures: the document's own,
    // so that commands and slides see what the window shows. Null: a local one.
    void SetViewState(VIEW_STATE* pState);
    VIEW_STATE& State() { return *m_pState; }
    CViewTransform Transform() const { return {*m_pState, width(), height()}; }
    // The drawing changed: build and paint it anew.
    void Invalidate();
    // The view state changed: paint it anew.
    void Repaint();
    void ZoomExtents();
    void ZoomWindow(const AcGePoint3d& a, const AcGePoint3d& b);
    // What the command line waits for; Text when nothing in particular.
    void SetRequest(const INPUT_REQUEST& request);
    const INPUT_REQUEST& Request() const { return m_request; }
    // A tool of the view itself while a command waits: left drag pans,
    // zooms or orbits.
    enum class TOOL { None, Pan, Zoom, Orbit };
    void SetTool(TOOL eTool) { m_eTool = eTool; }

    // The model point under a widget pixel and back.
    AcGePoint3d ToWorld(const QPointF& pt) const { return Transform().ToWorld(pt.x(), pt.y()); }
    QPointF ToScreen(const AcGePoint3d& pt) const;
    // The entity under a model point, within the pick box.
    bool PickAt(const AcGePoint3d& pt, AcDbObjectId& id) const;
    // The whole view as an image, overlays included.
    QImage Render();

    // The answer, whether to echo it, and how to show it (empty: as it is).
    std::function<void(const std::wstring& strAnswer, bool bEcho, const std::wstring& strShown)>
        m_onAnswer;
    std::function<void(const AcGePoint3d& pt)> m_onCursor;
    std::function<void(QKeyEvent* pEvent)> m_onKey; // keys the view doesn't take

    static constexpr int kPickBox = 5; // half the pick box, pixels
    // Object snap to ends, middles and centres while points are asked (F3 toggles).
    bool m_bSnapOn = true;
    std::function<void()> m_onModesChanged;
    // A left double-click at a model point; true when it started something and is used up.
    std::function<bool(const AcGePoint3d& pt)> m_onDoubleClick;
    void SetGridSpacing(double d) { m_dGridSpacing = d; }

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void wheelEvent(QWheelEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void leaveEvent(QEvent* pEvent) override;

private:
    void PaintScene();
    void PaintGrid(QPainter& painter);
    void PaintOverlay(QPainter& painter);
    void Answer(const std::wstring& strText, bool bEcho = true, const std::wstring& strShown = {});
    void LeftClick(const QPointF& pt);
    // The point a click or the cursor gives: the snap point when one is shown.
    AcGePoint3d CursorPoint(const QPointF& pt) const;
    void UpdateSnap(const QPointF& pt);
    // A view without a height shows the drawing's extents: settled before use.
    void SettleHeight();

    CDisplayScene* m_pScene = nullptr;
    VIEW_STATE m_localState;
    VIEW_STATE* m_pState = &m_localState;
    INPUT_REQUEST m_request;
    AcGePoint3d m_base; // the request's base point, copied
    bool m_bHasBase = false;
    AcGeMatrix3d m_dragXform; // the sampler's last answer
    bool m_bDragShown = false;
    SNAP_POINT m_snap;
    bool m_bSnapShown = false;
    TOOL m_eTool = TOOL::None;

    QImage m_cache; // the scene as last painted
    bool m_bCacheValid = false;
    double m_dGridSpacing = 10.0;
    QPointF m_cursor{-1, -1};
    bool m_bCursorIn = false;
    // Mouse gestures: middle (or a tool's left) drag, a selection window.
    QPoint m_lastDrag;
    Qt::MouseButton m_eDragButton = Qt::NoButton;
    bool m_bOrbiting = false;
    QPointF m_windowStart;
    bool m_bWindow = false;        // a window is being drawn
    bool m_bWindowPressed = false; // the button that started it is still down
};

// A point as command-line text, exact in the shortest digits.
std::wstring PointText(const AcGePoint3d& pt);
// A point as the history shows it: four decimals.
std::wstring ShownPointText(const AcGePoint3d& pt);
