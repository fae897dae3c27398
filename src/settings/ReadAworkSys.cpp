// Reading of awork.sys: keys matched at the start of a line, blanks removed, the few guarded keys.
#include "settings/ReadAworkSys.h"

#include "base/FileSystem.h"
#include "base/NumberText.h"
#include "base/StrUtil.h"
#include "base/TextFile.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "settings/DataTables.h"
#include "shared/fileops/FileOps.h"

std::wstring CReadAworkSys::GetSettingsFilePath() {
    return JoinPath(GetInstallPath_QM(), L"LocalData\\awork.sys");
}

std::wstring CReadAworkSys::LookUp(const std::wstring& strKey, bool bKeepBlanks) const {
    for (const std::wstring& strLine : m_arrLines) {
        if (strLine.compare(0, strKey.size(), strKey) != 0)
            continue;
        std::wstring strValue = strLine.substr(strKey.size());
        if (!bKeepBlanks)
            StrReplace(strValue, L" ", L"");
        return strValue;
    }
    return {};
}

int CReadAworkSys::LookUpInt(const std::wstring& strKey) const {
    return TextToInt(LookUp(strKey));
}

double CReadAworkSys::LookUpReal(const std::wstring& strKey) const {
    return TextToReal(LookUp(strKey));
}

int CReadAworkSys::LookUpGuardedInt(const std::wstring& strKey, int nMissing) const {
    std::wstring strValue = LookUp(strKey);
    return strValue.empty() ? nMissing : TextToInt(strValue);
}

void CReadAworkSys::ReadSettings() {
    m_bRead = 1; // a failure isn't tried again
    m_arrLines.clear();
    std::wstring strPath = GetSettingsFilePath();
    CTextFile file;
    if (file.Open(strPath, CTextFile::modeRead)) {
        std::wstring strLine;
        while (file.ReadString(strLine))
            if (!strLine.empty())
                m_arrLines.push_back(strLine);
    } else {
        acutPrintf(L"打开文件%s时出错，错误码为 %d\n", strPath, FsGetLastError());
    }

    m_nSymbolNewOld = LookUpInt(L"符号新旧标: ");
    m_strDefaultTextStyle = LookUp(L"默认文字样式: ", true);
    m_nCrossDotSize = LookUpInt(L"连线交叉结点大小: ");
    m_nTJunctionDot = LookUpInt(L"T型连线交叉点: ");
    m_dMountPosTextHeight = LookUpReal(L"元件安装位置文字字高: ");
    m_dLabelTextHeight = LookUpReal(L"元件标号文字字高: ");
    m_nVertLabelPos = LookUpInt(L"垂直符号标号文字位置: ");
    m_nVertLabelDir = LookUpInt(L"垂直符号标号文字方向: ");
    m_nOneEndHorzLabelPos = LookUpInt(L"单端水平符号标号文字位置");
    m_nOneEndVertLabelPos = LookUpInt(L"单端垂直符号标号文字位置");
    m_dPinTextHeight = LookUpReal(L"元件管角号文字字高: ");
    m_nHorzPinPos = LookUpInt(L"水平符号管脚号文字位置: ");
    m_nVertPinPos = LookUpInt(L"垂直符号管脚号文字位置: ");
    m_nVertPinDir = LookUpInt(L"垂直符号管脚号文字方向: ");
    m_dWireNoTextHeight = LookUpReal(L"连线线号文字字高: ");
    m_dWireNoToWire = LookUpReal(L"线号文字到线的距离: ");
    m_nVertWireNoPos = LookUpInt(L"垂直连线线号文字位置: ");
    m_nVertWireNoDir = LookUpInt(L"垂直连线线号文字方向: ");
    m_nCircuitBlockExplode = LookUpGuardedInt(L"电路图图块允许炸开: ", 1);
    m_nOpenDwgMode = LookUpGuardedInt(L"打开DWG默认启动方式: ", 1);
    m_strTitleBlockType = LookUp(L"标题栏类型: ");
    m_nTitleBlockExplode = LookUpGuardedInt(L"标题栏图块允许炸开: ", 1);
    m_strWiringAdaptive = LookUp(L"接线连线自适应标识: ");
    m_strRelayLabelSeparator = LookUp(L"继保端子及装置标号与端号之间加分隔符: ");
    m_nTerminalTableFormat = LookUpInt(L"端子表格式: ");
    m_nWiringPartNumbering = LookUpInt(L"接线图元件序号: ");
    m_nWiringFormat = LookUpInt(L"接线格式: ");
    m_dWiringNoteHeight = LookUpReal(L"元件接线标注文字字高: ");
    m_dSubPanelNameHeight = LookUpReal(L"分板名称文字字高: ");
    m_dWireStubLength = LookUpReal(L"元件接线线长: ");
    m_dLayoutNoteHeight = LookUpReal(L"元件布置标注文字字高: ");
    m_dFrameWidth = LookUpReal(L"外框宽度: ");
    m_dFrameHeight = LookUpReal(L"外框高度: ");
    m_dFrameDiameter = LookUpReal(L"外框直径: ");
    m_dPartWireNoToWire = LookUpReal(L"元件线号到线距离: ");
    m_dLayoutHeadDiameter = LookUpReal(L"元件布置标头圆圈直径: ");
    m_strWiringTextFormat = LookUp(L"元件接线文字格式: ");
    m_strWireColourPos = LookUp(L"导线颜色文字位置: ");
    if (m_strWireColourPos.empty())
        m_strWireColourPos = L"连线下方";
    m_dWireColourToWire = LookUpReal(L"导线颜色文字到连线距离: ");
    std::wstring strChoice = LookUp(L"同元件引脚接线方式:");
    if (strChoice == L"文字方式")
        m_nSamePartPinWiring = 1;
    else if (strChoice == L"短线方式")
        m_nSamePartPinWiring = 0;
    m_strJumperToPart = LookUp(L"短接线到元件的距离:");
    if (m_strJumperToPart.empty())
        m_strJumperToPart = L"3.0";
    m_strJumperStep = LookUp(L"短接线之间的阶距:");
    if (m_strJumperStep.empty())
        m_strJumperStep = L"0.5";
    m_strWiringTextWidth = LookUp(L"接线文字宽度:");
    m_strWiresPerDeviceTerminal = LookUp(L"装置端子接线数量:");
    m_strPartDescPos = LookUp(L"元件描述文字显示位置:");
    m_nSoftwareVersion = LookUpGuardedInt(L"软件当前版本: ", GetErpMode() == 2 ? 0 : 1);
    m_nRelayVariant = LookUpInt(L"是否是继电保护版: ");
    m_nSchematicTerminalTable = LookUpInt(L"原理图端子表作为接线图端子表: ");
    m_nUseFreeTerminalSide = LookUpGuardedInt(L"是否利用端子空余接线端: ", 1);
    m_nTwoWiresPerSide = LookUpGuardedInt(L"端子一端是否接两根线: ", 1);
    m_nRelayAsOrdinary = LookUpInt(L"继电保护端子作为普通端子: ");
    m_strWiringTableSeparator = LookUp(L"接线图端子表分隔符格式: ");
    m_nWiringBlockExplode = LookUpGuardedInt(L"接线图图块允许炸开: ", 1);
}

int CReadAworkSys::GetSoftwareTag() {
    if (TzGetQuillmCurVer() == L"2")
        return 1;
    return GetSoftwareVersion();
}
