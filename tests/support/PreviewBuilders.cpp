// Byte builders for DIBs and DWG thumbnail sections; PNG reading and writing with libpng.
#include "PreviewBuilders.h"

#include <cstdio>
#include <png.h>

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

bool WritePng(const CImageSurface& surface, const std::string& strOsPath) {
    std::FILE* fp = std::fopen(strOsPath.c_str(), "wb");
    if (!fp)
        return false;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    bool bOk = info && !setjmp(png_jmpbuf(png));
    if (bOk) {
        png_init_io(png, fp);
        png_set_IHDR(png, info, surface.Width(), surface.Height(), 8, PNG_COLOR_TYPE_RGBA,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(png, info);
        for (int y = 0; y < surface.Height(); ++y)
            png_write_row(png, surface.Bytes() + static_cast<size_t>(y) * surface.Width() * 4);
        png_write_end(png, nullptr);
    }
    png_destroy_write_struct(&png, &info);
    std::fclose(fp);
    return bOk;
}

bool ReadPng(const std::string& strOsPath, CImageSurface& surface) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, strOsPath.c_str()))
        return false;
    image.format = PNG_FORMAT_RGBA;
    std::vector<uint8_t> bytes(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr))
        return false;
    surface.Create(static_cast<int>(image.width), static_cast<int>(image.height));
    for (int y = 0; y < surface.Height(); ++y)
        for (int x = 0; x < surface.Width(); ++x) {
            const uint8_t* p = &bytes[(static_cast<size_t>(y) * image.width + x) * 4];
            surface.SetPixel(x, y, RGB(p[0], p[1], p[2]));
        }
    return true;
}
