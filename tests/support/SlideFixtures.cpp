// Slide test builders: known drawings, slide bounds, recording views of the slide dialogs.
#include "SlideFixtures.h"

#include "DbBuilders.h"

#include "base/SlideFile.h"
#include "dxf/DxfCodec.h"
#include "host/db/AcDb.h"

#include <algorithm>
#include <memory>

void WriteRectDrawing(const std::wstring& strPath, double x, double y, double w, double h) {
    acdbSetFileCodec(&GetDxfCodec());
    AcDbDatabase db(true);
    const AcGePoint3d a{x, y, 0}, b{x + w, y, 0}, c{x + w, y + h, 0}, d{x, y + h, 0};
    for (auto [p, q] : {std::pair{a, b}, {b, c}, {c, d}, {d, a}, {a, c}, {b, d}})
        AppendToModelSpace(db, new AcDbLine(p, q));
    db.saveAs(strPath.c_str());
}

SLIDE_BOUNDS ReadSlideBounds(const std::wstring& strPath) {
    SLIDE_BOUNDS bounds;
    CSlide slide;
    if (!ReadSlideFile(strPath, slide) || slide.m_vectors.empty())
        return bounds;
    bounds.bRead = true;
    bounds.nHighX = slide.m_nHighX;
    bounds.nHighY = slide.m_nHighY;
    bounds.nVectors = slide.m_vectors.size();
    bounds.nMinX = bounds.nMinY = 1 << 30;
    bounds.nMaxX = bounds.nMaxY = -1;
    for (const STRUCT_SLIDE_VECTOR& v : slide.m_vectors) {
        bounds.nMinX = std::min({bounds.nMinX, v.nFromX, v.nToX});
        bounds.nMaxX = std::max({bounds.nMaxX, v.nFromX, v.nToX});
        bounds.nMinY = std::min({bounds.nMinY, v.nFromY, v.nToY});
        bounds.nMaxY = std::max({bounds.nMaxY, v.nFromY, v.nToY});
    }
    return bounds;
}

int CRecordingZoomInView::DoModal(CDlgZoomIn& dlg) {
    dlg.OnInitDialog();
    s_shown.push_back(m_strSlide);
    dlg.PreTranslateMessage(ZOOMIN_MESSAGE::KeyEnter);
    return m_nResult;
}

CRecordingZoomInScope::CRecordingZoomInScope() {
    CRecordingZoomInView::s_shown.clear();
    SetZoomInViewFactory([] { return std::make_unique<CRecordingZoomInView>(); });
}

CRecordingZoomInScope::~CRecordingZoomInScope() {
    SetZoomInViewFactory(nullptr);
}

bool CRecordingBatchView::Create(CDlgBatchSld& dlg, const std::wstring&) {
    m_pDlg = &dlg;
    return true;
}

void CRecordingBatchView::Pump() {
    if (s_onPump && m_pDlg)
        s_onPump(*m_pDlg);
}

CRecordingBatchScope::CRecordingBatchScope() {
    CRecordingBatchView::s_onPump = nullptr;
    CRecordingBatchView::s_bCancelEnabled = true;
    CRecordingBatchView::s_nDestroyed = 0;
    SetBatchSldViewFactory([] { return std::make_unique<CRecordingBatchView>(); });
}

CRecordingBatchScope::~CRecordingBatchScope() {
    SetBatchSldViewFactory(nullptr);
    CRecordingBatchView::s_onPump = nullptr;
}
