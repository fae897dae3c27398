// Slide files: read in both byte orders and the old header; what was read writes and reads back.
#include "FuzzSupport.h"

#include "base/SlideFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CSlide slide;
    if (!ReadSlide(std::string(reinterpret_cast<const char*>(data), size), slide))
        return 0;
    CSlide back;
    if (!ReadSlide(WriteSlide(slide), back))
        FuzzFail("a written slide does not read");
    if (back.m_vectors.size() != slide.m_vectors.size())
        FuzzFail("a slide loses vectors when written");
    return 0;
}
