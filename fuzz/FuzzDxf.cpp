// DXF files: read without a crash; what was read saves, and its second save is the first.
#include "FuzzSupport.h"

#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::vector<uint8_t> thumb;
    ReadDxfThumbnail(bytes, thumb);
    AcDbDatabase db(false, true);
    if (ReadDxf(db, bytes) != Acad::eOk)
        return 0;
    std::string first;
    WriteDxf(db, first);
    AcDbDatabase again(false, true);
    if (ReadDxf(again, first) != Acad::eOk)
        FuzzFail("a saved drawing does not load");
    std::string second;
    WriteDxf(again, second);
    AcDbDatabase third(false, true);
    if (ReadDxf(third, second) != Acad::eOk)
        FuzzFail("a second generation does not load");
    std::string stable;
    WriteDxf(third, stable);
    if (stable != second)
        FuzzFail("load and save is not stable");
    return 0;
}
