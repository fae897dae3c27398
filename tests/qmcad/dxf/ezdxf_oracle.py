"""An independent reader and writer checks the reference host's drawing files both ways.

Usage: ezdxf_oracle.py <dxf_oracle_tool> <scratch dir>
Our writer's file must load in ezdxf, pass its audit with no error and show
the values written; files ezdxf writes (GBK and UTF-8) must read back with
the values ezdxf put in.
"""
import json
import math
import os
import subprocess
import sys

import ezdxf

TOOL, WORK = sys.argv[1], sys.argv[2]
failures = []


def check(what, got, want):
    ok = got == want
    if isinstance(want, float):
        ok = isinstance(got, (int, float)) and math.isclose(got, want, rel_tol=1e-9, abs_tol=1e-9)
    elif isinstance(want, (tuple, list)) and want and all(isinstance(v, float) for v in want):
        ok = len(got) == len(want) and all(math.isclose(a, b, abs_tol=1e-9) for a, b in zip(got, want))
    if not ok:
        failures.append(f"{what}: got {got!r}, want {want!r}")


def audit(doc, what):
    auditor = doc.audit()
    for e in auditor.errors:
        failures.append(f"{what}: audit error {e.code} {e.message}")
    return auditor


def dump(path):
    out = subprocess.run([TOOL, "dump", path], capture_output=True, check=True)
    return json.loads(out.stdout.decode("utf-8"))


def ours_to_ezdxf():
    path = os.path.join(WORK, "ours.dwg")
    subprocess.run([TOOL, "write", path], check=True)
    doc = ezdxf.readfile(path)
    check("code page", doc.header["$DWGCODEPAGE"], "ANSI_936")
    check("encoding", doc.encoding, "gbk")
    auditor = audit(doc, "ours")
    check("audit fixes", [f.message for f in auditor.fixes], [])
    msp = doc.modelspace()
    insert = msp.query("INSERT")[0]
    text = msp.query("TEXT")[0]
    check("insert block", insert.dxf.name, "SYM按钮")
    check("insert point", tuple(insert.dxf.insert), (100.0, 200.0, 0.0))
    check("insert scale", (insert.dxf.xscale, insert.dxf.yscale), (2.0, 3.0))
    check("insert rotation", insert.dxf.rotation, 30.0)
    check("label link", insert.get_xdata("TZ_SYMB2_LABEL"), [(1005, text.dxf.handle)])
    xd = insert.get_xdata("TZ_ALL_CODES")
    check("xdata codes", [t.code for t in xd], [1000, 1005, 1010, 1040, 1070, 1071])
    check("xdata 1000", xd[0].value, "中文值")
    check("xdata 1005", xd[1].value, text.dxf.handle)
    check("xdata 1010", tuple(xd[2].value), (1.5, -2.25, 3.0))
    check("xdata 1040", xd[3].value, 0.125)
    check("xdata 1070", xd[4].value, -12)
    check("xdata 1071", xd[5].value, 123456789)
    check("back link", text.get_xdata("TZ_SYMB2_LABEL"), [(1005, insert.dxf.handle)])
    xrec = insert.get_extension_dict()["TZ_SYMB_BOMANDLABEL"]
    check("ext xrecord", [tuple(t) for t in xrec.tags], [(1, "推荐名称"), (1, "按钮")])
    check("text", text.dxf.text, "标号 KM1")
    check("text align", (text.dxf.halign, text.dxf.valign), (1, 2))
    check("text align point", tuple(text.dxf.align_point), (3.0, 4.0, 0.0))
    scale = doc.rootdict["TZ_DWG_DICITIONARY"]["TZ_SCALE_XRECORD"]
    check("named xrecord", [tuple(t) for t in scale.tags], [(1, "比例"), (1, "1:50")])
    part = doc.rootdict["TZ_DICITIONARY_PART2DATABASE"]["TZ_XRECORD_ONEPART2_1"]
    check("part record", [t.value for t in part.tags], ["$Location", "", "$LABEL", "KM1", "$NAME", "接触器"])
    dot, open_pl = msp.query("LWPOLYLINE")
    check("dot", [tuple(round(v, 9) for v in p) for p in dot.get_points("xyseb")],
          [(49.5, 60.0, 2.0, 2.0, 1.0), (50.5, 60.0, 0.5, 1.5, 1.0)])
    check("dot closed", dot.closed, True)
    check("bulges", [p[4] for p in open_pl.get_points("xyseb")], [0.4142, -0.25, 0.0])
    pl2d, pl3d = msp.query("POLYLINE")
    v = pl2d.vertices[0].dxf
    check("2d vertex", (v.start_width, v.end_width, v.bulge), (1.0, 2.0, 0.5))
    check("2d closed", pl2d.is_closed, True)
    check("3d", (pl3d.is_3d_polyline, tuple(pl3d.vertices[1].dxf.location)), (True, (1.0, 2.0, 3.0)))
    check("mtext", msp.query("MTEXT")[0].text, "{\\f宋体;第一行}\\P第二行 ABC")
    dims = msp.query("DIMENSION")
    check("dimension text", dims[0].dxf.text, "<>mm")
    check("dimension points", tuple(dims[1].dxf.defpoint3), (30.0, 40.0, 0.0))
    solid = msp.query("3DSOLID")[0]
    check("solid body", solid.sat, ["QM_TEST_BODY 40 20 2", "opaque to every reader"])
    block = doc.blocks.get("SYM按钮")
    line = block.query("LINE")[0]
    check("block line", (line.dxf.layer, line.dxf.color, line.dxf.lineweight, line.dxf.ltscale),
          ("元件", 1, 25, 2.0))
    check("arc", (block.query("ARC")[0].dxf.start_angle, block.query("ARC")[0].dxf.end_angle), (0.0, 90.0))
    check("layer", (doc.layers.get("元件").color, doc.layers.get("HIDDEN_LAYER").is_off()), (3, True))

    # ezdxf writes the drawing again; we read back what we wrote.
    again = os.path.join(WORK, "ezdxf_again.dwg")
    doc.saveas(again)
    ours, theirs = dump(path), dump(again)
    pick = lambda d: [e for b in d["blocks"] if b["name"] == "*Model_Space" for e in b["entities"]]
    check("entities after ezdxf", pick(theirs), pick(ours))
    tz = lambda d: [e for e in d["nod"]["entries"] if e[0].startswith("TZ_")]
    check("named records after ezdxf", tz(theirs), tz(ours))


def build_ezdxf(version, encoding):
    doc = ezdxf.new(version)
    if encoding:
        doc.encoding = encoding
    for app in ("TZ_ALL_CODES", "TZ_SYMB2_LABEL"):
        doc.appids.new(app)
    block = doc.blocks.new("符号A", base_point=(1, 1))
    block.add_line((0, 0), (10, 0), dxfattribs={"layer": "元件"})
    block.add_circle((5, 5), 2)
    msp = doc.modelspace()
    text = msp.add_text("端子 X1", dxfattribs={"height": 2.5})
    text.set_placement((5, 6), align=ezdxf.enums.TextEntityAlignment.MIDDLE_CENTER)
    insert = msp.add_blockref("符号A", (10, 20), dxfattribs={"xscale": 2, "yscale": 2, "rotation": 45})
    insert.set_xdata("TZ_ALL_CODES", [(1000, "型号"), (1005, text.dxf.handle), (1010, (1, 2, 3)),
                                      (1040, 2.5), (1070, 7), (1071, 70000)])
    insert.set_xdata("TZ_SYMB2_LABEL", [(1005, text.dxf.handle)])
    xrec = insert.new_extension_dict().add_xrecord("TZ_SYMB_BOMANDLABEL")
    xrec.reset([(1, "推荐型号"), (1, "LA38")])
    named = doc.rootdict.add_new_dict("TZ_DWG_DICITIONARY")
    scale = named.add_xrecord("TZ_SCALE_XRECORD")
    scale.reset([(1, "比例"), (1, "1:100")])
    msp.add_lwpolyline([(0, 0, 1, 2, 0.5), (10, 0, 0, 0, -1)], format="xyseb", close=True)
    msp.add_mtext("第一行\\P第二行", dxfattribs={"char_height": 3, "insert": (1, 2)})
    return doc


def find(entities, kind):
    return [e for e in entities if e["type"] == kind]


def ezdxf_to_ours(version, encoding, name):
    doc = build_ezdxf(version, encoding)
    path = os.path.join(WORK, name)
    doc.saveas(path)
    d = dump(path)
    ms = [b for b in d["blocks"] if b["name"] == "*Model_Space"][0]["entities"]
    text = find(ms, "TEXT")[0]
    insert = find(ms, "INSERT")[0]
    check(f"{name} text", text["text"], "端子 X1")
    check(f"{name} text align", (text["halign"], text["valign"], text["align"]), (1, 2, [5.0, 6.0, 0.0]))
    check(f"{name} insert", (insert["block"], insert["position"], insert["scale"]),
          ("符号A", [10.0, 20.0, 0.0], [2.0, 2.0, 1.0]))
    check(f"{name} rotation", insert["rotation"], math.radians(45))
    apps = {}
    current = None
    for code, value in insert["xdata"]:
        if code == 1001:
            current = apps.setdefault(value, [])
        else:
            current.append([code, value])
    check(f"{name} xdata", apps["TZ_ALL_CODES"],
          [[1000, "型号"], [1005, text["handle"]], [1010, [1.0, 2.0, 3.0]], [1040, 2.5], [1070, 7], [1071, 70000]])
    check(f"{name} link", apps["TZ_SYMB2_LABEL"], [[1005, text["handle"]]])
    ext = insert["extdict"]["entries"]
    check(f"{name} ext xrecord", [(k, v["chain"]) for k, v in ext],
          [("TZ_SYMB_BOMANDLABEL", [[1, "推荐型号"], [1, "LA38"]])])
    named = [e for e in d["nod"]["entries"] if e[0] == "TZ_DWG_DICITIONARY"][0][1]
    check(f"{name} named xrecord", named["entries"][0][1]["chain"], [[1, "比例"], [1, "1:100"]])
    pl = find(ms, "LWPOLYLINE")[0]
    check(f"{name} polyline", (pl["closed"], pl["vertices"]),
          (1, [[0.0, 0.0, 1.0, 2.0, 0.5], [10.0, 0.0, 0.0, 0.0, -1.0]]))
    check(f"{name} mtext", find(ms, "MTEXT")[0]["text"], "第一行\\P第二行")
    block = [b for b in d["blocks"] if b["name"] == "符号A"][0]
    check(f"{name} block", (block["origin"], [e["type"] for e in block["entities"]]),
          ([1.0, 1.0, 0.0], ["LINE", "CIRCLE"]))
    check(f"{name} block layer", block["entities"][0]["layer"], "元件")


def through_ours():
    """What we do not model passes through a read and a save unchanged."""
    doc = build_ezdxf("R2000", "gbk")
    msp = doc.modelspace()
    tag = doc.blocks.new("TAGGED")
    tag.add_attdef("位号", (0, 0))
    ref = msp.add_blockref("TAGGED", (5, 5))
    ref.add_attrib("位号", "KM1", (5, 5))
    mesh = msp.add_polyface()
    mesh.append_face([(0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0)])
    msp.add_ellipse((0, 0), major_axis=(3, 0), ratio=0.5)
    hatch = msp.add_hatch(color=2)
    hatch.paths.add_polyline_path([(0, 0), (4, 0), (4, 4)], is_closed=True)
    msp.add_point((7, 7)).set_xdata("TZ_ALL_CODES", [(1000, "点")])
    src, dst = os.path.join(WORK, "theirs.dwg"), os.path.join(WORK, "theirs_copied.dwg")
    doc.saveas(src)
    subprocess.run([TOOL, "copy", src, dst], check=True)
    back = ezdxf.readfile(dst)
    audit(back, "copied")
    msp2 = back.modelspace()
    tagged = [e for e in msp2.query("INSERT") if e.dxf.name == "TAGGED"][0]
    check("attribute", [(a.dxf.tag, a.dxf.text) for a in tagged.attribs], [("位号", "KM1")])
    check("mesh", [len(list(p.vertices)) for p in msp2.query("POLYLINE")], [5])
    check("ellipse", tuple(msp2.query("ELLIPSE")[0].dxf.major_axis), (3.0, 0.0, 0.0))
    check("hatch", (msp2.query("HATCH")[0].dxf.color, len(msp2.query("HATCH")[0].paths)), (2, 1))
    check("point xdata", msp2.query("POINT")[0].get_xdata("TZ_ALL_CODES"), [(1000, "点")])
    check("handles", sorted(e.dxf.handle for e in msp2), sorted(e.dxf.handle for e in msp))



# What a version change may alter, and the time stamps ezdxf itself sets when it loads a file;
# everything else of a foreign drawing's settings must stay.
VERSION_VARIABLES = {"$ACADVER", "$ACADMAINTVER", "$DWGCODEPAGE", "$HANDSEED", "$TDCREATE",
                     "$TDUCREATE", "$TDUPDATE", "$TDUUPDATE", "$TDINDWG", "$TDUSRTIMER"}


def foreign_settings_survive():
    """ezdxf-made R2000, R2010 and R2018 drawings saved by us keep their header variables
    and every field of their dimension styles (an arch-tick arrow stays an arch tick)."""
    seeds = os.path.join(os.path.dirname(__file__), "..", "..", "data", "fuzz", "dxf")
    for version in ("r2000", "r2010", "r2018"):
        src = os.path.join(seeds, f"ezdxf_{version}.dxf")
        out = os.path.join(WORK, f"foreign_{version}.dwg")
        subprocess.run([TOOL, "copy", src, out], check=True)
        a, b = ezdxf.readfile(src), ezdxf.readfile(out)
        audit(b, f"foreign {version}")
        for name in a.header.varnames():
            if name in VERSION_VARIABLES:
                continue
            got = b.header.get(name)
            check(f"{version} header {name}", str(got), str(a.header[name]))
        for style in a.dimstyles:
            mine = b.dimstyles.get(style.dxf.name) if b.dimstyles.has_entry(style.dxf.name) else None
            if mine is None:
                failures.append(f"{version} dimstyle {style.dxf.name} lost")
                continue
            theirs, ours = style.dxfattribs(), mine.dxfattribs()
            for key, value in theirs.items():
                attrib = style.DXFATTRIBS.get(key)
                newer = attrib is not None and attrib.dxfversion and attrib.dxfversion > "AC1015"
                if key not in ("handle", "owner") and not newer:
                    check(f"{version} dimstyle {style.dxf.name}.{key}", ours.get(key), value)
        check(f"{version} ticks", b.dimstyles.get("TICKS").dxf.dimblk, "_ARCHTICK")


ours_to_ezdxf()
through_ours()
foreign_settings_survive()
ezdxf_to_ours("R2000", "gbk", "ezdxf_gbk.dwg")
ezdxf_to_ours("R2018", None, "ezdxf_utf8.dwg")
for f in failures:
    print("FAIL", f)
print("ezdxf", ezdxf.__version__, "checks failed:", len(failures))
sys.exit(1 if failures else 0)
