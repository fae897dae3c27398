// View commands: shade mode, preset views, orbit, zoom, pan, grid, and the slide and PNG outputs.
#include "editor/EditorHost.h"
#include "editor/NativeCommands.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "solid/OcctModeler.h"
#include "view/SlideOut.h"

namespace {

std::wstring Option(const std::wstring& strAnswer) {
    return StrMakeUpper(StrTrimLeft(StrTrim(strAnswer), L"_."));
}

// What the current document's view shows now, projected for the window.
CProjectedView Project(CEditorHost& ed, CDisplayList& list) {
    CHostDocument* pDoc = ed.Doc();
    BuildDisplayList(*pDoc->database(), pDoc->m_view, &GetOcctModeler(), list);
    return ProjectDisplayList(list, pDoc->m_view, ed.m_nScreenWidth, ed.m_nScreenHeight);
}

void ZoomExtents(CEditorHost& ed) {
    CHostDocument* pDoc = ed.Doc();
    CDisplayList list;
    BuildDisplayList(*pDoc->database(), pDoc->m_view, &GetOcctModeler(), list);
    ZoomViewToExtents(list, ed.m_nScreenWidth, ed.m_nScreenHeight, pDoc->m_view);
}

int ShadeMode(CEditorHost& ed) {
    std::wstring strAnswer;
    if (!ed.Doc())
        return RTERROR;
    if (!ed.GetInput(L"输入选项 "
                     L"[二维线框(2D)/三维线框(3D)/消隐(H)/平面着色(F)/体着色(G)/带边框平面着色(L)/"
                     L"带边框体着色(O)] <二维线框>: ",
                     strAnswer))
        return RTCAN;
    std::wstring s = Option(strAnswer);
    SHADE_MODE& mode = ed.Doc()->m_view.eShade;
    if (s.empty() || s == L"2D" || s == L"3D" || s == L"H")
        mode = SHADE_MODE::Wireframe2d;
    else if (s == L"G" || s == L"F" || s == L"L" || s == L"O")
        mode = SHADE_MODE::Gouraud;
    else {
        ed.Print(L"需要选项关键字。\n");
        return RTERROR;
    }
    return RTNORM;
}

int View(CEditorHost& ed) {
    std::wstring strAnswer;
    if (!ed.Doc())
        return RTERROR;
    if (!ed.GetInput(L"输入选项 [?/删除(D)/正交(O)/恢复(R)/保存(S)/设置(E)/窗口(W)]: ", strAnswer))
        return RTCAN;
    std::wstring s = Option(strAnswer);
    if (s == L"O" || s == L"ORTHOGRAPHIC") {
        if (!ed.GetInput(L"输入选项 [俯视(T)/仰视(B)/主视(F)/后视(BA)/左视(L)/右视(R)]: ",
                         strAnswer))
            return RTCAN;
        s = Option(strAnswer);
    }
    AcGeVector3d dir;
    if (!PresetViewDirection(s, dir)) {
        ed.Print(Format(L"无法找到视图“%s”。\n", StrTrim(strAnswer)));
        return RTERROR;
    }
    ed.Doc()->m_view.direction = dir;
    ZoomExtents(ed); // a preset view shows the whole drawing
    return RTNORM;
}

int Orbit(CEditorHost& ed) {
    if (!ed.Doc())
        return RTERROR;
    if (ed.m_interactiveView)
        return ed.m_interactiveView(L"3DORBIT");
    // Without a window to drag in, the orbit ends where it usually starts: south-east above.
    PresetViewDirection(L"seiso", ed.Doc()->m_view.direction);
    ZoomExtents(ed);
    return RTNORM;
}

int Zoom(CEditorHost& ed) {
    CHostDocument* pDoc = ed.Doc();
    if (!pDoc)
        return RTERROR;
    std::wstring strAnswer;
    if (!ed.GetInput(
            L"指定窗口的角点，输入比例因子 (nX 或 nXP)，或者 "
            L"[全部(A)/中心(C)/动态(D)/范围(E)/上一个(P)/比例(S)/窗口(W)/对象(O)] <实时>: ",
            strAnswer))
        return RTCAN;
    std::wstring s = Option(strAnswer);
    if (s == L"E" || s == L"EXTENTS" || s == L"A" || s == L"ALL") {
        ZoomExtents(ed);
        return RTNORM;
    }
    if (s.empty())
        return ed.m_interactiveView ? ed.m_interactiveView(L"RTZOOM") : RTNORM;
    AcGePoint3d a, b;
    bool bWindow = s == L"W" || s == L"WINDOW";
    if (bWindow && ed.m_input.GetPoint(nullptr, L"指定第一个角点: ", a) != RTNORM)
        return RTERROR;
    if (!bWindow && !ParsePointText(StrTrim(strAnswer), nullptr, a)) {
        // A scale factor: "2", "2x" (of the view) or "2xp".
        wchar_t* end = nullptr;
        double f = std::wcstod(s.c_str(), &end);
        if (end == s.c_str() || f <= 0) {
            ed.Print(L"需要点或选项关键字。\n");
            return RTERROR;
        }
        if (pDoc->m_view.dHeight <= 0)
            ZoomExtents(ed);
        pDoc->m_view.dHeight /= f;
        return RTNORM;
    }
    if (ed.m_input.GetCorner(a, L"指定对角点: ", b) != RTNORM)
        return RTERROR;
    if (!ZoomViewToWindow(a, b, ed.m_nScreenWidth, ed.m_nScreenHeight, pDoc->m_view)) {
        ed.Print(L"窗口无效。\n");
        return RTERROR;
    }
    return RTNORM;
}

int Grid(CEditorHost& ed) {
    std::wstring strAnswer;
    if (!ed.GetInput(
            L"指定栅格间距(X) 或 "
            L"[开(ON)/关(OFF)/捕捉(S)/主(M)/自适应(D)/界限(L)/跟随(F)/纵横向间距(A)] <10>: ",
            strAnswer))
        return RTCAN;
    std::wstring s = Option(strAnswer);
    int nMode = ed.m_vars.Short(L"GRIDMODE");
    if (s == L"ON")
        nMode = 1;
    else if (s == L"OFF")
        nMode = 0;
    else if (!s.empty() && std::wcstod(s.c_str(), nullptr) > 0)
        nMode = 1; // a spacing turns the grid on
    else if (!s.empty()) {
        ed.Print(L"需要点或选项关键字。\n");
        return RTERROR;
    }
    ed.m_vars.Set(L"GRIDMODE", SYSVAR_VALUE::Short(nMode));
    if (ed.Doc())
        ed.Doc()->m_view.bGrid = nMode != 0;
    return RTNORM;
}

// A path typed at a prompt: the system's form, or the OS's when it has a slash.
std::wstring PathAnswer(const std::wstring& strAnswer, const wchar_t* pExt) {
    std::wstring strPath = StrTrim(strAnswer);
    if (strPath.size() >= 2 && strPath.front() == L'"' && strPath.back() == L'"')
        strPath = strPath.substr(1, strPath.size() - 2);
    if (strPath.find(L'/') != std::wstring::npos)
        strPath = FromOsPath(WideToUtf8(strPath));
    size_t slash = strPath.find_last_of(L'\\');
    size_t dot = strPath.find_last_of(L'.');
    if (!strPath.empty() &&
        (dot == std::wstring::npos || (slash != std::wstring::npos && dot < slash)))
        strPath += pExt;
    return strPath;
}

int MakeSlide(CEditorHost& ed) {
    std::wstring strAnswer;
    if (!ed.Doc())
        return RTERROR;
    if (!ed.GetInput(L"输入幻灯片文件名: ", strAnswer))
        return RTCAN;
    std::wstring strPath = PathAnswer(strAnswer, L".sld");
    if (strPath.empty())
        return RTERROR;
    CDisplayList list;
    CSlide slide;
    MakeSlideOfView(Project(ed, list), slide);
    if (!WriteSlideFile(strPath, slide)) {
        ed.Print(Format(L"无法写入幻灯片文件“%s”。\n", strPath));
        return RTERROR;
    }
    return RTNORM;
}

int PngOut(CEditorHost& ed) {
    std::wstring strAnswer;
    if (!ed.Doc())
        return RTERROR;
    if (!ed.GetInput(L"输入 PNG 文件名: ", strAnswer))
        return RTCAN;
    std::wstring strPath = PathAnswer(strAnswer, L".png");
    CDisplayList list;
    CImageSurface surface;
    PaintProjectedView(surface, Project(ed, list), RGB(255, 255, 255));
    if (strPath.empty() || !WritePngFile(strPath, surface)) {
        ed.Print(Format(L"无法写入文件“%s”。\n", strPath));
        return RTERROR;
    }
    return RTNORM;
}

} // namespace

void AddViewCommands(CEditorHost& editor) {
    editor.AddCommand(L"SHADEMODE", [&editor] { return ShadeMode(editor); });
    editor.AddCommand(L"-VIEW", [&editor] { return View(editor); });
    editor.AddCommand(L"3DORBIT", [&editor] { return Orbit(editor); });
    editor.AddCommand(L"ZOOM", [&editor] { return Zoom(editor); });
    editor.AddCommand(L"RTPAN", [&editor] {
        return editor.m_interactiveView ? editor.m_interactiveView(L"RTPAN") : RTNORM;
    });
    editor.AddCommand(L"RTZOOM", [&editor] {
        return editor.m_interactiveView ? editor.m_interactiveView(L"RTZOOM") : RTNORM;
    });
    editor.AddCommand(L"GRID", [&editor] { return Grid(editor); });
    editor.AddCommand(L"MSLIDE", [&editor] { return MakeSlide(editor); });
    editor.AddCommand(L"PNGOUT", [&editor] { return PngOut(editor); });
}
