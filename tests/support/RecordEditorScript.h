// A scripted stand-in for the record editor's window: fills the fields, presses OK until refused or
// accepted.
#pragma once

#include "panel/DlnDictionaryAdd.h"
#include "panel/PanelCatalogue.h"

#include <string>

// Records what the editor was opened with, then types the fields given and
// presses OK once; a refusal counts as cancelling the window.
struct RECORD_EDITOR_SCRIPT {
    bool bPressOk = true;
    std::wstring strDesc, strW, strH, strT;
    bool bTypeFields = true;

    CDlnDictionaryAdd opened; // the editor's state right after opening
    int nOpened = 0;

    RECORD_EDITOR Editor() {
        return [this](CDlnDictionaryAdd& dlg) {
            dlg.OnInitDialog();
            opened = dlg;
            ++nOpened;
            if (!bPressOk)
                return false;
            if (bTypeFields) {
                dlg.m_strDesc = strDesc;
                dlg.m_strW = strW;
                dlg.m_strH = strH;
                dlg.m_strT = strT;
            }
            return dlg.OnOK();
        };
    }
};
