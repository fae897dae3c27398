// The DWG thumbnail preview: read straight from the file's bytes, painted in one of four modes.
#include "ui/DrawDwgPreview.h"

#include "host/DrawingPreview.h"
#include "host/HostServices.h"
#include "ui/DibPainter.h"
#include "ui/DwgThumbnail.h"

CDrawDwgPreview::CDrawDwgPreview(const std::wstring& strFile, CImageSurface* pWnd, int bKeepColours,
                                 double dAngle, int nDrawMode)
    : m_dAngle(dAngle), m_bKeepColours(bKeepColours), m_nDrawMode(nDrawMode), m_pWnd(pWnd),
      m_strFile(strFile) {}

CDrawDwgPreview::~CDrawDwgPreview() = default;

bool CDrawDwgPreview::Draw() {
    if (!m_pWnd)
        return false;
    m_hDib = ReadDwgThumbnail(m_strFile);
    if (!m_hDib)
        return false;
    return PaintDibPreview(*m_pWnd, std::move(m_hDib), m_bKeepColours, m_dAngle, m_nDrawMode,
                           m_pPalette);
}

bool ShowDwgPreview(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                    double dAngle, int nMode) {
    CDrawDwgPreview preview(strFile, pWnd, keepColours, dAngle, nMode);
    return preview.Draw();
}

bool ShowDwgPreviewStretched(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                             double dAngle) {
    return ShowDwgPreview(strFile, pWnd, keepColours, dAngle, DIB_MODE_STRETCH);
}
bool ShowDwgPreviewCentred(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                           double dAngle) {
    return ShowDwgPreview(strFile, pWnd, keepColours, dAngle, DIB_MODE_CENTRE);
}
bool ShowDwgPreviewReduced(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                           double dAngle) {
    return ShowDwgPreview(strFile, pWnd, keepColours, dAngle, DIB_MODE_REDUCE);
}
bool ShowDwgPreviewFitted(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                          double dAngle) {
    return ShowDwgPreview(strFile, pWnd, keepColours, dAngle, DIB_MODE_FIT);
}

int MakeDrawingPreview(AcDbDatabase* pDb) {
    constexpr int kNoPreviewMaker = 3;
    IDrawingPreview* pMaker = GetHostServices().pDrawingPreview;
    if (!pMaker || !pDb)
        return kNoPreviewMaker;
    return pMaker->MakeDrawingPreview(pDb, 0);
}
