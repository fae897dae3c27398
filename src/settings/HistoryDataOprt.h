// Values remembered from one run of the suite's dialogs to the next, addressed by position.
#pragma once

#include <string>
#include <vector>

// Reads "LocalData\HistoryData.txt" on construction and rewrites it on
// destruction when a setter has changed something. Make one on the stack,
// use it briefly, drop it: two live objects overwrite each other.
class CHistoryDataOprt {
public:
    CHistoryDataOprt();
    virtual ~CHistoryDataOprt();
    CHistoryDataOprt(const CHistoryDataOprt&) = delete;
    CHistoryDataOprt& operator=(const CHistoryDataOprt&) = delete;

    // A position outside the table gives the empty text, 0 or 0.0.
    void GetText(int nPos, std::wstring& strValue) const;
    void GetInt(int nPos, int& nValue) const;
    void GetReal(int nPos, double& dValue) const;

    // A position past the end is ignored and leaves the modified flag alone;
    // a negative one throws std::invalid_argument. A value must not hold a
    // line end: it would shift every later position.
    void SetText(int nPos, const std::wstring& strValue);
    void SetInt(int nPos, int nValue);
    void SetReal(int nPos, double dValue);

    static std::wstring GetHistoryFilePath();
    // The table a fresh installation starts from.
    static std::vector<std::wstring> DefaultValues();

    int m_bModified = 0;
    std::vector<std::wstring> m_arrValues;

private:
    void WriteValues() const;
};
