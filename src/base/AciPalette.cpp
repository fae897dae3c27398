// The index palette: ten named colours, 24 hues in five strengths full and pale, six greys.
#include "base/AciPalette.h"

#include <algorithm>
#include <array>

namespace {

// The palette's 24 hues, 15 degrees apart from red, as quarters of full
// strength for red, green and blue.
void HueQuarters(int nHue, int q[3]) {
    int nSector = nHue / 4, up = nHue % 4, down = 4 - up;
    const int kSectors[6][3] = {{4, up, 0},   {down, 4, 0}, {0, 4, up},
                                {0, down, 4}, {up, 0, 4},   {4, 0, down}};
    for (int i = 0; i < 3; ++i)
        q[i] = kSectors[nSector][i];
}

std::array<COLORREF, 256> MakeAciTable() {
    std::array<COLORREF, 256> t{};
    const COLORREF kFirst[10] = {RGB(255, 255, 255), RGB(255, 0, 0),     RGB(255, 255, 0),
                                 RGB(0, 255, 0),     RGB(0, 255, 255),   RGB(0, 0, 255),
                                 RGB(255, 0, 255),   RGB(255, 255, 255), RGB(128, 128, 128),
                                 RGB(192, 192, 192)};
    std::copy(std::begin(kFirst), std::end(kFirst), t.begin());
    // Each hue in five strengths, each strength full and pale (halfway to grey).
    const double kStrength[5] = {255, 204, 153, 127, 76};
    for (int nHue = 0; nHue < 24; ++nHue) {
        int q[3];
        HueQuarters(nHue, q);
        for (int k = 0; k < 10; ++k) {
            double v = kStrength[k / 2];
            int rgb[3];
            for (int i = 0; i < 3; ++i) {
                double c = v * q[i] / 4;
                rgb[i] = static_cast<int>(k % 2 ? (v + c) / 2 : c);
            }
            t[10 + nHue * 10 + k] = RGB(rgb[0], rgb[1], rgb[2]);
        }
    }
    const int kGreys[6] = {51, 80, 105, 130, 190, 255};
    for (int i = 0; i < 6; ++i)
        t[250 + i] = RGB(kGreys[i], kGreys[i], kGreys[i]);
    return t;
}

} // namespace

COLORREF AciColour(int nIndex) {
    static const std::array<COLORREF, 256> kTable = MakeAciTable();
    return kTable[static_cast<size_t>(nIndex) & 0xFF];
}
