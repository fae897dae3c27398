// Catalogue file and the catalogue actions of the panel dialog.
#include "panel/PanelCatalogue.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/TextFile.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "panel/DlnDictionaryAdd.h"
#include "shared/fileops/FileOps.h"

#include <algorithm>

const wchar_t* const kNothingSelectedText = L"没有选择!";

bool ReadTextLines(const std::wstring& strPath, CStringArray& arrLines, bool bKeepEmpty) {
    return ReadLines(strPath, arrLines, bKeepEmpty);
}

bool WriteTextLines(const std::wstring& strPath, const CStringArray& arrLines) {
    return WriteLines(strPath, arrLines);
}

std::wstring MakePanelRecord(const std::wstring& strDesc, const std::wstring& strW,
                             const std::wstring& strH, const std::wstring& strT) {
    return Format(L"%s:%sx%sx%s", strDesc, strW, strH, strT);
}

bool SplitPanelRecord(const std::wstring& strRecord, std::wstring& strDesc, std::wstring& strW,
                      std::wstring& strH, std::wstring& strT) {
    int nColon = StrFind(strRecord, L':');
    strDesc = StrLeft(strRecord, nColon);
    std::wstring strSizes = StrMid(strRecord, nColon + 1);
    CStringArray arrParts;
    size_t nStart = 0;
    for (size_t n = strSizes.find(L'x'); n != std::wstring::npos; n = strSizes.find(L'x', nStart)) {
        arrParts.push_back(strSizes.substr(nStart, n - nStart));
        nStart = n + 1;
    }
    arrParts.push_back(strSizes.substr(nStart));
    if (arrParts.size() != 3)
        return false;
    strW = arrParts[0];
    strH = arrParts[1];
    strT = arrParts[2];
    return true;
}

std::wstring CPanelCatalogue::GetPanelLibPath() {
    return JoinPath(GetQuillmLocalInstallPath(), L"LocalData\\PanelLib.txt");
}

void CPanelCatalogue::LoadPanelLib() {
    m_arrPanels.clear();
    CTextFile file;
    if (!file.Open(GetPanelLibPath(), CTextFile::modeRead))
        return;
    std::wstring strLine;
    while (file.ReadString(strLine) && !strLine.empty())
        m_arrPanels.push_back(strLine);
}

bool CPanelCatalogue::SavePanelLib() const {
    CTextFile file;
    if (!file.Open(GetPanelLibPath(), CTextFile::modeCreateWrite))
        return false;
    for (const std::wstring& strRecord : m_arrPanels)
        file.WriteString(strRecord + L"\n");
    return file.Close();
}

bool CPanelCatalogue::FillSizes(const std::vector<int>& arrSelected, std::wstring& strW,
                                std::wstring& strH, std::wstring& strT) const {
    if (arrSelected.empty())
        return false;
    int nRow = arrSelected[0];
    if (nRow < 0 || nRow >= static_cast<int>(m_arrPanels.size()))
        return false;
    std::wstring strDesc, strNewW, strNewH, strNewT;
    if (!SplitPanelRecord(m_arrPanels[nRow], strDesc, strNewW, strNewH, strNewT))
        return false;
    strW = strNewW;
    strH = strNewH;
    strT = strNewT;
    return true;
}

bool CPanelCatalogue::DeleteSelected(const std::vector<int>& arrSelected) {
    if (arrSelected.empty()) {
        QmMessageBox(kNothingSelectedText, MB_ICONEXCLAMATION);
        return false;
    }
    std::vector<int> arrRows = arrSelected;
    std::sort(arrRows.begin(), arrRows.end());
    for (int nRow : arrRows)
        if (nRow >= 0 && nRow < static_cast<int>(m_arrPanels.size()))
            m_arrPanels.erase(m_arrPanels.begin() + nRow);
    return true;
}

bool CPanelCatalogue::ChangeSelected(const std::vector<int>& arrSelected,
                                     const RECORD_EDITOR& editor) {
    if (arrSelected.empty()) {
        QmMessageBox(kNothingSelectedText, MB_ICONEXCLAMATION);
        return false;
    }
    if (arrSelected.size() > 1) {
        QmMessageBox(L"本功能不支持多选!", MB_ICONEXCLAMATION);
        return false;
    }
    int nRow = arrSelected[0];
    if (nRow < 0 || nRow >= static_cast<int>(m_arrPanels.size()))
        return false;
    CDlnDictionaryAdd dlg;
    dlg.m_strCaption = L"修改面板";
    dlg.m_strRecord = m_arrPanels[nRow];
    for (int n = 0; n < static_cast<int>(m_arrPanels.size()); ++n)
        if (n != nRow)
            dlg.m_arrOthers.push_back(m_arrPanels[n]);
    if (!editor(dlg))
        return false;
    m_arrPanels[nRow] = dlg.m_strRecord;
    return true;
}

bool CPanelCatalogue::AddRecord(const std::wstring& strW, const std::wstring& strH,
                                const std::wstring& strT, const RECORD_EDITOR& editor) {
    CDlnDictionaryAdd dlg;
    dlg.m_strCaption = L"添加面板";
    dlg.m_arrOthers = m_arrPanels;
    dlg.m_strW = strW;
    dlg.m_strH = strH;
    dlg.m_strT = strT;
    if (!editor(dlg))
        return false;
    m_arrPanels.push_back(dlg.m_strRecord);
    return true;
}
