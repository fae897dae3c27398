// The drawing view's painting, overlays (crosshair, rubber band, window, drag) and mouse gestures.
#include "gui/DrawingView.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPolygonF>
#include <QString>
#include <QWheelEvent>

#include <charconv>
#include <cmath>

namespace {

const QColor kBackground(33, 40, 48);
const double kWheelStep = 1.2; // zoom factor of one wheel notch

std::string Number(double d) {
    char buf[32];
    auto res = std::to_chars(buf, buf + sizeof buf, d == 0 ? 0.0 : d); // no "-0"
    return std::string(buf, res.ptr);
}

} // namespace

std::wstring PointText(const AcGePoint3d& pt) {
    std::string s = Number(pt.x) + "," + Number(pt.y) + "," + Number(pt.z);
    return std::wstring(s.begin(), s.end());
}

std::wstring ShownPointText(const AcGePoint3d& pt) {
    return QStringLiteral("%1,%2,%3")
        .arg(pt.x, 0, 'f', 4)
        .arg(pt.y, 0, 'f', 4)
        .arg(pt.z, 0, 'f', 4)
        .toStdWString();
}

CDrawingView::CDrawingView(QWidget* pParent) : QWidget(pParent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::BlankCursor); // the crosshair is drawn instead
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void CDrawingView::SetScene(CDisplayScene* pScene) {
    m_pScene = pScene;
    Invalidate();
}

void CDrawingView::SetViewState(VIEW_STATE* pState) {
    m_pState = pState ? pState : &m_localState;
    Repaint();
}

void CDrawingView::Invalidate() {
    if (m_pScene)
        m_pScene->Invalidate();
    Repaint();
}

void CDrawingView::Repaint() {
    m_bCacheValid = false;
    update();
}

void CDrawingView::SettleHeight() {
    if (m_pState->dHeight > 0)
        return;
    if (!m_pScene || !ZoomViewToExtents(m_pScene->List(*m_pState), width(), height(), *m_pState))
        m_pState->dHeight = std::max(height(), 1); // an empty drawing: a unit per pixel
}

void CDrawingView::ZoomExtents() {
    if (m_pScene && ZoomViewToExtents(m_pScene->List(*m_pState), width(), height(), *m_pState))
        Repaint();
}

void CDrawingView::ZoomWindow(const AcGePoint3d& a, const AcGePoint3d& b) {
    if (ZoomViewToWindow(a, b, width(), height(), *m_pState))
        Repaint();
}

void CDrawingView::SetRequest(const INPUT_REQUEST& request) {
    m_request = request;
    m_bHasBase = request.pBase != nullptr;
    if (m_bHasBase)
        m_base = *request.pBase; // the caller's point dies with its call
    m_request.pBase = nullptr;
    m_bDragShown = false;
    m_bWindow = m_bWindowPressed = false;
    update();
}

QPointF CDrawingView::ToScreen(const AcGePoint3d& pt) const {
    auto s = Transform().ToScreen(pt);
    return {s.x, s.y};
}

bool CDrawingView::PickAt(const AcGePoint3d& pt, AcDbObjectId& id) const {
    if (!m_pScene)
        return false;
    QPointF s = ToScreen(pt);
    return m_pScene->HitTest(*m_pState, width(), height(), s.x(), s.y(), kPickBox * 1.5, id);
}

void CDrawingView::PaintScene() {
    SettleHeight();
    if (m_cache.size() != size())
        m_cache = QImage(size(), QImage::Format_RGB32);
    m_cache.fill(kBackground);
    QPainter painter(&m_cache);
    if (m_pState->bGrid)
        PaintGrid(painter);
    if (m_pScene)
        m_pScene->Paint(painter, *m_pState, width(), height(), m_bOrbiting);
    m_bCacheValid = true;
}

void CDrawingView::PaintGrid(QPainter& painter) {
    CViewTransform t = Transform();
    double step = m_dGridSpacing * t.Scale();
    if (!m_pState->IsPlan() || step < 8)
        return; // too dense to help, as the editor says "grid too dense"
    AcGePoint3d lo = t.ToWorld(0, height()), hi = t.ToWorld(width(), 0);
    painter.setPen(QPen(QColor(90, 100, 110), 0));
    for (double x = std::floor(lo.x / m_dGridSpacing) * m_dGridSpacing; x <= hi.x;
         x += m_dGridSpacing)
        for (double y = std::floor(lo.y / m_dGridSpacing) * m_dGridSpacing; y <= hi.y;
             y += m_dGridSpacing) {
            auto s = t.ToScreen(AcGePoint3d(x, y, 0));
            painter.drawPoint(QPointF(s.x, s.y));
        }
}

QImage CDrawingView::Render() {
    PaintScene();
    QImage image = m_cache.copy();
    QPainter painter(&image);
    PaintOverlay(painter);
    return image;
}

void CDrawingView::paintEvent(QPaintEvent*) {
    if (!m_bCacheValid)
        PaintScene();
    QPainter painter(this);
    painter.drawImage(0, 0, m_cache);
    PaintOverlay(painter);
}

void CDrawingView::PaintOverlay(QPainter& painter) {
    if (m_request.eKind == INPUT_REQUEST::Drag && m_bDragShown && m_pScene && m_request.pIds)
        m_pScene->PaintMoved(painter, *m_pState, width(), height(), *m_request.pIds, m_dragXform);
    if (!m_bCursorIn)
        return;
    QPointF c = m_cursor;
    painter.setPen(QPen(QColor(255, 255, 255, 200), 0));
    if (m_bHasBase && m_request.eKind == INPUT_REQUEST::Point)
        painter.drawLine(ToScreen(m_base), c);
    if (m_bHasBase && m_request.eKind == INPUT_REQUEST::Corner)
        painter.drawRect(QRectF(ToScreen(m_base), c).normalized());
    if (m_bWindow) {
        bool bCrossing = c.x() < m_windowStart.x();
        QPen pen(bCrossing ? QColor(80, 220, 80) : QColor(80, 140, 255), 0);
        pen.setStyle(bCrossing ? Qt::DashLine : Qt::SolidLine);
        painter.setPen(pen);
        painter.setBrush(bCrossing ? QColor(80, 220, 80, 40) : QColor(80, 140, 255, 40));
        painter.drawRect(QRectF(m_windowStart, c).normalized());
        painter.setBrush(Qt::NoBrush);
    }
    if (m_bSnapShown) {
        QPointF s = ToScreen(m_snap.pt);
        painter.setPen(QPen(QColor(255, 200, 0), 2));
        if (m_snap.eKind == SNAP_KIND::End)
            painter.drawRect(QRectF(s.x() - 5, s.y() - 5, 10, 10));
        else if (m_snap.eKind == SNAP_KIND::Mid)
            painter.drawPolygon(
                QPolygonF({{s.x(), s.y() - 6}, {s.x() - 6, s.y() + 5}, {s.x() + 6, s.y() + 5}}));
        else
            painter.drawEllipse(s, 6, 6);
    }
    painter.setPen(QPen(QColor(255, 255, 255), 0));
    painter.drawLine(QPointF(0, c.y()), QPointF(width(), c.y()));
    painter.drawLine(QPointF(c.x(), 0), QPointF(c.x(), height()));
    bool bPickBox = m_request.eKind == INPUT_REQUEST::EntityPick ||
                    m_request.eKind == INPUT_REQUEST::Selection ||
                    m_request.eKind == INPUT_REQUEST::Text;
    if (bPickBox)
        painter.drawRect(QRectF(c.x() - kPickBox, c.y() - kPickBox, 2 * kPickBox, 2 * kPickBox));
}

void CDrawingView::resizeEvent(QResizeEvent*) {
    Repaint();
}

void CDrawingView::Answer(const std::wstring& strText, bool bEcho, const std::wstring& strShown) {
    if (m_onAnswer)
        m_onAnswer(strText, bEcho, strShown);
}

AcGePoint3d CDrawingView::CursorPoint(const QPointF& pt) const {
    return m_bSnapShown ? m_snap.pt : ToWorld(pt);
}

void CDrawingView::UpdateSnap(const QPointF& pt) {
    INPUT_REQUEST::KIND k = m_request.eKind;
    bool bAsksPoint =
        k == INPUT_REQUEST::Point || k == INPUT_REQUEST::Corner || k == INPUT_REQUEST::Drag;
    m_bSnapShown = m_bSnapOn && bAsksPoint && m_pScene &&
                   FindSnapPoint(m_pScene->Database(), Transform(), pt.x(), pt.y(), 8, m_snap);
}

void CDrawingView::LeftClick(const QPointF& pt) {
    AcGePoint3d world = CursorPoint(pt);
    switch (m_request.eKind) {
    case INPUT_REQUEST::Point:
    case INPUT_REQUEST::Corner:
    case INPUT_REQUEST::EntityPick:
    case INPUT_REQUEST::Drag:
    case INPUT_REQUEST::Events:
        Answer(PointText(world), true, ShownPointText(world));
        return;
    case INPUT_REQUEST::Selection: {
        AcDbObjectId id;
        if (PickAt(world, id)) {
            Answer(PointText(world), true, ShownPointText(world));
            return;
        }
        m_bWindow = true; // nothing under the box: a window from here to the next click
        m_windowStart = pt;
        return;
    }
    case INPUT_REQUEST::Text:
        return;
    }
}

void CDrawingView::mousePressEvent(QMouseEvent* pEvent) {
    QPointF pt = pEvent->position();
    m_cursor = pt;
    Qt::MouseButton button = pEvent->button();
    if (button == Qt::MiddleButton || (button == Qt::LeftButton && m_eTool != TOOL::None)) {
        m_eDragButton = button;
        m_lastDrag = pt.toPoint();
        SettleHeight();
        m_bOrbiting = m_eTool == TOOL::Orbit ||
                      (button == Qt::MiddleButton && (pEvent->modifiers() & Qt::ShiftModifier));
        return;
    }
    if (button == Qt::RightButton) {
        Answer(m_request.eKind == INPUT_REQUEST::Events ? L"*Button*" : L"", false);
        return;
    }
    if (button != Qt::LeftButton)
        return;
    if (m_request.eKind == INPUT_REQUEST::Selection && m_bWindow) {
        m_bWindowPressed = true; // the second click of a window ends it on release
        return;
    }
    LeftClick(pt);
    if (m_bWindow)
        m_bWindowPressed = true;
}

void CDrawingView::mouseMoveEvent(QMouseEvent* pEvent) {
    QPointF pt = pEvent->position();
    m_cursor = pt;
    m_bCursorIn = true;
    AcGePoint3d world = ToWorld(pt);
    if (m_onCursor)
        m_onCursor(world);
    if (m_eDragButton != Qt::NoButton) {
        QPoint delta = pt.toPoint() - m_lastDrag;
        m_lastDrag = pt.toPoint();
        if (m_bOrbiting)
            OrbitView(*m_pState, -delta.x() * 0.01, delta.y() * 0.01);
        else if (m_eTool == TOOL::Zoom && m_eDragButton == Qt::LeftButton)
            ZoomViewAbout(*m_pState, width(), height(), width() / 2.0, height() / 2.0,
                          std::pow(1.01, -delta.y()));
        else
            PanView(*m_pState, height(), delta.x(), delta.y());
        Repaint();
        return;
    }
    UpdateSnap(pt);
    world = CursorPoint(pt);
    if (m_request.eKind == INPUT_REQUEST::Events)
        Answer(L"~" + PointText(world), false);
    if (m_request.eKind == INPUT_REQUEST::Drag && m_request.pSampler && *m_request.pSampler) {
        AcGeMatrix3d xform;
        m_bDragShown = (*m_request.pSampler)(world, xform);
        if (m_bDragShown)
            m_dragXform = xform;
    }
    update();
}

void CDrawingView::mouseReleaseEvent(QMouseEvent* pEvent) {
    if (pEvent->button() == m_eDragButton) {
        m_eDragButton = Qt::NoButton;
        m_bOrbiting = false;
        Repaint(); // an orbit's solids get their edges for the new direction
        return;
    }
    if (pEvent->button() != Qt::LeftButton || !m_bWindow || !m_bWindowPressed)
        return;
    QPointF end = pEvent->position();
    m_bWindowPressed = false;
    if ((end - m_windowStart).manhattanLength() < 3)
        return; // a click: the window ends at the next one
    m_bWindow = false;
    std::wstring strMode = end.x() >= m_windowStart.x() ? L"W " : L"C ";
    AcGePoint3d a = ToWorld(m_windowStart), b = ToWorld(end);
    Answer(strMode + PointText(a) + L" " + PointText(b), true,
           strMode + ShownPointText(a) + L" " + ShownPointText(b));
    update();
}

void CDrawingView::mouseDoubleClickEvent(QMouseEvent* pEvent) {
    if (pEvent->button() == Qt::MiddleButton) {
        ZoomExtents();
        return;
    }
    if (pEvent->button() == Qt::LeftButton && m_onDoubleClick &&
        m_onDoubleClick(ToWorld(pEvent->position())))
        return;
    mousePressEvent(pEvent);
}

void CDrawingView::wheelEvent(QWheelEvent* pEvent) {
    double notches = pEvent->angleDelta().y() / 120.0;
    if (notches == 0)
        return;
    QPointF pt = pEvent->position();
    SettleHeight();
    ZoomViewAbout(*m_pState, width(), height(), pt.x(), pt.y(), std::pow(kWheelStep, notches));
    Repaint();
}

void CDrawingView::keyPressEvent(QKeyEvent* pEvent) {
    if (pEvent->key() == Qt::Key_F3) {
        m_bSnapOn = !m_bSnapOn;
        m_bSnapShown = false;
        if (m_onModesChanged)
            m_onModesChanged();
        update();
        return;
    }
    if (pEvent->key() == Qt::Key_Escape) {
        m_bWindow = false;
        Answer(L"*Cancel*");
        return;
    }
    if (m_request.eKind == INPUT_REQUEST::Events && !pEvent->text().isEmpty()) {
        QChar ch = pEvent->text().at(0);
        Answer(ch == QChar(13) || ch == QChar(32) ? L"" : std::wstring(1, ch.unicode()), false);
        return;
    }
    if (m_onKey)
        m_onKey(pEvent);
}

void CDrawingView::leaveEvent(QEvent*) {
    m_bCursorIn = false;
    update();
}
