// A DIB read from or written to a .bmp file, and the preview that paints one.
#pragma once

#include "ui/DibFormat.h"
#include "base/ImageSurface.h"

#include <memory>
#include <string>

class CDib {
public:
    CDib() = default;
    CDib(const CDib&) = delete;
    CDib& operator=(const CDib&) = delete;

    // Reads a .bmp file: the 14-byte file header ("BM", size, offset of the
    // bits) and the DIB behind it. False, leaving the object empty, for
    // anything that is not a paintable bitmap.
    bool Read(const std::wstring& strFile);
    // Writes the DIB with its 14-byte file header.
    bool Write(const std::wstring& strFile) const;

    bool IsValid() const { return m_hDib != nullptr; }
    int Width() const;
    int Height() const;
    const DIB_MEMORY* GetDib() const { return m_hDib.get(); }
    const CPalette* GetPalette() const { return m_pPalette.get(); }

    void Attach(HDIB hDib); // takes a DIB over, remaking the palette
    HDIB Detach();          // hands the DIB over; the object is empty afterwards

private:
    HDIB m_hDib;
    std::unique_ptr<CPalette> m_pPalette;
};

// The preview of a .bmp file, in the same four modes as the DWG thumbnail.
class CDrawDibPreview {
public:
    CDrawDibPreview(const std::wstring& strFile, CImageSurface* pWnd, int bKeepColours,
                    double dAngle, int nDrawMode);
    virtual ~CDrawDibPreview() = default;

    bool Draw(); // false when the file holds no bitmap; the surface stays as it was

    double m_dAngle = 0;
    int m_bKeepColours = 0;
    int m_nDrawMode = 0;
    std::unique_ptr<CPalette> m_pPalette;
    CDib m_dib;
    CImageSurface* m_pWnd = nullptr;
    std::wstring m_strFile;
};
