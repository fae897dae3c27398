// .bmp files: the 14-byte file header around a DIB block.
#include "ui/Dib.h"

#include "base/FileSystem.h"
#include "ui/DibPainter.h"

namespace {

constexpr size_t kFileHeaderSize = 14;

uint32_t Le32(const std::string& s, size_t at) {
    auto b = [&](size_t i) { return static_cast<uint32_t>(static_cast<uint8_t>(s[at + i])); };
    return b(0) | (b(1) << 8) | (b(2) << 16) | (b(3) << 24);
}
void PutLe32(std::string& s, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        s += static_cast<char>((v >> (8 * i)) & 0xFF);
}

} // namespace

bool CDib::Read(const std::wstring& strFile) {
    m_hDib.reset();
    m_pPalette.reset();
    std::string bytes;
    if (!FsReadBinary(strFile, bytes) || bytes.size() < kFileHeaderSize + 4 || bytes[0] != 'B' ||
        bytes[1] != 'M')
        return false;
    HDIB hDib = DibAlloc(bytes.size() - kFileHeaderSize);
    if (!hDib)
        return false;
    std::copy(bytes.begin() + kFileHeaderSize, bytes.end(), hDib->bytes.begin());
    STRUCT_DIB_INFO info;
    if (!CheckDibHeader(*hDib, info))
        return false;
    // Some writers leave a gap between the colour table and the bits; the
    // header's offset tells where the bits really start.
    uint64_t nOffBits = Le32(bytes, 10);
    if (nOffBits > kFileHeaderSize + info.nBitsOffset && nOffBits <= bytes.size()) {
        auto gapBegin = hDib->bytes.begin() + static_cast<std::ptrdiff_t>(info.nBitsOffset);
        hDib->bytes.erase(gapBegin, gapBegin + static_cast<std::ptrdiff_t>(
                                                   nOffBits - kFileHeaderSize - info.nBitsOffset));
    }
    if (!IsDibPaintable(*hDib, info))
        return false;
    Attach(std::move(hDib));
    return true;
}

bool CDib::Write(const std::wstring& strFile) const {
    STRUCT_DIB_INFO info;
    if (!m_hDib || !CheckDibHeader(*m_hDib, info))
        return false;
    std::string bytes = "BM";
    PutLe32(bytes, static_cast<uint32_t>(kFileHeaderSize + m_hDib->bytes.size()));
    PutLe32(bytes, 0);
    PutLe32(bytes, static_cast<uint32_t>(kFileHeaderSize + info.nBitsOffset));
    bytes.append(m_hDib->bytes.begin(), m_hDib->bytes.end());
    return FsWriteBinary(strFile, bytes);
}

int CDib::Width() const {
    STRUCT_DIB_INFO info;
    return m_hDib && CheckDibHeader(*m_hDib, info) ? static_cast<int>(info.nWidth) : 0;
}

int CDib::Height() const {
    STRUCT_DIB_INFO info;
    return m_hDib && CheckDibHeader(*m_hDib, info) ? static_cast<int>(info.nHeight) : 0;
}

void CDib::Attach(HDIB hDib) {
    m_hDib = std::move(hDib);
    m_pPalette.reset();
    if (!m_hDib)
        return;
    auto pPalette = std::make_unique<CPalette>();
    if (MakeDibPalette(*m_hDib, *pPalette, 1)) // 1 keeps the table as read
        m_pPalette = std::move(pPalette);
}

HDIB CDib::Detach() {
    m_pPalette.reset();
    return std::move(m_hDib);
}

CDrawDibPreview::CDrawDibPreview(const std::wstring& strFile, CImageSurface* pWnd, int bKeepColours,
                                 double dAngle, int nDrawMode)
    : m_dAngle(dAngle), m_bKeepColours(bKeepColours), m_nDrawMode(nDrawMode), m_pWnd(pWnd),
      m_strFile(strFile) {}

bool CDrawDibPreview::Draw() {
    if (!m_pWnd || !m_dib.Read(m_strFile))
        return false;
    return PaintDibPreview(*m_pWnd, m_dib.Detach(), m_bKeepColours, m_dAngle, m_nDrawMode,
                           m_pPalette);
}
