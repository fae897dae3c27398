// The FTP login file: eleven lines, each scrambled by itself.
#include "shared/FtpLoginInfo.h"

#include "base/TextFile.h"

std::wstring EncodeLoginText(const std::wstring& strText) {
    std::wstring strCode;
    strCode.reserve(strText.size() * 2);
    for (wchar_t ch : strText) {
        unsigned nByte = static_cast<unsigned>(ch) & 0xFF;
        strCode += static_cast<wchar_t>(L'a' + (nByte >> 4));
        strCode += static_cast<wchar_t>(L'a' + (nByte & 0x0F));
    }
    return strCode;
}

// Letters outside 'a'..'p' decode as the platform's 16-bit arithmetic would.
std::wstring DecodeLoginText(const std::wstring& strText) {
    std::wstring strClear;
    for (size_t i = 0; i + 1 < strText.size(); i += 2) {
        int nHigh = static_cast<int>(strText[i]) - L'a';
        int nLow = (static_cast<int>(strText[i + 1]) - L'a') & 0x0F;
        strClear += static_cast<wchar_t>((nHigh * 16 + nLow) & 0xFFFF);
    }
    return strClear;
}

bool ReadLoginInfo(const std::wstring& strFile, CStringArray& lines) {
    if (!IsFileExist(strFile))
        return false;
    CTextFile file;
    if (!file.Open(strFile, CTextFile::modeRead))
        return false;
    lines.assign(LOGIN_LINE_COUNT, L"");
    std::wstring strLine;
    for (int i = 0; i < LOGIN_LINE_COUNT && file.ReadString(strLine); ++i)
        lines[i] = DecodeLoginText(strLine);
    return true;
}

bool WriteLoginInfo(const std::wstring& strFile, const CStringArray& lines) {
    if (!IsFileExist(strFile))
        return false;
    std::wstring strText;
    for (int i = 0; i < LOGIN_LINE_COUNT; ++i) {
        if (i > 0)
            strText += L"\n";
        if (i < static_cast<int>(lines.size()))
            strText += EncodeLoginText(lines[i]);
    }
    CTextFile file;
    return file.Open(strFile, CTextFile::modeCreateWrite) && file.WriteString(strText) &&
           file.Close();
}
