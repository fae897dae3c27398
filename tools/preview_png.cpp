// Paints DWG thumbnails and slides into 120x90 browser cells and writes each as a PNG file to look
// at.
#include "ui/DrawDwgPreview.h"
#include "ui/SlidePainter.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <png.h>

namespace {

constexpr int kCellWidth = 120, kCellHeight = 90;
constexpr COLORREF kSelected = 0x828282, kCellFace = RGB(240, 240, 240);

bool WritePng(const CImageSurface& cell, const std::wstring& strPath) {
    std::FILE* fp = FsOpenStdio(strPath, "wb");
    if (!fp)
        return false;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    bool bOk = info && !setjmp(png_jmpbuf(png));
    if (bOk) {
        png_init_io(png, fp);
        png_set_IHDR(png, info, cell.Width(), cell.Height(), 8, PNG_COLOR_TYPE_RGBA,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
        for (int y = 0; y < cell.Height(); ++y)
            png_write_row(png, cell.Bytes() + static_cast<size_t>(y) * cell.Width() * 4);
        png_write_end(png, nullptr);
    }
    png_destroy_write_struct(&png, &info);
    std::fclose(fp);
    return bOk;
}

// A panel face as the host's MSLIDE would give it: outline, five round cutouts in
// five colours, a filled name plate.
std::wstring WriteDemoSlide(const std::wstring& strDir) {
    std::vector<STRUCT_VIEW_VECTOR> v = {
        {0, 0, 600, 0, 7}, {600, 0, 600, 400, 7}, {600, 400, 0, 400, 7}, {0, 400, 0, 0, 7}};
    for (int h = 0; h < 5; ++h)
        for (int i = 0; i < 24; ++i) {
            double a = i * M_PI / 12, b = (i + 1) * M_PI / 12, cx = 80 + h * 110;
            v.push_back({cx + 35 * std::cos(a), 260 + 35 * std::sin(a), cx + 35 * std::cos(b),
                         260 + 35 * std::sin(b), 1 + h});
        }
    CSlide slide;
    MakeViewSlide(v, -20, -20, 620, 420, 800, 600, slide);
    slide.m_fills.push_back({3, 0, {{200, 80}, {600, 80}, {600, 160}, {200, 160}}});
    std::wstring strPath = strDir + L"demo.sld";
    return WriteSlideFile(strPath, slide) ? strPath : L"";
}

// One or two PNGs per file; the count of those written.
int PaintFile(const std::wstring& strFile, const std::wstring& strOutDir) {
    std::wstring strName = strFile.substr(strFile.rfind(L'\\') + 1);
    std::wstring strExt = StrRight(strName, 4);
    CImageSurface cell(kCellWidth, kCellHeight, kCellFace);
    int nWritten = 0;
    if (EqualsNoCase(strExt, L".dwg")) {
        if (ShowDwgPreviewCentred(strFile, &cell, 0, 0))
            nWritten += WritePng(cell, strOutDir + strName + L".png");
    } else if (EqualsNoCase(strExt, L".sld")) {
        if (PaintSlideFile(cell, strFile, 0))
            nWritten += WritePng(cell, strOutDir + strName + L".png");
        if (PaintSlideFile(cell, strFile, kSelected))
            nWritten += WritePng(cell, strOutDir + strName + L"-selected.png");
    }
    if (nWritten == 0)
        std::fprintf(stderr, "preview_png: nothing painted from %s\n", WideToUtf8(strFile).c_str());
    return nWritten;
}

} // namespace

int main(int argc, char** argv) {
    bool bDemo = argc > 1 && std::strcmp(argv[1], "--demo") == 0;
    if (argc < 2 + bDemo) {
        std::fputs("usage: preview_png [--demo] OUTDIR [FILE.dwg|FILE.sld|DIR]...\n", stderr);
        return 2;
    }
    std::wstring strOutDir = FromOsPath(argv[1 + bDemo]) + L"\\";
    FsCreateDirectory(strOutDir);
    std::vector<std::wstring> files;
    if (bDemo)
        files.push_back(WriteDemoSlide(strOutDir));
    for (int i = 2 + bDemo; i < argc; ++i) {
        std::wstring strPath = FromOsPath(argv[i]);
        std::vector<FS_FIND_DATA> found;
        if (!FsIsDirectory(strPath))
            files.push_back(strPath);
        else if (FsFind(strPath + L"\\*.*", found))
            for (const FS_FIND_DATA& f : found)
                if (!f.bDirectory)
                    files.push_back(strPath + L"\\" + f.strName);
    }
    int nWritten = 0;
    for (const std::wstring& strFile : files)
        nWritten += PaintFile(strFile, strOutDir);
    std::printf("preview_png: %d cells written to %s\n", nWritten, argv[1 + bDemo]);
    return nWritten > 0 ? 0 : 1;
}
