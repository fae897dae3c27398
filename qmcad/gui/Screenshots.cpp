// The README's screenshots: the demo panel drawn, cut where the editor can, shown two ways.
#include "gui/Screenshots.h"

#include "base/Format.h"
#include "demo/DemoPanel.h"
#include "gui/MainWindow.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>

#include <cstdio>

namespace {

std::wstring HandleText(AcDbObjectId id) {
    wchar_t buf[32];
    id.handle().getIntoAsciiBuffer(buf);
    return buf;
}

// The cutouts subtracted from the plate when the editor has the command.
void CutPanel(CEditorHost& editor, const DEMO_PANEL& panel) {
    if (!editor.m_commands.Find(L"_subtract"))
        return;
    std::vector<std::wstring> words{L"_subtract", HandleText(panel.idSolid), L""};
    for (AcDbObjectId id : panel.cutoutSolids)
        words.push_back(HandleText(id));
    words.push_back(L"");
    editor.Command(words);
}

bool Save(CMainWindow& window, const QString& path) {
    QApplication::processEvents();
    if (window.grab().save(path, "PNG")) {
        std::printf("qmcad: wrote %s\n", path.toLocal8Bit().constData());
        return true;
    }
    std::fprintf(stderr, "qmcad: cannot write %s\n", path.toLocal8Bit().constData());
    return false;
}

} // namespace

bool WriteScreenshots(CMainWindow& window, CEditorHost& editor, const std::string& strDir) {
    QDir dir(QString::fromStdString(strDir));
    if (!dir.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "qmcad: cannot make %s\n", strDir.c_str());
        return false;
    }
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    if (!pDb)
        return false;
    DEMO_PANEL left = AddDemoPanel(*pDb, AcGePoint3d(0, 0, 0));
    DEMO_PANEL right = AddDemoPanel(*pDb, AcGePoint3d(700, 0, 0));
    window.resize(1600, 1000);
    window.show();
    CutPanel(editor, left);
    CutPanel(editor, right);
    editor.ExecuteLine(L"ZOOM E", true);
    window.Refresh();
    window.CommandLine()->Print(L"命令: ");
    bool bOk = Save(window, dir.filePath(QStringLiteral("qmcad-plan.png")));
    window.SetIsometricView();
    window.SetShade(SHADE_MODE::Gouraud);
    window.CommandLine()->Print(
        L"_.-view\n输入选项 [?/删除(D)/正交(O)/恢复(R)/保存(S)/设置(E)/窗口(W)]: _swiso\n"
        L"命令: _.shademode\n输入选项 "
        L"[二维线框(2)/线框(W)/隐藏(H)/真实(R)/概念(C)/着色(S)/其他(O)] <二维线框>: _g\n命令: ");
    return Save(window, dir.filePath(QStringLiteral("qmcad-shaded.png"))) && bOk;
}
