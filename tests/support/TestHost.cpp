// The headless test host and temporary directories.
#include "TestHost.h"

#include "base/SysPath.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

CTestHost::CTestHost() {
    HOST_SERVICES services;
    services.pUi = this;
    services.pInstallPaths = this;
    SetHostServices(services);
}

CTestHost::~CTestHost() {
    SetHostServices(HOST_SERVICES{});
}

int CTestHost::MessageBox(const std::wstring& strText, const std::wstring& strCaption,
                          unsigned nFlags) {
    m_boxes.push_back({strText, strCaption, nFlags});
    if ((nFlags & 0x0F) == MB_OK)
        return IDOK;
    if (m_answers.empty())
        return IDCANCEL;
    int nAnswer = m_answers.front();
    m_answers.pop_front();
    return nAnswer;
}

CTempDir::CTempDir() {
    std::string tmpl = (std::filesystem::temp_directory_path() / "qmtest-XXXXXX").string();
    char* dir = ::mkdtemp(tmpl.data());
    m_strPath = FromOsPath(dir ? dir : tmpl) + L"\\";
}

CTempDir::~CTempDir() {
    std::error_code ec;
    std::filesystem::permissions(OsPath(), std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ec);
    for (auto& entry : std::filesystem::recursive_directory_iterator(OsPath(), ec))
        std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ec);
    std::filesystem::remove_all(OsPath(), ec);
}

std::string CTempDir::OsPath() const {
    return ToOsPath(m_strPath);
}

std::string ReadBytes(const std::wstring& strPath) {
    std::ifstream in(ToOsPath(strPath), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

void WriteBytes(const std::wstring& strPath, const std::string& bytes) {
    std::ofstream out(ToOsPath(strPath), std::ios::binary | std::ios::trunc);
    out << bytes;
}

std::string Hex(const std::string& bytes) {
    static const char* kDigits = "0123456789ABCDEF";
    std::string out;
    for (unsigned char c : bytes) {
        if (!out.empty())
            out += ' ';
        out += kDigits[c >> 4];
        out += kDigits[c & 15];
    }
    return out;
}
