// DIB blocks (thumbnails and .bmp files): header checks, palette, rotation and every paint mode.
#include "FuzzSupport.h"

#include "ui/DibPainter.h"
#include "base/ImageSurface.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    // The first two bytes choose the mode and the angle, the rest is the block.
    int nMode = data[0] % 4;
    double dAngle = (data[1] % 8) * 45.0;
    DIB_MEMORY dib;
    dib.bytes.assign(data + 2, data + size);
    STRUCT_DIB_INFO info;
    if (CheckDibHeader(dib, info) && IsDibPaintable(dib, info)) {
        CPalette palette;
        DIB_MEMORY copy = dib;
        MakeDibPalette(copy, palette, data[1] & 1);
        RotateDib(dib, dAngle);
    }
    auto hDib = DibAlloc(dib.bytes.size());
    if (!hDib)
        return 0;
    hDib->bytes = dib.bytes;
    CImageSurface surface(64, 48);
    std::unique_ptr<CPalette> pPalette;
    PaintDibPreview(surface, std::move(hDib), data[1] & 1, dAngle, nMode, pPalette);
    return 0;
}
