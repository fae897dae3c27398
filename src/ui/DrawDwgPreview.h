// Paints the thumbnail stored in a DWG file into a preview surface.
#pragma once

#include "ui/DibFormat.h"
#include "base/ImageSurface.h"

#include <memory>
#include <string>

class AcDbDatabase;

// One object serves one paint.
class CDrawDwgPreview {
public:
    CDrawDwgPreview(const std::wstring& strFile, CImageSurface* pWnd, int bKeepColours,
                    double dAngle, int nDrawMode);
    virtual ~CDrawDwgPreview();
    CDrawDwgPreview(const CDrawDwgPreview&) = delete;
    CDrawDwgPreview& operator=(const CDrawDwgPreview&) = delete;

    // Reads the thumbnail and paints it; false when the file has none, and
    // then the surface is left as it was.
    bool Draw();

    double m_dAngle = 0;
    int m_bKeepColours = 0;
    int m_nDrawMode = 0;
    std::unique_ptr<CPalette> m_pPalette;
    HDIB m_hDib; // handed to the painter, which frees it; empty afterwards
    CImageSurface* m_pWnd = nullptr;
    std::wstring m_strFile;
};

// Makes the object, runs it, deletes it. True when a thumbnail was painted.
bool ShowDwgPreview(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                    double dAngle, int nMode);

// The same by mode; the library browsers use the centred one.
bool ShowDwgPreviewStretched(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                             double dAngle);
bool ShowDwgPreviewCentred(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                           double dAngle);
bool ShowDwgPreviewReduced(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                           double dAngle);
bool ShowDwgPreviewFitted(const std::wstring& strFile, CImageSurface* pWnd, int keepColours,
                          double dAngle);

// Asks the host to make the preview of a database, as its block module's
// "acdbMakeDrawingPreview" does. The host's answer, or 3 when the host
// cannot make previews or the database is null.
int MakeDrawingPreview(AcDbDatabase* pDb);
