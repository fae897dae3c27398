"""Makes ezdxf_library.dxf and ezdxf_schematic.dxf, drawings written by python3-ezdxf (GBK,
AutoCAD 2000) for the symbol, wire and hand-over readers.

Run with /usr/bin/python3 from this directory; the outputs are committed.
"""
import ezdxf

APPS = ("TZ_SYMB1LIB_TERMPOINT", "TZ_SYMB2_LABEL", "TZ_SYMB2_location", "TZ_SYMB2_Location",
        "TZ_SYMB2_MULTI", "TZ_SYMB2_TERM_TEXT_1", "TZ_SYMB2_NoLineTerm", "TZ_CONNECT_DOT",
        "TEXTHANDLE", "LINEHANDLE", "DZP_NAME", "DZB_ORIGINPOINT_POS", "DZB_TOTAL_WIDTH_WL",
        "DZB_TOTAL_HEIGHT_HL")


def new_doc():
    doc = ezdxf.new("R2000")
    doc.encoding = "gbk"
    for app in APPS:
        if app not in doc.appids:  # the table folds case: one entry serves both location keys
            doc.appids.new(app)
    doc.layers.add("CONNECT")
    return doc


def symbol(doc, name, terminals, w, h):
    """A block with a frame and one terminal dot per (name, x, y)."""
    blk = doc.blocks.new_anonymous_block("U") if name == "*U" else doc.blocks.new(name)
    blk.add_lwpolyline([(0, 0), (w, 0), (w, h), (0, h)], close=True)
    for term, x, y in terminals:
        dot = blk.add_lwpolyline([(x - 0.5, y, 0, 0, 1), (x + 0.5, y, 0, 0, 1)],
                                 format="xyseb", close=True)
        dot.set_xdata("TZ_SYMB1LIB_TERMPOINT", [(1000, term)])
    return blk.name


def link(ref, text, forward, back):
    ref.set_xdata(forward, [(1005, text.dxf.handle)])
    text.set_xdata(back, [(1005, ref.dxf.handle)])


def labelled(msp, block, x, y, label, rotation=0, location=None):
    ref = msp.add_blockref(block, (x, y), dxfattribs={"rotation": rotation})
    link(ref, msp.add_text(label, dxfattribs={"insert": (x, y + 6)}), "TZ_SYMB2_LABEL",
         "TZ_SYMB2_LABEL")
    if location:
        link(ref, msp.add_mtext("{\\fSimSun;" + location + "}", dxfattribs={"insert": (x, y + 9)}),
             "TZ_SYMB2_location", "TZ_SYMB2_Location")
    return ref


def part(records, n, location, label, name, type_):
    records.add_xrecord(f"TZ_XRECORD_ONEPART2_{n}").reset(
        [(1, s) for s in ("$Location", location, "$LABEL", label, "$DESCRIBE", "", "$TYPE", type_,
                          "$CODE", "", "$NOTE", "", "$LABELDIS", "", "$NAME", name)])


def library():
    doc = new_doc()
    rd = doc.rootdict
    rd.add_new_dict("TZ_DWG_DICITIONARY").add_xrecord("TZ_LOCATION_XRECORD").reset(
        [(1, "位置"), (1, "+S")])
    records = rd.add_new_dict("TZ_DICITIONARY_PART2DATABASE")
    part(records, 1, "", "KM1", "接触器", "LC1-D09")
    part(records, 2, "+B", "QF1", "断路器", "C65N")
    part(records, 3, "", "SB9", "按钮", "LA38")
    part(records, 4, "", "X1", "端子排", "UK5N")
    coil = symbol(doc, "KM_COIL", [("A1", 0, 2), ("A2", 10, 2)], 10, 4)
    multi = symbol(doc, "*U", [("10", 0, 0), ("2", 4, 0), ("A", 8, 0), ("1", 12, 0)], 12, 3)
    msp = doc.modelspace()
    labelled(msp, coil, 0, 0, "KM1：A1 ", rotation=90)
    labelled(msp, coil, 30, 0, "QF1", location="+B")
    strip = labelled(msp, multi, 60, 0, "X1")
    strip.set_xdata("TZ_SYMB2_MULTI", [(1000, "端子排")])
    term_text = msp.add_text("PE", dxfattribs={"insert": (60, -3)})
    strip.set_xdata("TZ_SYMB2_TERM_TEXT_1", [(1000, "A"), (1005, term_text.dxf.handle)])
    term_text.set_xdata("TZ_SYMB2_TERM_TEXT_1", [(1005, strip.dxf.handle)])
    doc.saveas("ezdxf_library.dxf")


def schematic():
    doc = new_doc()
    resistor = symbol(doc, "R", [("1", 0, 0), ("2", 10, 0)], 10, 2)
    msp = doc.modelspace()
    wire = {"layer": "CONNECT"}
    device = labelled(msp, resistor, 0, 0, "KA1")
    device.set_xdata("TZ_SYMB2_NoLineTerm", [(1000, "1")])
    labelled(msp, resistor, 30, 0, "R1")
    labelled(msp, resistor, 30, 20, "R2")
    labelled(msp, resistor, 60, 20, "HL1")
    msp.add_line((0, 0), (0, 20), dxfattribs=wire)       # KA1:1 up
    msp.add_line((0, 20), (30, 20), dxfattribs=wire)      # corner to R2:1
    msp.add_line((10, 0), (30, 0), dxfattribs=wire)       # KA1:2 - R1:1
    first = msp.add_line((40, 20), (60, 20), dxfattribs=wire)  # R2:2 - HL1:1
    msp.add_line((50, 10), (50, 30), dxfattribs=wire)     # crosses it with a dot
    dot = msp.add_lwpolyline([(49.8, 20, 0, 0, 1), (50.2, 20, 0, 0, 1)], format="xyseb",
                             close=True)
    dot.set_xdata("TZ_CONNECT_DOT", [(1000, "")])
    msp.add_line((15, -10), (15, 10), dxfattribs=wire)    # crosses KA1:2 - R1:1, no dot
    msp.add_line((15, 10), (30, 10), dxfattribs=wire)
    msp.add_line((40, 0), (70, 0), dxfattribs={"layer": "MXB"})
    number = msp.add_text("101", dxfattribs={"insert": (45, 21)})
    first.set_xdata("TEXTHANDLE", [(1005, number.dxf.handle)])
    number.set_xdata("LINEHANDLE", [(1005, first.dxf.handle)])
    board = msp.add_text("X1", dxfattribs={"insert": (100, 0)})
    board.set_xdata("DZP_NAME", [(1000, "")])
    board.set_xdata("DZB_ORIGINPOINT_POS", [(1010, (5, 2, 0))])
    board.set_xdata("DZB_TOTAL_WIDTH_WL", [(1040, 30.0)])
    board.set_xdata("DZB_TOTAL_HEIGHT_HL", [(1040, 20.0)])
    labelled(msp, resistor, 96, -10, "X1")
    msp.add_line((106, -10), (120, -10), dxfattribs=wire)  # inside the board frame
    doc.saveas("ezdxf_schematic.dxf")


library()
schematic()
