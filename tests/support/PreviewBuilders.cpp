// Byte builders for DIBs and the thumbnail section of DWG-shaped files.
#include "PreviewBuilders.h"

namespace {

void Put16(std::string& s, unsigned v) {
    s += static_cast<char>(v & 0xFF);
    s += static_cast<char>((v >> 8) & 0xFF);
}
void Put32(std::string& s, uint32_t v) {
    Put16(s, v & 0xFFFF);
    Put16(s, v >> 16);
}
void Patch32(std::string& s, size_t at, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        s[at + i] = static_cast<char>((v >> (8 * i)) & 0xFF);
}

std::string InfoHeader(int w, int h, int nBits, uint32_t nSizeImage, uint32_t nUsed) {
    std::string s;
    Put32(s, 40), Put32(s, w), Put32(s, h), Put16(s, 1), Put16(s, nBits);
    Put32(s, 0), Put32(s, nSizeImage), Put32(s, 2835), Put32(s, 2835), Put32(s, nUsed);
    Put32(s, 0);
    return s;
}

} // namespace

std::string MakeDib8(int nWidth, int nHeight, const std::vector<COLORREF>& table,
                     const std::function<int(int, int)>& pixel, bool bCoreHeader) {
    int nStride = (nWidth + 3) / 4 * 4;
    std::string s;
    if (bCoreHeader) {
        Put32(s, 12), Put16(s, nWidth), Put16(s, nHeight), Put16(s, 1), Put16(s, 8);
    } else {
        s = InfoHeader(nWidth, nHeight, 8, nStride * nHeight, 256);
    }
    for (int i = 0; i < 256; ++i) {
        COLORREF c = i < static_cast<int>(table.size()) ? table[i] : 0;
        s += static_cast<char>(GetBValue(c));
        s += static_cast<char>(GetGValue(c));
        s += static_cast<char>(GetRValue(c));
        if (!bCoreHeader)
            s += '\0';
    }
    for (int row = nHeight - 1; row >= 0; --row) {
        std::string line(nStride, '\0');
        for (int x = 0; x < nWidth; ++x)
            line[x] = static_cast<char>(pixel(x, row));
        s += line;
    }
    return s;
}

std::string MakeDib24(int nWidth, int nHeight, const std::function<COLORREF(int, int)>& pixel) {
    int nStride = (nWidth * 3 + 3) / 4 * 4;
    std::string s = InfoHeader(nWidth, nHeight, 24, nStride * nHeight, 0);
    for (int row = nHeight - 1; row >= 0; --row) {
        std::string line(nStride, '\0');
        for (int x = 0; x < nWidth; ++x) {
            COLORREF c = pixel(x, row);
            line[3 * x] = static_cast<char>(GetBValue(c));
            line[3 * x + 1] = static_cast<char>(GetGValue(c));
            line[3 * x + 2] = static_cast<char>(GetRValue(c));
        }
        s += line;
    }
    return s;
}

HDIB ToDib(const std::string& bytes) {
    HDIB h = DibAlloc(bytes.size());
    std::copy(bytes.begin(), bytes.end(), h->bytes.begin());
    return h;
}

std::string MakeDwgBytes(const std::string& image, const std::vector<int>& codes) {
    static const unsigned char kSentinel[16] = {0x1F, 0x25, 0x6D, 0x07, 0xD4, 0x36, 0x28, 0x28,
                                                0x9D, 0x57, 0xCA, 0x3F, 0x9D, 0x44, 0x10, 0x2B};
    std::string s = "AC1015";
    s.resize(13, '\0');
    Put32(s, 0); // section offset, patched below
    s.resize(40, '\0');
    Patch32(s, 13, static_cast<uint32_t>(s.size()));
    s.append(reinterpret_cast<const char*>(kSentinel), 16);
    Put32(s, 0);
    s += static_cast<char>(codes.size());
    size_t nEntries = s.size();
    s.resize(nEntries + 9 * codes.size(), '\0');
    for (size_t i = 0; i < codes.size(); ++i) {
        std::string data = codes[i] == 1 ? std::string(80, '\0') : image;
        s[nEntries + 9 * i] = static_cast<char>(codes[i]);
        Patch32(s, nEntries + 9 * i + 1, static_cast<uint32_t>(s.size()));
        Patch32(s, nEntries + 9 * i + 5, static_cast<uint32_t>(data.size()));
        s += data;
    }
    s.append(32, '\0'); // the drawing's other sections
    return s;
}
