// View axes, projection to view coordinates and the preset view directions.
#include "view/ViewState.h"

#include <cmath>
#include <cwctype>
#include <string>

namespace {

AcGeVector3d Normalised(const AcGeVector3d& v) {
    double len = v.length();
    return len > 0 ? v * (1.0 / len) : AcGeVector3d(0, 0, 1);
}

AcGeVector3d Cross(const AcGeVector3d& a, const AcGeVector3d& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double Dot(const AcGeVector3d& a, const AcGeVector3d& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

} // namespace

bool VIEW_STATE::IsPlan() const {
    AcGeVector3d d = Normalised(direction);
    return std::fabs(d.x) < 1e-9 && std::fabs(d.y) < 1e-9 && d.z > 0;
}

VIEW_AXES ViewAxes(const AcGeVector3d& direction) {
    VIEW_AXES axes;
    axes.z = Normalised(direction);
    AcGeVector3d x = Cross(AcGeVector3d(0, 0, 1), axes.z);
    if (x.length() < 1e-9)
        x = axes.z.z > 0 ? AcGeVector3d(1, 0, 0) : AcGeVector3d(-1, 0, 0);
    axes.x = Normalised(x);
    axes.y = Cross(axes.z, axes.x);
    return axes;
}

VIEW_COORD ToView(const VIEW_AXES& axes, const AcGePoint3d& target, const AcGePoint3d& p) {
    AcGeVector3d d = p - target;
    return {Dot(d, axes.x), Dot(d, axes.y), Dot(d, axes.z)};
}

bool PresetViewDirection(const std::wstring& strWord, AcGeVector3d& direction) {
    std::wstring w;
    for (wchar_t c : strWord)
        if (c != L'_' && c != L'.')
            w += static_cast<wchar_t>(std::towlower(c));
    struct PRESET {
        const wchar_t* pName;
        AcGeVector3d dir;
    };
    static const PRESET kPresets[] = {
        {L"top", {0, 0, 1}},     {L"bottom", {0, 0, -1}}, {L"left", {-1, 0, 0}},
        {L"right", {1, 0, 0}},   {L"front", {0, -1, 0}},  {L"back", {0, 1, 0}},
        {L"swiso", {-1, -1, 1}}, {L"seiso", {1, -1, 1}},  {L"neiso", {1, 1, 1}},
        {L"nwiso", {-1, 1, 1}},
    };
    for (const PRESET& preset : kPresets)
        if (w == preset.pName) {
            direction = preset.dir;
            return true;
        }
    return false;
}
