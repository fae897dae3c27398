"""Makes ezdxf_records.dxf, the records fixture written by python3-ezdxf (GBK, AutoCAD 2000).

Run with /usr/bin/python3 from this directory; the output is committed.
"""
import ezdxf

doc = ezdxf.new("R2000")
doc.encoding = "gbk"
for app in ("TZ_KKDOTPT_FLAG", "TZ_FUNCENTERPT_FLAG", "TZ_SYMB2_LABEL", "DZB_ORIGINPOINT_POS",
            "DZB_TOTAL_WIDTH_WL", "TZ_SYMB2_SymbJxOrderNo", "TZ_COUNTS"):
    doc.appids.new(app)
rd = doc.rootdict
dwg = rd.add_new_dict("TZ_DWG_DICITIONARY")
dwg.add_xrecord("TZ_SCALE_XRECORD").reset([(1, " 比 例 "), (1, "50")])
dwg.add_xrecord("TZ_LOCATION_XRECORD").reset([(1, "图纸位置"), (1, "+A1 柜"), (1, "位置"), (1, "x")])
parts = rd.add_new_dict("TZ_DICITIONARY_PART2DATABASE")
for n in (1, 3, 5, 9):
    parts.add_xrecord(f"TZ_XRECORD_ONEPART2_{n}").reset(
        [(1, "$Location"), (1, ""), (1, "$LABEL"), (1, f"KM{n}"), (1, "$NAME"), (1, "接触器")])
msp = doc.modelspace()
dot = msp.add_lwpolyline([(9.5, 5, 2, 2, 1), (10.5, 5, 2, 2, 1)], format="xyseb", close=True)
dot.set_xdata("TZ_KKDOTPT_FLAG", [(1000, "")])
centre = msp.add_circle((0, 0), 1)
centre.set_xdata("TZ_FUNCENTERPT_FLAG", [(1000, "")])
centre.new_extension_dict().add_xrecord(" tz_symb_bomandlabel ").reset(
    [(1, "推荐名称"), (1, "按钮"), (1, "推荐型号"), (1, "LA38")])
text = msp.add_text("端子排", dxfattribs={"insert": (1, 2)})
text.set_xdata("DZB_ORIGINPOINT_POS", [(1010, (1, 2, 3))])
text.set_xdata("DZB_TOTAL_WIDTH_WL", [(1040, 12.5)])
text.set_xdata("TZ_COUNTS", [(1070, -3), (1071, 100000)])
text.set_xdata("TZ_SYMB2_SymbJxOrderNo", [(1000, "第1"), (1000, "第2")])
doc.saveas("ezdxf_records.dxf")
