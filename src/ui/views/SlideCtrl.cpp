// The cell widgets: slides and drawing thumbnails painted into a surface and blitted.
#include "ui/views/SlideCtrl.h"

#include "ui/DrawDwgPreview.h"

#include <QImage>
#include <QMouseEvent>
#include <QPainter>

QImage SurfaceToImage(const CImageSurface& surface) {
    QImage image(surface.Bytes(), surface.Width(), surface.Height(), surface.Width() * 4,
                 QImage::Format_RGBA8888);
    return image.copy(); // the surface goes away with the paint
}

CSlideCtrl::CSlideCtrl(QWidget* pParent) : QWidget(pParent) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void CSlideCtrl::SetProperty(int nDispId, const QVariant& value) {
    if (nDispId == CSlideView::DISPID_SLIDE_FILE) {
        // Set again, the same file is read anew: a slide may have been remade.
        m_view.SetSlideFile(value.toString().toStdWString());
    } else if (nDispId == CSlideView::DISPID_BACKGROUND) {
        COLORREF colour = value.toUInt();
        if (colour == m_view.GetBackground())
            return;
        m_view.SetBackground(colour);
    } else {
        return;
    }
    update();
}

QVariant CSlideCtrl::GetProperty(int nDispId) const {
    if (nDispId == CSlideView::DISPID_SLIDE_FILE)
        return QString::fromStdWString(m_view.GetSlideFile());
    if (nDispId == CSlideView::DISPID_BACKGROUND)
        return QVariant::fromValue<uint>(m_view.GetBackground());
    return {};
}

void CSlideCtrl::paintEvent(QPaintEvent*) {
    CImageSurface surface(width(), height(), m_view.GetBackground());
    m_view.Paint(surface); // a missing or broken file leaves the background
    QPainter painter(this);
    painter.drawImage(0, 0, SurfaceToImage(surface));
}

void CSlideCtrl::mousePressEvent(QMouseEvent* pEvent) {
    if (pEvent->button() == Qt::LeftButton)
        emit LButtonDown();
    else if (pEvent->button() == Qt::RightButton)
        emit RButtonDown();
}

void CSlideCtrl::mouseDoubleClickEvent(QMouseEvent* pEvent) {
    if (pEvent->button() == Qt::LeftButton)
        emit LButtonDblClk();
}

CDwgPreviewCell::CDwgPreviewCell(QWidget* pParent) : QFrame(pParent) {
    setFrameStyle(QFrame::Box | QFrame::Sunken);
}

void CDwgPreviewCell::SetDrawing(const std::wstring& strFile, bool bSelected, double dAngle) {
    if (strFile == m_strFile && bSelected == m_bSelected && dAngle == m_dAngle)
        return;
    m_strFile = strFile;
    m_bSelected = bSelected;
    m_dAngle = dAngle;
    update();
}

void CDwgPreviewCell::paintEvent(QPaintEvent* pEvent) {
    CImageSurface surface(width(), height(), RGB(255, 255, 255));
    if (!m_strFile.empty())
        ShowDwgPreviewCentred(m_strFile, &surface, m_bSelected, m_dAngle);
    {
        QPainter painter(this);
        painter.drawImage(0, 0, SurfaceToImage(surface));
    }
    QFrame::paintEvent(pEvent);
}

void CDwgPreviewCell::mousePressEvent(QMouseEvent* pEvent) {
    if (pEvent->button() == Qt::LeftButton)
        emit Clicked(false);
}

void CDwgPreviewCell::mouseDoubleClickEvent(QMouseEvent* pEvent) {
    if (pEvent->button() == Qt::LeftButton)
        emit Clicked(true);
}
