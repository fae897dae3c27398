// A scripted stand-in for the record editor's window: types the fields given and presses OK once.
#pragma once

#include "panel/DlnDictionaryAdd.h"
#include "panel/PanelCatalogue.h"

// A refusal counts as cancelling the window; without fields the editor's own stay.
struct RECORD_EDITOR_SCRIPT {
    bool bPressOk = true;
    CStringArray arrFields;   // description, width, height, thickness
    CDlnDictionaryAdd opened; // the editor right after opening

    RECORD_EDITOR Editor() {
        return [this](CDlnDictionaryAdd& dlg) {
            dlg.OnInitDialog();
            opened = dlg;
            if (arrFields.size() == 4) {
                dlg.m_strDesc = arrFields[0];
                dlg.m_strW = arrFields[1];
                dlg.m_strH = arrFields[2];
                dlg.m_strT = arrFields[3];
            }
            return bPressOk && dlg.OnOK();
        };
    }
};
