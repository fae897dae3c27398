// The DWG preview section: offset at byte 13, a sentinel, then up to three entries.
#include "ui/DwgThumbnail.h"

#include "base/FileSystem.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr long kSectionOffsetAt = 13;
constexpr uint8_t kSentinel[16] = {0x1F, 0x25, 0x6D, 0x07, 0xD4, 0x36, 0x28, 0x28,
                                   0x9D, 0x57, 0xCA, 0x3F, 0x9D, 0x44, 0x10, 0x2B};
constexpr int kHeaderEntry = 1;
constexpr int kMaxEntries = 3;

// Closes the file on every way out.
class CInputFile {
public:
    explicit CInputFile(const std::wstring& strPath) : m_fp(FsOpenStdio(strPath, "rb")) {}
    ~CInputFile() {
        if (m_fp)
            std::fclose(m_fp);
    }
    CInputFile(const CInputFile&) = delete;
    CInputFile& operator=(const CInputFile&) = delete;

    bool IsOpen() const { return m_fp != nullptr; }
    bool Seek(uint64_t nPos) {
        return nPos <= 0x7FFFFFFF && std::fseek(m_fp, static_cast<long>(nPos), SEEK_SET) == 0;
    }
    bool Read(void* p, size_t n) { return std::fread(p, 1, n, m_fp) == n; }
    bool ReadU32(uint32_t& v) {
        uint8_t b[4];
        if (!Read(b, 4))
            return false;
        v = b[0] | (b[1] << 8) | (b[2] << 16) | (static_cast<uint32_t>(b[3]) << 24);
        return true;
    }
    int64_t Size() {
        long nHere = std::ftell(m_fp);
        if (std::fseek(m_fp, 0, SEEK_END) != 0)
            return -1;
        long nSize = std::ftell(m_fp);
        std::fseek(m_fp, nHere, SEEK_SET);
        return nSize;
    }

private:
    std::FILE* m_fp;
};

} // namespace

HDIB ReadDwgThumbnail(const std::wstring& strFile) {
    CInputFile file(strFile);
    uint32_t nSection = 0;
    if (!file.IsOpen() || !file.Seek(kSectionOffsetAt) || !file.ReadU32(nSection))
        return nullptr;
    uint8_t sentinel[16];
    if (!file.Seek(nSection) || !file.Read(sentinel, sizeof sentinel) ||
        std::memcmp(sentinel, kSentinel, sizeof kSentinel) != 0)
        return nullptr;
    uint32_t nOverallSize = 0;
    uint8_t nCount = 0;
    if (!file.ReadU32(nOverallSize) || !file.Read(&nCount, 1))
        return nullptr;
    if (nCount == 0 || nCount > kMaxEntries)
        return nullptr;
    uint8_t nCode = 0;
    uint32_t nOffset = 0, nSize = 0;
    // Header data entries come first; the image is among the first three entries.
    for (int i = 0; i < kMaxEntries; ++i) {
        if (!file.Read(&nCode, 1) || !file.ReadU32(nOffset) || !file.ReadU32(nSize))
            return nullptr;
        if (nCode != kHeaderEntry)
            break;
    }
    if (nCode != 2 && nCode != 3)
        return nullptr;
    // A size beyond the end of the file would end in a short read; refusing it
    // first spares allocating a block that a damaged entry asks for.
    int64_t nFileSize = file.Size();
    if (nFileSize < 0 || static_cast<uint64_t>(nOffset) + nSize > static_cast<uint64_t>(nFileSize))
        return nullptr;
    HDIB hDib = DibAlloc(nSize);
    if (!hDib || !file.Seek(nOffset))
        return nullptr;
    if (nSize > 0 && !file.Read(hDib->bytes.data(), nSize))
        return nullptr;
    return hDib;
}
