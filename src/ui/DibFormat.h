// Device-independent bitmaps in memory: the block, its header, its palette and its rotation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

// A movable memory block as the platform's global allocator hands it out:
// header, colour table and bits of one DIB. The handle owns the block, so
// passing it on (std::move) is the only way to hand over the duty to free it.
struct DIB_MEMORY {
    std::vector<uint8_t> bytes;
};
using HDIB = std::unique_ptr<DIB_MEMORY>;

// A zero-filled block of nSize bytes, or null when memory is short.
HDIB DibAlloc(size_t nSize);

// What a painter needs to know of a DIB's header.
struct STRUCT_DIB_INFO {
    bool bCoreHeader = false; // the older 12-byte header with 16-bit sizes
    uint32_t nWidth = 0;      // below 2^31
    uint32_t nHeight = 0;     // below 2^31; rows are stored bottom-up
    unsigned nBitCount = 0;
    uint32_t nCompression = 0; // 0 for plain pixels
    uint32_t nColours = 0;     // entries in the colour table
    size_t nEntrySize = 4;     // 4 under a 40-byte header, 3 under a core header
    size_t nTableOffset = 0;
    size_t nBitsOffset = 0;
    size_t nStride = 0; // bytes per row, padded to four
};

// Reads the header at the start of the block: a first dword of 40 is the
// 40-byte info header, anything else the core header. False when the block
// is too short for the header or a size is 2^31 or more.
bool CheckDibHeader(const DIB_MEMORY& dib, STRUCT_DIB_INFO& info);

// True when the colour table and every row lie inside the block and the
// pixel format is one the painter draws (1, 4, 8, 16, 24 or 32 bits, plain).
bool IsDibPaintable(const DIB_MEMORY& dib, const STRUCT_DIB_INFO& info);

struct PALETTEENTRY {
    uint8_t peRed = 0;
    uint8_t peGreen = 0;
    uint8_t peBlue = 0;
    uint8_t peFlags = 0;
};
struct LOGPALETTE {
    uint16_t palVersion = 0x300;
    std::vector<PALETTEENTRY> palPalEntry;
};

// A logical palette; the RGBA surfaces need none, but it is made and kept as
// the platform would, and tells which colours the table held.
class CPalette {
public:
    bool CreatePalette(const LOGPALETTE& log);
    bool IsCreated() const { return m_bCreated; }
    const LOGPALETTE& GetLogPalette() const { return m_log; }

private:
    LOGPALETTE m_log;
    bool m_bCreated = false;
};

// Builds the palette from the DIB's colour table. With keepColours 0 the
// table itself is changed first, black to white and white to black, so that
// a drawing made on a black screen shows on a white cell. False (and no
// palette) for a bit count other than 1, 4 or 8 without a count of colours
// used, or a table that does not fit in the block.
bool MakeDibPalette(DIB_MEMORY& dib, CPalette& palette, int keepColours);

// A copy of an 8-bit, 256-colour DIB turned by dAngle degrees, with a 40-byte
// header and the same colour table; null for any other DIB.
HDIB RotateDib(const DIB_MEMORY& dib, double dAngle);
