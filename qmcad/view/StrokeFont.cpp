// Glyphs as polylines on a grid four wide and six high (the cap height), baseline at 0.
#include "view/StrokeFont.h"

#include <cmath>
#include <cwctype>
#include <map>
#include <string>

namespace {

// Each glyph is polylines of digit pairs "xy".
const std::map<wchar_t, std::vector<const char*>>& Glyphs() {
    static const std::map<wchar_t, std::vector<const char*>> kGlyphs = {
        {L'0', {"103041453616050110", "1535"}},
        {L'1', {"152620", "1030"}},
        {L'2', {"05163645440040"}},
        {L'3', {"05163645443323", "334241301001"}},
        {L'4', {"3036", "360242"}},
        {L'5', {"460603334241301001"}},
        {L'6', {"36160501103041423303"}},
        {L'7', {"064610"}},
        {L'8', {"133342413010010213", "1304051636454433"}},
        {L'9', {"4313040516364541301001"}},
        {L'.', {"2021"}},
        {L',', {"2110"}},
        {L'-', {"1333"}},
        {L'+', {"1333", "2224"}},
        {L'=', {"0242", "0444"}},
        {L':', {"2122", "2425"}},
        {L'/', {"0046"}},
        {L'(', {"30121436"}},
        {L')', {"10323416"}},
        {L'%', {"0046", "0506", "4041"}},
        {L'*', {"1335", "1533", "2226"}},
        {L'_', {"0040"}},
        {L'#', {"1036", "3056", "0242", "0444"}},
        {0x03A6, {"113142443515040211", "2026"}}, // the diameter sign
        {0x00B0, {"1526352415"}},                 // degrees
        {L'A', {"002640", "1232"}},
        {L'B', {"00063645443303", "3342413000"}},
        {L'C', {"4536160501103041"}},
        {L'D', {"00062645412000"}},
        {L'E', {"46060040", "0333"}},
        {L'F', {"460600", "0333"}},
        {L'G', {"45361605011030414323"}},
        {L'H', {"0006", "4046", "0343"}},
        {L'I', {"1030", "2026", "1636"}},
        {L'J', {"4641301001"}},
        {L'K', {"0006", "4602", "1340"}},
        {L'L', {"060040"}},
        {L'M', {"0006234640"}},
        {L'N', {"00064046"}},
        {L'O', {"103041453616050110"}},
        {L'P', {"00063645443303"}},
        {L'Q', {"103041453616050110", "2240"}},
        {L'R', {"00063645443303", "2340"}},
        {L'S', {"453616050413334241301001"}},
        {L'T', {"0646", "2620"}},
        {L'U', {"060110304146"}},
        {L'V', {"062046"}},
        {L'W', {"0610233046"}},
        {L'X', {"0046", "0640"}},
        {L'Y', {"0623", "4623", "2320"}},
        {L'Z', {"06460040"}},
    };
    return kGlyphs;
}

} // namespace

void TextStrokes(const PX_TEXT& text, std::vector<std::pair<PX_POINT, PX_POINT>>& strokes) {
    double c = std::cos(text.dAngle), s = std::sin(text.dAngle);
    double unit = text.dHeight / 6.0, wf = text.dWidthFactor > 0 ? text.dWidthFactor : 1.0;
    // Screen y runs down: along the baseline is (c, -s), up the characters (-s, -c).
    auto at = [&](double pen, double gx, double gy) {
        // Glyphs take three quarters of their cell, so that neighbours keep apart.
        double x = pen + (0.45 + gx * 0.75) * unit * wf, y = gy * unit;
        return PX_POINT{text.origin.x + c * x - s * y, text.origin.y - s * x - c * y};
    };
    double pen = 0;
    for (wchar_t ch : text.strText) {
        bool bWide = ch >= 0x2E80;
        double advance = (bWide ? 6.0 : 4.2) * unit * wf;
        if (bWide) {
            PX_POINT box[4] = {at(pen, 0, 0), at(pen, 7, 0), at(pen, 7, 6), at(pen, 0, 6)};
            for (int i = 0; i < 4; ++i)
                strokes.emplace_back(box[i], box[(i + 1) % 4]);
        } else {
            auto it = Glyphs().find(static_cast<wchar_t>(std::towupper(ch)));
            if (it != Glyphs().end())
                for (const char* pLine : it->second) {
                    std::string line;
                    for (const char* p = pLine; *p; ++p)
                        if (*p != ' ')
                            line += *p;
                    for (size_t i = 0; i + 3 < line.size(); i += 2)
                        strokes.emplace_back(at(pen, line[i] - '0', line[i + 1] - '0'),
                                             at(pen, line[i + 2] - '0', line[i + 3] - '0'));
                }
        }
        pen += advance;
    }
}
