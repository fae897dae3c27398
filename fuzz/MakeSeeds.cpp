// Writes the seed inputs that are made by the system's own writers: drawings, slides, DIBs, DWGs.
#include "base/FileSystem.h"
#include "base/SysPath.h"
#include "dxf/DxfWriter.h"
#include "base/SlideFile.h"

#include "PreviewBuilders.h"
#include "SampleDrawing.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: fuzz_seeds tests/data/fuzz\n");
        return 2;
    }
    std::wstring dir = FromOsPath(argv[1]) + L"\\";
    AcDbDatabase db;
    BuildSampleDrawing(db);
    std::string dxf;
    WriteDxf(db, dxf);
    FsWriteBinary(dir + L"dxf\\sample.dxf", dxf);

    CSlide slide;
    slide.m_nHighX = 639;
    slide.m_nHighY = 479;
    slide.m_vectors = {{0, 0, 100, 100, 1}, {100, 100, 200, 50, 7}, {200, 50, 300, 60, 3}};
    slide.m_fills = {{2, 1, {{10, 10}, {50, 10}, {30, 40}}}};
    FsWriteBinary(dir + L"slide\\portable.sld", WriteSlide(slide));
    FsWriteBinary(dir + L"slide\\high_first.sld", WriteSlide(slide, true));

    std::string dib8 =
        MakeDib8(8, 6, {0x000000, 0xFFFFFF, 0x0000FF}, [](int x, int y) { return (x + y) % 3; });
    std::string core = MakeDib8(
        4, 4, {0x000000, 0xFFFFFF}, [](int x, int) { return x % 2; }, true);
    std::string dib24 =
        MakeDib24(5, 3, [](int x, int y) { return static_cast<COLORREF>(x * 40 + y); });
    FsWriteBinary(dir + L"dib\\dib8.bin", std::string("\x01\x02", 2) + dib8);
    FsWriteBinary(dir + L"dib\\core.bin", std::string("\x00\x00", 2) + core);
    FsWriteBinary(dir + L"dib\\dib24.bin", std::string("\x03\x01", 2) + dib24);
    FsWriteBinary(dir + L"dwg_thumbnail\\dib8.dwg", MakeDwgBytes(dib8));
    FsWriteBinary(dir + L"dwg_thumbnail\\three.dwg", MakeDwgBytes(dib24, {1, 3, 2}));
    return 0;
}
