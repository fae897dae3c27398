// A library on disk and a browser over it with the recording view, for the browser's tests.
#pragma once

#include "EditorTestHost.h"
#include "RecordingLibView.h"

#include "app/LibState.h"
#include "library/CircuitLibDlg.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

class CLibraryBrowserTest : public ::testing::Test {
protected:
    CLibraryBrowserTest();
    ~CLibraryBrowserTest() override;

    // Empty item files (the list never opens them) under the hole library root.
    void AddItems(const std::wstring& strSubDir, std::initializer_list<std::wstring> names);
    void AddNumberedItems(const std::wstring& strSubDir, int nCount);
    void SetLastDir(const std::wstring& strDir, int nIndex = 0);
    // Makes and creates the browser as the frame would; it is in g_HoleLib.pLibDlg.
    CCircuitLibDlg& Open(CMyFtpConnection* pFtp = nullptr);
    std::wstring HoleRoot() const { return m_dir / L"local\\InstallHole\\"; }
    // Posted lines of the current document, joined.
    std::wstring Posted() const;

    CTempDir m_dir;
    CEditorTestHost m_host;
    CCircuitLibDlg* m_pDlg = nullptr;
    CRecordingLibView* m_pView = nullptr;
};
