// Command-line side of the ezdxf oracle: writes the sample drawing, dumps a file as JSON, copies a
// file.
#include "dxf/DxfCodec.h"

#include "DbDump.h"
#include "SampleDrawing.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "copy") == 0) { // read and save again
        acdbSetFileCodec(&GetDxfCodec());
        AcDbDatabase db(false, true);
        std::wstring to = FromOsPath(argv[3]);
        return db.readDwgFile(FromOsPath(argv[2]).c_str()) == Acad::eOk &&
                       db.saveAs(to.c_str()) == Acad::eOk
                   ? 0
                   : 1;
    }
    if (argc != 3)
        return 2;
    acdbSetFileCodec(&GetDxfCodec());
    std::wstring path = FromOsPath(argv[2]);
    if (std::strcmp(argv[1], "write") == 0) {
        AcDbDatabase db;
        BuildSampleDrawing(db);
        return db.saveAs(path.c_str()) == Acad::eOk ? 0 : 1;
    }
    if (std::strcmp(argv[1], "dump") == 0) {
        AcDbDatabase db(false, true);
        Acad::ErrorStatus es = db.readDwgFile(path.c_str());
        if (es != Acad::eOk) {
            std::fprintf(stderr, "read failed: %d\n", static_cast<int>(es));
            return 1;
        }
        std::string json = DumpDatabase(db);
        std::fwrite(json.data(), 1, json.size(), stdout);
        return 0;
    }
    return 2;
}
