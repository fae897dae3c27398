// Renders a drawing file to a PNG picture through the reference host's display list, as the
// editor's window would show it zoomed to its extents.
#include "dxf/DxfCodec.h"
#include "solid/OcctModeler.h"
#include "view/SlideOut.h"

#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs(
            "usage: drawing_png DRAWING OUT.png [WIDTH HEIGHT] [--shaded] [--view top|seiso|...]\n",
            stderr);
        return 2;
    }
    int nWidth = 1024, nHeight = 768;
    VIEW_STATE view;
    for (int i = 3; i < argc; ++i) {
        if (std::strcmp(argv[i], "--shaded") == 0)
            view.eShade = SHADE_MODE::Gouraud;
        else if (std::strcmp(argv[i], "--view") == 0 && i + 1 < argc)
            PresetViewDirection(Utf8ToWide(argv[++i]), view.direction);
        else if (i + 1 < argc && std::atoi(argv[i]) > 0) {
            nWidth = std::atoi(argv[i]);
            nHeight = std::atoi(argv[++i]);
        }
    }
    acdbSetFileCodec(&GetDxfCodec());
    acdbSetSolidModeler(&GetOcctModeler());
    AcDbDatabase db(false, true);
    if (db.readDwgFile(FromOsPath(argv[1]).c_str()) != Acad::eOk) {
        std::fprintf(stderr, "drawing_png: cannot read %s\n", argv[1]);
        return 1;
    }
    CDisplayList list;
    BuildDisplayList(db, view, &GetOcctModeler(), list);
    ZoomViewToExtents(list, nWidth, nHeight, view);
    CImageSurface surface;
    PaintProjectedView(surface, ProjectDisplayList(list, view, nWidth, nHeight),
                       RGB(255, 255, 255));
    if (!WritePngFile(FromOsPath(argv[2]), surface)) {
        std::fprintf(stderr, "drawing_png: cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
