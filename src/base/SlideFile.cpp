// Slide file records: vectors, offset vectors, common endpoints, solid fills, colours, end of file.
#include "base/SlideFile.h"

#include "base/ClipSegment.h"

#include "base/FileSystem.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

// "AutoCAD Slide" CR LF ^Z NUL: the literal's own terminator is the NUL.
constexpr char kSlideId[] = "AutoCAD Slide\r\n\x1a";
constexpr size_t kIdSize = sizeof kSlideId; // 17
constexpr size_t kNewHeaderSize = 31;
constexpr size_t kOldHeaderSize = 34;
constexpr uint8_t kTypeIndicator = 0x56;
constexpr uint16_t kTestNumber = 0x1234;
constexpr double kAspectScale = 10000000.0;

enum : uint8_t {
    REC_OFFSET_VECTOR = 0xFB,
    REC_END = 0xFC,
    REC_SOLID_FILL = 0xFD,
    REC_COMMON_END = 0xFE,
    REC_COLOUR = 0xFF,
};

class CSlideReader {
public:
    CSlideReader(const std::string& bytes, size_t nPos, bool bHighFirst)
        : m_b(bytes), m_nPos(nPos), m_bHighFirst(bHighFirst) {}

    bool Byte(uint8_t& v) {
        if (m_nPos >= m_b.size())
            return false;
        v = static_cast<uint8_t>(m_b[m_nPos++]);
        return true;
    }
    bool Word(uint16_t& v) {
        uint8_t a, b;
        if (!Byte(a) || !Byte(b))
            return false;
        v = m_bHighFirst ? static_cast<uint16_t>((a << 8) | b)
                         : static_cast<uint16_t>((b << 8) | a);
        return true;
    }
    bool Words(uint16_t* p, int n) {
        for (int i = 0; i < n; ++i)
            if (!Word(p[i]))
                return false;
        return true;
    }
    bool Records(CSlide& slide);

private:
    const std::string& m_b;
    size_t m_nPos;
    bool m_bHighFirst;
};

bool CSlideReader::Records(CSlide& slide) {
    int nLastX = 0, nLastY = 0, nColour = 7;
    bool bInFill = false;
    STRUCT_SLIDE_FILL fill;
    auto push = [&](int x1, int y1, int x2, int y2) {
        slide.m_vectors.push_back({x1, y1, x2, y2, nColour});
    };
    for (;;) {
        uint16_t w, v[3];
        uint8_t b[3];
        if (!Word(w))
            return false;
        auto nType = static_cast<uint8_t>(w >> 8);
        auto nLow = static_cast<int8_t>(w & 0xFF);
        if (nType < 0x80) { // a vector; the record's first word is its from-x
            if (!Words(v, 3))
                return false;
            push(w, v[0], v[1], v[2]);
            nLastX = w, nLastY = v[0];
            continue;
        }
        switch (nType) {
        case REC_OFFSET_VECTOR: {
            if (!Byte(b[0]) || !Byte(b[1]) || !Byte(b[2]))
                return false;
            int x1 = nLastX + nLow, y1 = nLastY + static_cast<int8_t>(b[0]);
            push(x1, y1, nLastX + static_cast<int8_t>(b[1]), nLastY + static_cast<int8_t>(b[2]));
            nLastX = x1, nLastY = y1;
            break;
        }
        case REC_END:
            return true;
        case REC_SOLID_FILL: {
            if (!Words(v, 2))
                return false;
            auto x = static_cast<int16_t>(v[0]), y = static_cast<int16_t>(v[1]);
            if (y < 0) { // opens or closes a polygon
                if (bInFill && !fill.points.empty()) {
                    fill.nColour = nColour;
                    fill.nBefore = slide.m_vectors.size();
                    slide.m_fills.push_back(std::move(fill));
                }
                fill = STRUCT_SLIDE_FILL{};
                bInFill = !bInFill;
            } else if (bInFill) {
                fill.points.push_back({x, y});
            }
            break;
        }
        case REC_COMMON_END: {
            if (!Byte(b[0]))
                return false;
            int x2 = nLastX + nLow, y2 = nLastY + static_cast<int8_t>(b[0]);
            push(nLastX, nLastY, x2, y2);
            nLastX = x2, nLastY = y2;
            break;
        }
        case REC_COLOUR:
            nColour = static_cast<uint8_t>(nLow);
            break;
        default:
            return false; // undefined record: not a slide we can trust
        }
    }
}

uint32_t Le32(const std::string& s, size_t at) {
    auto b = [&](size_t i) { return static_cast<uint32_t>(static_cast<uint8_t>(s[at + i])); };
    return b(0) | (b(1) << 8) | (b(2) << 16) | (b(3) << 24);
}

double DoubleAt(const std::string& s, size_t at, bool bHighFirst) {
    unsigned char raw[8];
    for (int i = 0; i < 8; ++i)
        raw[i] = static_cast<unsigned char>(s[at + (bHighFirst ? 7 - i : i)]);
    double d;
    std::memcpy(&d, raw, sizeof d);
    return d;
}

bool IsPlausibleAspect(double d) {
    return std::isfinite(d) && d > 1e-3 && d < 1e3;
}

// The old header holds native values of the machine that wrote it: mostly
// low byte first; a sensible aspect ratio tells the other order.
bool ReadOldHeader(const std::string& bytes, CSlide& slide, bool& bHighFirst) {
    if (bytes.size() < kOldHeaderSize)
        return false;
    bHighFirst = !IsPlausibleAspect(DoubleAt(bytes, 23, false)) &&
                 IsPlausibleAspect(DoubleAt(bytes, 23, true));
    double dAspect = DoubleAt(bytes, 23, bHighFirst);
    slide.m_dAspect = IsPlausibleAspect(dAspect) ? dAspect : 1.0;
    CSlideReader header(bytes, 19, bHighFirst);
    uint16_t x, y, fill;
    CSlideReader fillAt(bytes, 31, bHighFirst);
    if (!header.Word(x) || !header.Word(y) || !fillAt.Word(fill))
        return false;
    slide.m_nHighX = x, slide.m_nHighY = y, slide.m_nHardwareFill = fill;
    return true;
}

bool ReadNewHeader(const std::string& bytes, CSlide& slide, bool& bHighFirst) {
    if (bytes.size() < kNewHeaderSize)
        return false;
    auto b29 = static_cast<uint8_t>(bytes[29]), b30 = static_cast<uint8_t>(bytes[30]);
    if (b29 == (kTestNumber & 0xFF) && b30 == (kTestNumber >> 8))
        bHighFirst = false;
    else if (b29 == (kTestNumber >> 8) && b30 == (kTestNumber & 0xFF))
        bHighFirst = true;
    else
        return false;
    CSlideReader header(bytes, 19, bHighFirst);
    uint16_t x, y, fill;
    header.Word(x), header.Word(y);
    CSlideReader fillAt(bytes, 27, bHighFirst);
    fillAt.Word(fill);
    slide.m_nHighX = x, slide.m_nHighY = y, slide.m_nHardwareFill = fill;
    uint32_t nAspect = Le32(bytes, 23); // always low byte first
    slide.m_dAspect = nAspect ? nAspect / kAspectScale : 1.0;
    return true;
}

} // namespace

bool ReadSlide(const std::string& bytes, CSlide& slide) {
    slide = CSlide{};
    if (bytes.size() < kNewHeaderSize || std::memcmp(bytes.data(), kSlideId, kIdSize) != 0)
        return false;
    int nLevel = static_cast<uint8_t>(bytes[18]);
    bool bHighFirst = false;
    bool bOld = nLevel == 1;
    if (!(bOld ? ReadOldHeader(bytes, slide, bHighFirst) : ReadNewHeader(bytes, slide, bHighFirst)))
        return false;
    slide.m_nLevel = bOld ? 1 : 2;
    CSlideReader reader(bytes, bOld ? kOldHeaderSize : kNewHeaderSize, bHighFirst);
    if (!reader.Records(slide)) {
        slide = CSlide{};
        return false;
    }
    return true;
}

bool ReadSlideFile(const std::wstring& strPath, CSlide& slide) {
    std::string bytes;
    if (!FsReadBinary(strPath, bytes)) {
        slide = CSlide{};
        return false;
    }
    return ReadSlide(bytes, slide);
}

namespace {

class CSlideWriter {
public:
    explicit CSlideWriter(bool bHighFirst) : m_bHighFirst(bHighFirst) {}
    std::string m_out;

    void Byte(int v) { m_out += static_cast<char>(v & 0xFF); }
    void Word(int v) {
        if (m_bHighFirst)
            Byte(v >> 8), Byte(v);
        else
            Byte(v), Byte(v >> 8);
    }
    void Record(uint8_t nType, int nLow) { Word((nType << 8) | (nLow & 0xFF)); }
    void Colour(int nColour) {
        if (nColour == m_nColour)
            return;
        Record(REC_COLOUR, nColour);
        m_nColour = nColour;
    }
    void Vector(const STRUCT_SLIDE_VECTOR& v);
    void Fill(const STRUCT_SLIDE_FILL& f);

private:
    static int Clamp(int v) { return std::clamp(v, 0, 32767); }
    static bool FitsByte(int d) { return d >= -128 && d <= 127; }
    bool m_bHighFirst;
    int m_nColour = -1;
    bool m_bHaveLast = false;
    int m_nLastX = 0, m_nLastY = 0;
};

void CSlideWriter::Vector(const STRUCT_SLIDE_VECTOR& v) {
    Colour(v.nColour & 0xFF);
    int x1 = Clamp(v.nFromX), y1 = Clamp(v.nFromY), x2 = Clamp(v.nToX), y2 = Clamp(v.nToY);
    if (m_bHaveLast) {
        int dx1 = x1 - m_nLastX, dy1 = y1 - m_nLastY, dx2 = x2 - m_nLastX, dy2 = y2 - m_nLastY;
        if (dx1 == 0 && dy1 == 0 && FitsByte(dx2) && FitsByte(dy2)) {
            Record(REC_COMMON_END, dx2);
            Byte(dy2);
            m_nLastX = x2, m_nLastY = y2;
            return;
        }
        if (FitsByte(dx1) && FitsByte(dy1) && FitsByte(dx2) && FitsByte(dy2)) {
            Record(REC_OFFSET_VECTOR, dx1);
            Byte(dy1), Byte(dx2), Byte(dy2);
            m_nLastX = x1, m_nLastY = y1;
            return;
        }
    }
    Word(x1), Word(y1), Word(x2), Word(y2);
    m_bHaveLast = true;
    m_nLastX = x1, m_nLastY = y1;
}

void CSlideWriter::Fill(const STRUCT_SLIDE_FILL& f) {
    if (f.points.empty())
        return;
    Colour(f.nColour & 0xFF);
    Record(REC_SOLID_FILL, 0);
    Word(static_cast<int>(std::min<size_t>(f.points.size(), 32767)));
    Word(-1);
    for (const STRUCT_SLIDE_POINT& p : f.points) {
        Record(REC_SOLID_FILL, 0);
        Word(Clamp(p.x)), Word(Clamp(p.y));
    }
    Record(REC_SOLID_FILL, 0);
    Word(0), Word(-1);
}

} // namespace

std::string WriteSlide(const CSlide& slide, bool bHighByteFirst) {
    CSlideWriter w(bHighByteFirst);
    w.m_out.assign(kSlideId, kIdSize);
    w.Byte(kTypeIndicator);
    w.Byte(2);
    w.Word(std::clamp(slide.m_nHighX, 0, 65535));
    w.Word(std::clamp(slide.m_nHighY, 0, 65535));
    double dAspect = std::isfinite(slide.m_dAspect) && slide.m_dAspect > 0 ? slide.m_dAspect : 1.0;
    auto nAspect = static_cast<uint32_t>(std::min(dAspect * kAspectScale + 0.5, 4294967295.0));
    for (int i = 0; i < 4; ++i)
        w.Byte(static_cast<int>(nAspect >> (8 * i)));
    w.Word(slide.m_nHardwareFill);
    w.Word(kTestNumber);
    size_t nFill = 0;
    for (size_t i = 0; i < slide.m_vectors.size(); ++i) {
        while (nFill < slide.m_fills.size() && slide.m_fills[nFill].nBefore <= i)
            w.Fill(slide.m_fills[nFill++]);
        w.Vector(slide.m_vectors[i]);
    }
    while (nFill < slide.m_fills.size())
        w.Fill(slide.m_fills[nFill++]);
    w.Record(REC_END, 0);
    return std::move(w.m_out);
}

bool WriteSlideFile(const std::wstring& strPath, const CSlide& slide) {
    return FsWriteBinary(strPath, WriteSlide(slide));
}

bool MakeViewSlide(const std::vector<STRUCT_VIEW_VECTOR>& vectors, double minX, double minY,
                   double maxX, double maxY, int nWidth, int nHeight, CSlide& slide) {
    slide = CSlide{};
    double dx = maxX - minX, dy = maxY - minY;
    if (!(dx > 0) || !(dy > 0) || !std::isfinite(dx) || !std::isfinite(dy) || nWidth < 2 ||
        nHeight < 2 || nWidth > 32768 || nHeight > 32768)
        return false;
    slide.m_nHighX = nWidth - 1;
    slide.m_nHighY = nHeight - 1;
    slide.m_dAspect = static_cast<double>(nWidth) / nHeight;
    double w = slide.m_nHighX, h = slide.m_nHighY;
    double dScale = std::min(w / dx, h / dy);
    double cx = (minX + maxX) / 2, cy = (minY + maxY) / 2;
    slide.m_vectors.reserve(vectors.size());
    for (const STRUCT_VIEW_VECTOR& v : vectors) {
        double x1 = (v.x1 - cx) * dScale + w / 2, y1 = (v.y1 - cy) * dScale + h / 2;
        double x2 = (v.x2 - cx) * dScale + w / 2, y2 = (v.y2 - cy) * dScale + h / 2;
        if (!std::isfinite(x1 + y1 + x2 + y2) || !ClipSegmentToBox(x1, y1, x2, y2, w, h))
            continue;
        slide.m_vectors.push_back({static_cast<int>(std::lround(x1)),
                                   static_cast<int>(std::lround(y1)),
                                   static_cast<int>(std::lround(x2)),
                                   static_cast<int>(std::lround(y2)), v.nColour & 0xFF});
    }
    return true;
}
