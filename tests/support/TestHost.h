// A headless host for tests: records boxes and printed text, answers questions from a queue.
#pragma once

#include "host/HostServices.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"

#include <deque>
#include <string>
#include <vector>

struct TEST_BOX {
    std::wstring strText;
    std::wstring strCaption;
    unsigned nFlags = 0;
};

// Installs itself as the host for its lifetime.
class CTestHost : public IHostUi, public ISuiteInstallPaths {
public:
    CTestHost();
    ~CTestHost() override;

    int MessageBox(const std::wstring& strText, const std::wstring& strCaption,
                   unsigned nFlags) override;
    void Print(const std::wstring& strText) override { m_strPrinted += strText; }
    void BeginWaitCursor() override { ++m_nWaitDepth; }
    void EndWaitCursor() override { --m_nWaitDepth; }

    std::wstring CommonResInstallPath() override { return m_strCommonRes; }
    std::wstring LocalInstallPath() override { return m_strLocal; }
    std::wstring InstallPath() override { return m_strInstall; }
    int InstallStyle() override { return m_nInstallStyle; }
    int FtpLoginStatus() override { return m_nFtpLogin; }
    std::wstring CurrentVersion() override { return m_strVersion; }

    std::vector<TEST_BOX> m_boxes;
    std::deque<int> m_answers; // answers to boxes with buttons; IDCANCEL when empty
    std::wstring m_strPrinted;
    int m_nWaitDepth = 0;

    std::wstring m_strCommonRes, m_strLocal, m_strInstall, m_strVersion;
    int m_nInstallStyle = 0;
    int m_nFtpLogin = 0;
};

// A fresh directory under the temporary directory, removed with its contents at the end.
class CTempDir {
public:
    CTempDir();
    ~CTempDir();
    CTempDir(const CTempDir&) = delete;
    CTempDir& operator=(const CTempDir&) = delete;
    const std::wstring& Path() const { return m_strPath; } // system path with final backslash
    std::string OsPath() const;
    std::wstring operator/(const std::wstring& strRel) const { return m_strPath + strRel; }

private:
    std::wstring m_strPath;
};

// Test-side file access that does not go through the code under test.
std::string ReadBytes(const std::wstring& strPath);
void WriteBytes(const std::wstring& strPath, const std::string& bytes);
std::string Hex(const std::string& bytes);
