// The import's file dialog: QFileDialog with the platform filter turned into Qt's.
#include "library/views/QtFileDialogHost.h"

#include "base/SysPath.h"
#include "host/HostEditor.h"

#include <QFileDialog>
#include <QStringList>

QString CQtFileDialogHost::QtFilter(const std::wstring& strFilter) {
    QStringList parts = QString::fromStdWString(strFilter).split(QLatin1Char('|'));
    QStringList filters;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        if (parts[i].isEmpty())
            continue;
        QString strPatterns = parts[i + 1];
        strPatterns.replace(QLatin1Char(';'), QLatin1Char(' '));
        filters << parts[i] + QStringLiteral(" (") + strPatterns + QLatin1Char(')');
    }
    return filters.join(QStringLiteral(";;"));
}

bool CQtFileDialogHost::ChooseFiles(const FILE_DIALOG_REQUEST& request,
                                    std::vector<std::wstring>& paths) {
    QFileDialog dialog(acedGetAcadFrame(), QString::fromStdWString(request.strTitle),
                       QString::fromStdString(ToOsPath(request.strInitialDir)),
                       QtFilter(request.strFilter));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(request.bMultiSelect ? QFileDialog::ExistingFiles
                                            : QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    paths.clear();
    for (const QString& strFile : dialog.selectedFiles())
        paths.push_back(FromOsPath(strFile.toStdString()));
    return !paths.empty();
}
