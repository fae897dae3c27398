// The panel dialog without its window: size fields, scale box, axis flags, catalogue list, picks.
#pragma once

#include "panel/PanelCatalogue.h"

#include <string>
#include <vector>

class CDlnDictionaryAdd;

// The dialog's result, read by DrawPanel, EditPanel and the pick buttons.
// Drawn sizes: the real millimetres of the fields divided by the ratio.
extern double g_dPanelLength;
extern double g_dPanelWidth;
extern double g_dPanelThick;
extern double g_dDrawRatio;

class CDlgDrawPanel;

// What the presenter asks of its window.
class IDlgDrawPanelView {
public:
    virtual ~IDlgDrawPanelView() = default;
    // Copies the presenter's fields into the controls (false) or back (true),
    // as the platform's UpdateData does.
    virtual void UpdateData(CDlgDrawPanel& dlg, bool bSaveAndValidate) = 0;
    virtual void SetTitle(const std::wstring& strTitle) = 0;
    // The scale box's entries and its edit text.
    virtual void SetScaleList(const CStringArray& arrScales) = 0;
    virtual void SetScaleText(const std::wstring& strScale) = 0;
    virtual std::wstring GetScaleText() = 0;
    // The list: its heading ("name,width"), its client width, its rows.
    virtual int GetListClientWidth() = 0;
    virtual void SetListHeading(const std::wstring& strHeading) = 0;
    virtual void SetListRows(const CStringArray& arrRows) = 0;
    virtual std::vector<int> GetSelectedRows() = 0;
    // Focus on a control, its whole text selected and the caret scrolled into view.
    virtual void FocusField(int nField) = 0;
    // The screen goes to the editor for a pick and comes back after it.
    virtual void BeginEditorCommand() = 0;
    virtual void MakeDialogsVisible() = 0;
    // The record editor, modal; true when it ended with OK.
    virtual bool RunRecordEditor(CDlnDictionaryAdd& editor) = 0;
    virtual void EndDialog(int nResult) = 0;
};

class CDlgDrawPanel {
public:
    enum FIELD { fieldWidth, fieldHeight, fieldThick, fieldScale };

    // Reads the remembered field texts and axis flags.
    CDlgDrawPanel();

    void OnInitDialog(IDlgDrawPanelView& view);
    // "绘制": true when the dialog ended with OK; false leaves it open.
    bool OnOK();
    // "关闭".
    void OnClose();
    // The three "点取" buttons: the span of two picked points, times the ratio.
    void OnPickWidth() { PickSpan(m_strWidth); }
    void OnPickHeight() { PickSpan(m_strHeight); }
    void OnPickThick() { PickSpan(m_strThick); }
    // The catalogue list: double-click fills the sizes; "删除", "修改", "库扩充".
    void OnDblclkList();
    void OnDeletePanel();
    void OnChangePanel();
    void OnAddPanel();

    void LoadPanelLib() { m_catalogue.LoadPanelLib(); }
    bool SavePanelLib() const { return m_catalogue.SavePanelLib(); }
    void RefreshPanelList();

    std::wstring m_strTitle; // "面板编辑" for EditPanel; empty for DrawPanel
    int m_nAxisX = 1, m_nAxisY = 1, m_nAxisZ = 1;
    std::wstring m_strDwgPath;
    int m_bDwgTitled = 0;
    std::wstring m_strDwgScale; // the drawing's scale when the dialog opened
    std::wstring m_strScale;    // the scale box's text at OK time
    CStringArray m_arrScales;
    CStringArray& m_arrPanels;
    std::wstring m_strWidth, m_strHeight, m_strThick; // real millimetres
    std::wstring m_strMessage;

private:
    bool Refuse(int nField, const wchar_t* pszText);
    bool CheckFields();
    bool CheckScale(const std::wstring& strScale);
    void ReadDrawingScale();
    void ApplyScaleToDrawing(const std::wstring& strScale, double dRatio);
    void PickSpan(std::wstring& strField);

    IDlgDrawPanelView* m_pView = nullptr;
    CPanelCatalogue m_catalogue;
};

// Every dimension style of the drawing gets the ratio as its linear factor, and the
// current style's values become the drawing's, so that measured dimensions show real sizes.
class AcDbDatabase;
void SetDimStylesLinearFactor(AcDbDatabase* pDb, double dRatio);
