// The import's file dialog shown with Qt on the host's frame.
#pragma once

#include "library/MyFileDialog.h"

#include <QString>

class CQtFileDialogHost : public IFileDialogHost {
public:
    bool ChooseFiles(const FILE_DIALOG_REQUEST& request, std::vector<std::wstring>& paths) override;
    // The platform's "Name(*.ext)|*.ext|" pairs as Qt's "Name(*.ext) (*.ext);;" filters.
    static QString QtFilter(const std::wstring& strFilter);
};
