// DWG files' preview sections: the thumbnail found is a DIB the painter can take.
#include "FuzzSupport.h"

#include "ui/DibPainter.h"
#include "ui/DwgThumbnail.h"
#include "base/ImageSurface.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    HDIB hDib = ReadDwgThumbnail(FuzzFile(L"input.dwg", data, size));
    if (!hDib)
        return 0;
    CImageSurface surface(120, 90);
    std::unique_ptr<CPalette> pPalette;
    PaintDibPreview(surface, std::move(hDib), 0, 0.0, 0, pPalette);
    return 0;
}
