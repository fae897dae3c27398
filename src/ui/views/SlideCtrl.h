// The browser's cells as widgets: the slide control with its two properties, and the DWG preview
// frame.
#pragma once

#include "ui/SlidePainter.h"

#include <QFrame>
#include <QVariant>
#include <QWidget>

// Draws a slide file on a background colour, as the closed slide viewer
// did: property 1 the file, property 2 the colour. Mouse input goes to the
// parent as the three notifications of the cell.
class CSlideCtrl : public QWidget {
    Q_OBJECT
public:
    explicit CSlideCtrl(QWidget* pParent = nullptr);
    void SetProperty(int nDispId, const QVariant& value);
    QVariant GetProperty(int nDispId) const;
    const CSlideView& View() const { return m_view; }

signals:
    void LButtonDown();   // WM_USER+1
    void LButtonDblClk(); // WM_USER+2
    void RButtonDown();   // WM_USER+3

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;

private:
    CSlideView m_view;
};

// A static frame painted with the thumbnail stored in a drawing, in display mode 1.
class CDwgPreviewCell : public QFrame {
    Q_OBJECT
public:
    explicit CDwgPreviewCell(QWidget* pParent = nullptr);
    // The drawing, its selection flag (which keeps the thumbnail's colours) and the angle.
    void SetDrawing(const std::wstring& strFile, bool bSelected, double dAngle);
    const std::wstring& Drawing() const { return m_strFile; }

signals:
    void Clicked(bool bDouble);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;

private:
    std::wstring m_strFile;
    bool m_bSelected = false;
    double m_dAngle = 0.0;
};

// The picture of a painted surface, for widgets that blit previews.
QImage SurfaceToImage(const CImageSurface& surface);
