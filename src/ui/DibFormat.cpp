// DIB header check, palette and rotation over a block of bytes; every read is bounds-checked.
#include "ui/DibFormat.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <stdexcept>

namespace {

constexpr uint32_t kInfoHeaderSize = 40;
constexpr uint32_t kCoreHeaderSize = 12;
constexpr uint32_t kTooLarge = 0x80000000u;

uint16_t Le16(const uint8_t* p) {
    return static_cast<uint16_t>(p[0] | (p[1] << 8));
}
uint32_t Le32(const uint8_t* p) {
    return static_cast<uint32_t>(p[0]) | (static_cast<uint32_t>(p[1]) << 8) |
           (static_cast<uint32_t>(p[2]) << 16) | (static_cast<uint32_t>(p[3]) << 24);
}
void PutLe16(uint8_t* p, uint32_t v) {
    p[0] = static_cast<uint8_t>(v);
    p[1] = static_cast<uint8_t>(v >> 8);
}
void PutLe32(uint8_t* p, uint32_t v) {
    PutLe16(p, v);
    PutLe16(p + 2, v >> 16);
}

uint32_t DefaultColourCount(unsigned nBitCount) {
    switch (nBitCount) {
    case 1:
        return 2;
    case 4:
        return 16;
    case 8:
        return 256;
    default:
        return 0;
    }
}

bool TableFits(const DIB_MEMORY& dib, const STRUCT_DIB_INFO& info) {
    uint64_t nEnd = info.nTableOffset + static_cast<uint64_t>(info.nColours) * info.nEntrySize;
    return nEnd <= dib.bytes.size();
}

} // namespace

HDIB DibAlloc(size_t nSize) {
    try {
        auto hDib = std::make_unique<DIB_MEMORY>();
        hDib->bytes.assign(nSize, 0);
        return hDib;
    } catch (const std::bad_alloc&) {
        return nullptr;
    } catch (const std::length_error&) {
        return nullptr;
    }
}

bool CheckDibHeader(const DIB_MEMORY& dib, STRUCT_DIB_INFO& info) {
    const std::vector<uint8_t>& b = dib.bytes;
    info = STRUCT_DIB_INFO{};
    if (b.size() < 4)
        return false;
    if (Le32(b.data()) == kInfoHeaderSize) {
        if (b.size() < kInfoHeaderSize)
            return false;
        info.nWidth = Le32(&b[4]);
        info.nHeight = Le32(&b[8]);
        info.nBitCount = Le16(&b[14]);
        info.nCompression = Le32(&b[16]);
        uint32_t nUsed = Le32(&b[32]);
        info.nColours = nUsed ? nUsed : DefaultColourCount(info.nBitCount);
        info.nEntrySize = 4;
        info.nTableOffset = kInfoHeaderSize;
    } else {
        if (b.size() < kCoreHeaderSize)
            return false;
        info.bCoreHeader = true;
        info.nWidth = Le16(&b[4]);
        info.nHeight = Le16(&b[6]);
        info.nBitCount = Le16(&b[10]);
        info.nColours = DefaultColourCount(info.nBitCount);
        info.nEntrySize = 3;
        info.nTableOffset = kCoreHeaderSize;
    }
    if (info.nWidth >= kTooLarge || info.nHeight >= kTooLarge)
        return false;
    info.nBitsOffset = info.nTableOffset + static_cast<size_t>(info.nColours) * info.nEntrySize;
    info.nStride =
        static_cast<size_t>((static_cast<uint64_t>(info.nWidth) * info.nBitCount + 31) / 32 * 4);
    return true;
}

bool IsDibPaintable(const DIB_MEMORY& dib, const STRUCT_DIB_INFO& info) {
    switch (info.nBitCount) {
    case 1:
    case 4:
    case 8:
    case 16:
    case 24:
    case 32:
        break;
    default:
        return false;
    }
    if (info.nCompression != 0 || info.nWidth == 0 || info.nHeight == 0)
        return false;
    if (info.nBitCount <= 8 && info.nColours == 0)
        return false;
    if (!TableFits(dib, info))
        return false;
    uint64_t nEnd = info.nBitsOffset + static_cast<uint64_t>(info.nStride) * info.nHeight;
    return nEnd <= dib.bytes.size();
}

bool CPalette::CreatePalette(const LOGPALETTE& log) {
    if (log.palPalEntry.empty())
        return false;
    m_log = log;
    m_bCreated = true;
    return true;
}

bool MakeDibPalette(DIB_MEMORY& dib, CPalette& palette, int keepColours) {
    STRUCT_DIB_INFO info;
    if (!CheckDibHeader(dib, info) || info.nColours == 0 || !TableFits(dib, info))
        return false;
    uint8_t* pTable = dib.bytes.data() + info.nTableOffset;
    // Table entries are blue, green, red (and a reserved byte under the 40-byte header).
    if (keepColours == 0) {
        int nWhiteFrom = info.bCoreHeader ? 764 : 765;
        for (uint32_t i = 0; i < info.nColours; ++i) {
            uint8_t* e = pTable + i * info.nEntrySize;
            int nSum = e[0] + e[1] + e[2];
            if (nSum == 0)
                e[0] = e[1] = e[2] = 255;
            else if (nSum >= nWhiteFrom)
                e[0] = e[1] = e[2] = 0;
        }
    }
    LOGPALETTE log;
    log.palVersion = 0x300;
    try {
        log.palPalEntry.resize(info.nColours);
    } catch (const std::exception&) {
        return false;
    }
    for (uint32_t i = 0; i < info.nColours; ++i) {
        const uint8_t* e = pTable + i * info.nEntrySize;
        log.palPalEntry[i] = PALETTEENTRY{e[2], e[1], e[0], 0};
    }
    return palette.CreatePalette(log);
}

namespace {

// Sine and cosine of the turn; the quarter turns are exact so that a
// rotated thumbnail keeps every pixel.
void TurnOf(double dAngle, double& dCos, double& dSin) {
    if (dAngle == 90 || dAngle == -270) {
        dCos = 0, dSin = -1;
    } else if (dAngle == 180 || dAngle == -180) {
        dCos = -1, dSin = 0;
    } else if (dAngle == 270 || dAngle == -90) {
        dCos = 0, dSin = 1;
    } else {
        double dRad = dAngle * -3.1415926 / 180;
        dCos = std::cos(dRad), dSin = std::sin(dRad);
    }
}

} // namespace

HDIB RotateDib(const DIB_MEMORY& dib, double dAngle) {
    STRUCT_DIB_INFO info;
    if (!CheckDibHeader(dib, info) || info.nBitCount != 8 || info.nColours != 256 ||
        !IsDibPaintable(dib, info) || !std::isfinite(dAngle))
        return nullptr;
    double c, s;
    TurnOf(dAngle, c, s);
    double w = info.nWidth, h = info.nHeight;
    double xs[4] = {0, w * c, -h * s, w * c - h * s};
    double ys[4] = {0, w * s, h * c, w * s + h * c};
    double minX = xs[0], maxX = xs[0], minY = ys[0], maxY = ys[0];
    for (int i = 1; i < 4; ++i) {
        minX = std::min(minX, xs[i]), maxX = std::max(maxX, xs[i]);
        minY = std::min(minY, ys[i]), maxY = std::max(maxY, ys[i]);
    }
    auto nNewW = static_cast<uint32_t>(maxX - minX + 0.5);
    auto nNewH = static_cast<uint32_t>(maxY - minY + 0.5);
    size_t nStride = (static_cast<size_t>(nNewW) + 3) / 4 * 4;
    size_t nBits = kInfoHeaderSize + 256 * 4;
    HDIB hOut = DibAlloc(nBits + nStride * nNewH);
    if (!hOut)
        return nullptr;
    uint8_t* out = hOut->bytes.data();
    PutLe32(out, kInfoHeaderSize);
    PutLe32(out + 4, nNewW);
    PutLe32(out + 8, nNewH);
    PutLe16(out + 12, 1);
    PutLe16(out + 14, 8);
    PutLe32(out + 20, static_cast<uint32_t>(nStride * nNewH));
    PutLe32(out + 32, 256);
    const uint8_t* pTable = dib.bytes.data() + info.nTableOffset;
    for (int i = 0; i < 256; ++i)
        std::memcpy(out + kInfoHeaderSize + i * 4, pTable + i * info.nEntrySize, 3);
    const uint8_t* src = dib.bytes.data() + info.nBitsOffset;
    for (uint32_t ty = 0; ty < nNewH; ++ty) {
        uint8_t* row = out + nBits + ty * nStride;
        double py = ty + minY + 0.5;
        for (uint32_t tx = 0; tx < nNewW; ++tx) {
            double px = tx + minX + 0.5;
            // Back from the target pixel's centre to the source; the source
            // pixel containing that point is the nearest one.
            double sx = std::floor(px * c + py * s);
            double sy = std::floor(-px * s + py * c);
            if (sx < 0 || sy < 0 || sx >= w || sy >= h)
                continue; // index 0, as zero-filled
            row[tx] = src[static_cast<size_t>(sy) * info.nStride + static_cast<size_t>(sx)];
        }
    }
    return hOut;
}
