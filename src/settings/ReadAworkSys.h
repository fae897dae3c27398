// The suite's drawing settings from "LocalData\awork.sys", one accessor per key, read at first use.
#pragma once

#include <string>
#include <vector>

// Each accessor reads the file first when it hasn't been read. After a
// reading, a key the file lacks leaves its member at the key's missing
// value, which for most keys is zero or empty, not the constructor's value.
class CReadAworkSys {
public:
    CReadAworkSys() = default;
    virtual ~CReadAworkSys() = default;

    // Reads the whole file; tried once per object, also when it fails.
    void ReadSettings();
    static std::wstring GetSettingsFilePath();

    int GetSymbolNewOld() { return Read(m_nSymbolNewOld); }
    std::wstring GetDefaultTextStyle() { return Read(m_strDefaultTextStyle); }
    int GetCrossDotSize() { return Read(m_nCrossDotSize); }
    int GetTJunctionDot() { return Read(m_nTJunctionDot); }
    double GetMountPosTextHeight() { return Read(m_dMountPosTextHeight); }
    double GetLabelTextHeight() { return Read(m_dLabelTextHeight); }
    int GetVertLabelPos() { return Read(m_nVertLabelPos); }
    int GetVertLabelDir() { return Read(m_nVertLabelDir); }
    int GetOneEndHorzLabelPos() { return Read(m_nOneEndHorzLabelPos); }
    int GetOneEndVertLabelPos() { return Read(m_nOneEndVertLabelPos); }
    double GetPinTextHeight() { return Read(m_dPinTextHeight); }
    int GetHorzPinPos() { return Read(m_nHorzPinPos); }
    int GetVertPinPos() { return Read(m_nVertPinPos); }
    int GetVertPinDir() { return Read(m_nVertPinDir); }
    double GetWireNoTextHeight() { return Read(m_dWireNoTextHeight); }
    double GetWireNoToWire() { return Read(m_dWireNoToWire); }
    int GetVertWireNoPos() { return Read(m_nVertWireNoPos); }
    int GetVertWireNoDir() { return Read(m_nVertWireNoDir); }
    int GetCircuitBlockExplode() { return Read(m_nCircuitBlockExplode); }
    int GetOpenDwgMode() { return Read(m_nOpenDwgMode); }
    std::wstring GetTitleBlockType() { return Read(m_strTitleBlockType); }
    int GetTitleBlockExplode() { return Read(m_nTitleBlockExplode); }
    std::wstring GetWiringAdaptive() { return Read(m_strWiringAdaptive); }
    std::wstring GetRelayLabelSeparator() { return Read(m_strRelayLabelSeparator); }
    int GetTerminalTableFormat() { return Read(m_nTerminalTableFormat); }
    int GetWiringPartNumbering() { return Read(m_nWiringPartNumbering); }
    int GetWiringFormat() { return Read(m_nWiringFormat); }
    double GetWiringNoteHeight() { return Read(m_dWiringNoteHeight); }
    double GetSubPanelNameHeight() { return Read(m_dSubPanelNameHeight); }
    double GetWireStubLength() { return Read(m_dWireStubLength); }
    double GetLayoutNoteHeight() { return Read(m_dLayoutNoteHeight); }
    double GetFrameWidth() { return Read(m_dFrameWidth); }
    double GetFrameHeight() { return Read(m_dFrameHeight); }
    double GetFrameDiameter() { return Read(m_dFrameDiameter); }
    double GetPartWireNoToWire() { return Read(m_dPartWireNoToWire); }
    double GetLayoutHeadDiameter() { return Read(m_dLayoutHeadDiameter); }
    std::wstring GetWiringTextFormat() { return Read(m_strWiringTextFormat); }
    std::wstring GetWireColourPos() { return Read(m_strWireColourPos); }
    double GetWireColourToWire() { return Read(m_dWireColourToWire); }
    int GetSamePartPinWiring() { return Read(m_nSamePartPinWiring); }
    std::wstring GetJumperToPart() { return Read(m_strJumperToPart); }
    std::wstring GetJumperStep() { return Read(m_strJumperStep); }
    std::wstring GetWiringTextWidth() { return Read(m_strWiringTextWidth); }
    std::wstring GetWiresPerDeviceTerminal() { return Read(m_strWiresPerDeviceTerminal); }
    std::wstring GetPartDescPos() { return Read(m_strPartDescPos); }
    int GetSoftwareVersion() { return Read(m_nSoftwareVersion); }
    int GetRelayVariant() { return Read(m_nRelayVariant); }
    int GetSchematicTerminalTable() { return Read(m_nSchematicTerminalTable); }
    int GetUseFreeTerminalSide() { return Read(m_nUseFreeTerminalSide); }
    int GetTwoWiresPerSide() { return Read(m_nTwoWiresPerSide); }
    int GetRelayAsOrdinary() { return Read(m_nRelayAsOrdinary); }
    std::wstring GetWiringTableSeparator() { return Read(m_strWiringTableSeparator); }
    int GetWiringBlockExplode() { return Read(m_nWiringBlockExplode); }

    // 1 for the suite's version "2", otherwise the file's version tag.
    int GetSoftwareTag();

    int m_bRead = 0;
    std::vector<std::wstring> m_arrLines;

    int m_nSymbolNewOld = 0;
    std::wstring m_strDefaultTextStyle;
    int m_nCrossDotSize = 15;
    int m_nTJunctionDot = 0;
    double m_dMountPosTextHeight = 2.5;
    double m_dLabelTextHeight = 2.5;
    int m_nVertLabelPos = 0;
    int m_nVertLabelDir = 0;
    int m_nOneEndHorzLabelPos = 0;
    int m_nOneEndVertLabelPos = 0;
    double m_dPinTextHeight = 2.0;
    int m_nHorzPinPos = 0;
    int m_nVertPinPos = 0;
    int m_nVertPinDir = 0;
    double m_dWireNoTextHeight = 2.5;
    double m_dWireNoToWire = 1.5;
    int m_nVertWireNoPos = 0;
    int m_nVertWireNoDir = 1;
    int m_nCircuitBlockExplode = 1;
    int m_nOpenDwgMode = 1;
    std::wstring m_strTitleBlockType;
    int m_nTitleBlockExplode = 1;
    std::wstring m_strWiringAdaptive = L"否";
    std::wstring m_strRelayLabelSeparator = L"1";
    int m_nTerminalTableFormat = 0;
    int m_nWiringPartNumbering = 0;
    int m_nWiringFormat = 0;
    double m_dWiringNoteHeight = 2.0;
    double m_dSubPanelNameHeight = 3.0;
    double m_dWireStubLength = 5.0;
    double m_dLayoutNoteHeight = 3.0;
    double m_dFrameWidth = 21.0;
    double m_dFrameHeight = 5.0;
    double m_dFrameDiameter = 12.0;
    double m_dPartWireNoToWire = 1.3;
    double m_dLayoutHeadDiameter = 12.0;
    std::wstring m_strWiringTextFormat = L"多行";
    std::wstring m_strWireColourPos = L"连线下方";
    double m_dWireColourToWire = 1.5;
    int m_nSamePartPinWiring = 1;
    std::wstring m_strJumperToPart = L"3";
    std::wstring m_strJumperStep = L"0.5";
    std::wstring m_strWiringTextWidth;
    std::wstring m_strWiresPerDeviceTerminal = L"可接两根线";
    std::wstring m_strPartDescPos;
    int m_nSoftwareVersion = 0; // no value before the file is read
    int m_nRelayVariant = 0;
    int m_nSchematicTerminalTable = 0;
    int m_nUseFreeTerminalSide = 0;
    int m_nTwoWiresPerSide = 1;
    int m_nRelayAsOrdinary = 0;
    std::wstring m_strWiringTableSeparator;
    int m_nWiringBlockExplode = 1;

private:
    template <class T> const T& Read(const T& member) {
        if (!m_bRead)
            ReadSettings();
        return member;
    }
    // The rest of the first line that starts with the key, or the empty text.
    std::wstring LookUp(const std::wstring& strKey, bool bKeepBlanks = false) const;
    int LookUpInt(const std::wstring& strKey) const;
    double LookUpReal(const std::wstring& strKey) const;
    int LookUpGuardedInt(const std::wstring& strKey, int nMissing) const;
};
