// The demo's items with the sizes of the catalogues designers cut to.
#include "demo/DemoCatalogue.h"

#include <cwchar>
#include <iterator>

namespace {

using S = CUTOUT_SHAPE;

// Door devices are cut to their standard openings; plate devices are fixed with tapped holes.
constexpr DEMO_CUTOUT kCutouts[] = {
    {L"按钮指示灯\\22mm按钮.dwg", S::Circle, 22.3, 0, 0, 0, 0, L"SB1", L"按钮", L"LA38-11"},
    {L"按钮指示灯\\22mm带灯按钮.dwg", S::Circle, 22.3, 0, 0, 0, 0, L"SB2", L"带灯按钮",
     L"LA38-11D"},
    {L"按钮指示灯\\22mm指示灯.dwg", S::Circle, 22.3, 0, 0, 0, 0, L"HL1", L"指示灯", L"AD16-22D"},
    {L"按钮指示灯\\16mm指示灯.dwg", S::Circle, 16.2, 0, 0, 0, 0, L"HL2", L"指示灯", L"AD16-16C"},
    {L"按钮指示灯\\30mm按钮.dwg", S::Circle, 30.5, 0, 0, 0, 0, L"SB3", L"按钮", L"LAY5-EA31"},
    {L"按钮指示灯\\急停按钮.dwg", S::Circle, 22.3, 0, 0, 0, 0, L"SB0", L"急停按钮", L"LA38-11ZS"},
    {L"按钮指示灯\\钥匙开关.dwg", S::Circle, 22.3, 0, 0, 0, 0, L"SA2", L"钥匙开关", L"LA38-11Y"},
    {L"按钮指示灯\\选择开关.dwg", S::Circle, 22.3, 0, 0, 0, 0, L"SA1", L"选择开关", L"LA38-11X2"},
    {L"按钮指示灯\\蜂鸣器.dwg", S::Circle, 22.3, 0, 0, 0, 0, L"HA1", L"蜂鸣器", L"AD16-22SM"},
    {L"按钮指示灯\\万能转换开关.dwg", S::Circle, 10.5, 0, 4.5, 36, 0, L"SA3", L"转换开关",
     L"LW12-16"},
    {L"仪表\\96x96电流表.dwg", S::Rect, 92, 92, 0, 0, 0, L"PA1", L"电流表", L"6L2-A 96"},
    {L"仪表\\96x96电压表.dwg", S::Rect, 92, 92, 0, 0, 0, L"PV1", L"电压表", L"6L2-V 96"},
    {L"仪表\\72x72电流表.dwg", S::Rect, 68, 68, 0, 0, 0, L"PA2", L"电流表", L"6L2-A 72"},
    {L"仪表\\48x48温控器.dwg", S::Rect, 45, 45, 0, 0, 0, L"TC1", L"温控器", L"XMTD-2001"},
    {L"仪表\\96x48数显表.dwg", S::Rect, 92, 45, 0, 0, 0, L"PJ1", L"数显表", L"PZ96-E4"},
    {L"仪表\\多功能电力仪表.dwg", S::Rect, 92, 92, 0, 0, 0, L"PM1", L"电力仪表", L"PD194E-9S4"},
    {L"仪表\\电度表.dwg", S::Rect, 76, 45, 0, 0, 0, L"PJ2", L"电度表", L"DDS607"},
    {L"仪表\\频率表.dwg", S::Rect, 68, 68, 0, 0, 0, L"PF1", L"频率表", L"6L2-Hz 72"},
    {L"风扇\\FK6621风扇.dwg", S::Rect, 92, 92, 0, 0, 0, L"EF1", L"风扇过滤器", L"FK6621"},
    {L"风扇\\FK6622风扇.dwg", S::Rect, 125, 125, 0, 0, 0, L"EF2", L"风扇过滤器", L"FK6622"},
    {L"风扇\\FK6623风扇.dwg", S::Rect, 177, 177, 0, 0, 0, L"EF3", L"风扇过滤器", L"FK6623"},
    {L"风扇\\FK6624风扇.dwg", S::Rect, 224, 224, 0, 0, 0, L"EF4", L"风扇过滤器", L"FK6624"},
    {L"风扇\\FK6625风扇.dwg", S::Rect, 291, 291, 0, 0, 0, L"EF5", L"风扇过滤器", L"FK6625"},
    {L"风扇\\120轴流风扇.dwg", S::Circle, 114, 0, 4.5, 105, 105, L"EF6", L"轴流风扇", L"FP-108EX"},
    {L"断路器\\小型断路器1P.dwg", S::Rect, 18, 45, 0, 0, 0, L"QF1", L"小型断路器", L"DZ47-63 1P"},
    {L"断路器\\小型断路器2P.dwg", S::Rect, 36, 45, 0, 0, 0, L"QF2", L"小型断路器", L"DZ47-63 2P"},
    {L"断路器\\小型断路器3P.dwg", S::Rect, 54, 45, 0, 0, 0, L"QF3", L"小型断路器", L"DZ47-63 3P"},
    {L"断路器\\小型断路器4P.dwg", S::Rect, 72, 45, 0, 0, 0, L"QF4", L"小型断路器", L"DZ47-63 4P"},
    {L"断路器\\塑壳断路器125.dwg", S::Rect, 25, 50, 5.5, 25, 111, L"QF5", L"塑壳断路器",
     L"NM1-125S/3300"},
    {L"断路器\\塑壳断路器250.dwg", S::Rect, 35, 65, 5.5, 35, 126, L"QF6", L"塑壳断路器",
     L"NM1-250S/3300"},
    {L"断路器\\旋转操作手柄.dwg", S::Circle, 48, 0, 5.5, 50, 50, L"QS1", L"操作手柄",
     L"NM1-125 手柄"},
    {L"接触器\\CJX2-0910安装孔.dwg", S::None, 0, 0, 4.5, 35, 50, L"KM1", L"交流接触器",
     L"CJX2-0910"},
    {L"接触器\\CJX2-1810安装孔.dwg", S::None, 0, 0, 4.5, 40, 60, L"KM2", L"交流接触器",
     L"CJX2-1810"},
    {L"接触器\\CJX2-3210安装孔.dwg", S::None, 0, 0, 5.5, 50, 70, L"KM3", L"交流接触器",
     L"CJX2-3210"},
    {L"接触器\\CJX2-6511安装孔.dwg", S::None, 0, 0, 5.5, 100, 65, L"KM4", L"交流接触器",
     L"CJX2-6511"},
    {L"接触器\\JR36热继电器安装孔.dwg", S::None, 0, 0, 4.5, 42, 0, L"FR1", L"热继电器", L"JR36-20"},
    {L"端子排\\35导轨固定孔.dwg", S::Slot, 10, 5, 0, 0, 0, L"1XT", L"导轨", L"TS35"},
    {L"端子排\\UK2.5B端子10位.dwg", S::Slot, 10, 5.2, 4.5, 61, 0, L"1XT", L"接线端子",
     L"UK2.5B x10"},
    {L"端子排\\UK2.5B端子20位.dwg", S::Slot, 10, 5.2, 4.5, 122, 0, L"2XT", L"接线端子",
     L"UK2.5B x20"},
    {L"端子排\\UK6N端子10位.dwg", S::Slot, 10, 5.2, 4.5, 82, 0, L"3XT", L"接线端子", L"UK6N x10"},
    {L"端子排\\线槽固定孔.dwg", S::Slot, 12, 6, 0, 0, 0, L"", L"", L""},
    {L"触摸屏\\7寸触摸屏.dwg", S::Rect, 192, 138, 0, 0, 0, L"HMI1", L"触摸屏", L"TPC7062Ti"},
    {L"触摸屏\\10寸触摸屏.dwg", S::Rect, 255, 185, 0, 0, 0, L"HMI2", L"触摸屏", L"TPC1061Ti"},
    {L"触摸屏\\文本显示器.dwg", S::Rect, 142, 86, 0, 0, 0, L"HMI3", L"文本显示器", L"TD400C"},
    {L"5x10腰形孔.dwg", S::Slot, 10, 5, 0, 0, 0, L"", L"", L""},
    {L"6x12腰形孔.dwg", S::Slot, 12, 6, 0, 0, 0, L"", L"", L""},
    {L"M4安装孔.dwg", S::Circle, 4.5, 0, 0, 0, 0, L"", L"", L""},
    {L"M5安装孔.dwg", S::Circle, 5.5, 0, 0, 0, 0, L"", L"", L""},
    {L"M6安装孔.dwg", S::Circle, 6.6, 0, 0, 0, 0, L"", L"", L""},
};

// Faces: y grows upwards from the panel's lower left corner.
constexpr DEMO_PLACE kPlcDoor[] = {
    {L"触摸屏\\7寸触摸屏.dwg", 300, 600},      {L"按钮指示灯\\22mm指示灯.dwg", 180, 430},
    {L"按钮指示灯\\22mm指示灯.dwg", 260, 430}, {L"按钮指示灯\\22mm指示灯.dwg", 340, 430},
    {L"按钮指示灯\\22mm按钮.dwg", 180, 340},   {L"按钮指示灯\\22mm按钮.dwg", 260, 340},
    {L"按钮指示灯\\选择开关.dwg", 340, 340},   {L"按钮指示灯\\急停按钮.dwg", 440, 380},
    {L"风扇\\FK6622风扇.dwg", 300, 130},
};
constexpr DEMO_PLACE kPumpDoor[] = {
    {L"仪表\\96x96电流表.dwg", 150, 560},      {L"仪表\\96x96电压表.dwg", 350, 560},
    {L"按钮指示灯\\22mm指示灯.dwg", 130, 400}, {L"按钮指示灯\\22mm指示灯.dwg", 210, 400},
    {L"按钮指示灯\\22mm指示灯.dwg", 290, 400}, {L"按钮指示灯\\22mm按钮.dwg", 130, 310},
    {L"按钮指示灯\\22mm按钮.dwg", 210, 310},   {L"按钮指示灯\\万能转换开关.dwg", 370, 350},
    {L"按钮指示灯\\急停按钮.dwg", 250, 200},
};
constexpr DEMO_PLACE kIncomerDoor[] = {
    {L"仪表\\多功能电力仪表.dwg", 400, 1900},   {L"仪表\\96x96电流表.dwg", 200, 1700},
    {L"仪表\\96x96电流表.dwg", 400, 1700},      {L"仪表\\96x96电流表.dwg", 600, 1700},
    {L"按钮指示灯\\22mm指示灯.dwg", 250, 1500}, {L"按钮指示灯\\22mm指示灯.dwg", 400, 1500},
    {L"按钮指示灯\\22mm指示灯.dwg", 550, 1500}, {L"断路器\\塑壳断路器250.dwg", 400, 1150},
    {L"风扇\\FK6624风扇.dwg", 400, 300},
};
constexpr DEMO_PLACE kFeederDoor[] = {
    {L"断路器\\塑壳断路器125.dwg", 200, 1800}, {L"仪表\\72x72电流表.dwg", 420, 1800},
    {L"断路器\\塑壳断路器125.dwg", 200, 1400}, {L"仪表\\72x72电流表.dwg", 420, 1400},
    {L"断路器\\塑壳断路器125.dwg", 200, 1000}, {L"仪表\\72x72电流表.dwg", 420, 1000},
    {L"风扇\\FK6623风扇.dwg", 300, 300},
};
constexpr DEMO_PLACE kDesk[] = {
    {L"触摸屏\\10寸触摸屏.dwg", 220, 220},       {L"按钮指示灯\\22mm带灯按钮.dwg", 450, 300},
    {L"按钮指示灯\\22mm带灯按钮.dwg", 530, 300}, {L"按钮指示灯\\22mm带灯按钮.dwg", 610, 300},
    {L"按钮指示灯\\22mm按钮.dwg", 450, 200},     {L"按钮指示灯\\22mm按钮.dwg", 530, 200},
    {L"按钮指示灯\\22mm按钮.dwg", 610, 200},     {L"按钮指示灯\\钥匙开关.dwg", 720, 250},
    {L"按钮指示灯\\蜂鸣器.dwg", 800, 250},       {L"按钮指示灯\\30mm按钮.dwg", 900, 250},
};
constexpr DEMO_PLACE kPlcPlate[] = {
    {L"端子排\\35导轨固定孔.dwg", 100, 800},    {L"端子排\\35导轨固定孔.dwg", 600, 800},
    {L"断路器\\小型断路器3P.dwg", 150, 800},    {L"断路器\\小型断路器1P.dwg", 220, 800},
    {L"接触器\\CJX2-0910安装孔.dwg", 150, 600}, {L"接触器\\CJX2-0910安装孔.dwg", 250, 600},
    {L"接触器\\CJX2-1810安装孔.dwg", 370, 600}, {L"接触器\\JR36热继电器安装孔.dwg", 500, 600},
    {L"端子排\\UK2.5B端子20位.dwg", 200, 150},  {L"端子排\\UK6N端子10位.dwg", 480, 150},
};
constexpr DEMO_PLACE kMotorPlate[] = {
    {L"断路器\\小型断路器4P.dwg", 150, 600},       {L"断路器\\小型断路器2P.dwg", 250, 600},
    {L"接触器\\CJX2-3210安装孔.dwg", 150, 430},    {L"接触器\\CJX2-3210安装孔.dwg", 300, 430},
    {L"接触器\\JR36热继电器安装孔.dwg", 150, 300}, {L"接触器\\JR36热继电器安装孔.dwg", 300, 300},
    {L"端子排\\UK2.5B端子10位.dwg", 250, 120},
};
constexpr DEMO_PLACE kFanDoor[] = {
    {L"风扇\\FK6625风扇.dwg", 300, 760},       {L"风扇\\FK6625风扇.dwg", 300, 250},
    {L"仪表\\48x48温控器.dwg", 300, 520},      {L"按钮指示灯\\16mm指示灯.dwg", 200, 520},
    {L"按钮指示灯\\16mm指示灯.dwg", 400, 520},
};

#define DEMO_FACE(path, caption, w, h, t, places)                                                  \
    { path, caption, w, h, t, places, std::size(places) }
constexpr DEMO_LAYOUT kLayouts[] = {
    DEMO_FACE(L"控制箱\\PLC控制箱门板.dwg", L"PLC控制箱门板 600x800", 600, 800, 2, kPlcDoor),
    DEMO_FACE(L"控制箱\\水泵控制箱门板.dwg", L"水泵控制箱门板 500x700", 500, 700, 1.5, kPumpDoor),
    DEMO_FACE(L"配电柜\\GGD进线柜门板.dwg", L"GGD进线柜门板 800x2200", 800, 2200, 2, kIncomerDoor),
    DEMO_FACE(L"配电柜\\MNS出线柜门板.dwg", L"MNS出线柜门板 600x2200", 600, 2200, 2, kFeederDoor),
    DEMO_FACE(L"操作台\\操作台面板.dwg", L"操作台面板 1000x400", 1000, 400, 2, kDesk),
    DEMO_FACE(L"安装板\\PLC安装板.dwg", L"PLC安装板 700x900", 700, 900, 2.5, kPlcPlate),
    DEMO_FACE(L"安装板\\电机控制安装板.dwg", L"电机控制安装板 500x700", 500, 700, 2, kMotorPlate),
    DEMO_FACE(L"风机箱\\通风散热门板.dwg", L"通风散热门板 600x1000", 600, 1000, 1.5, kFanDoor),
};
#undef DEMO_FACE

constexpr const wchar_t* kCatalogue[] = {
    L"PLC控制箱门板:600x800x2",  L"水泵控制箱门板:500x700x1.5", L"GGD柜门板:800x2200x2",
    L"MNS柜门板:600x2200x2",     L"操作台面板:1000x400x2",      L"安装板:700x900x2.5",
    L"电机控制安装板:500x700x2", L"风机箱门板:600x1000x1.5",    L"挂墙箱门板:400x500x1.2",
};
constexpr const wchar_t* kScales[] = {L"1:1", L"1:2", L"1:2.5", L"1:5", L"1:10", L"1:20", L"1:50"};

} // namespace

const DEMO_CUTOUT* DemoCutouts(size_t& nCount) {
    nCount = std::size(kCutouts);
    return kCutouts;
}

const DEMO_CUTOUT* FindDemoCutout(const wchar_t* pszRelPath) {
    for (const DEMO_CUTOUT& item : kCutouts)
        if (std::wcscmp(item.pszRelPath, pszRelPath) == 0)
            return &item;
    return nullptr;
}

const DEMO_LAYOUT* DemoLayouts(size_t& nCount) {
    nCount = std::size(kLayouts);
    return kLayouts;
}

const wchar_t* const* DemoPanelCatalogue(size_t& nCount) {
    nCount = std::size(kCatalogue);
    return kCatalogue;
}

const wchar_t* const* DemoScales(size_t& nCount) {
    nCount = std::size(kScales);
    return kScales;
}
