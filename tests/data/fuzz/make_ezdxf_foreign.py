# Writes drawings made by another program (ezdxf) in three DXF versions, with settings and
# dimension styles of their own: the seeds of the DXF fuzzer and the foreign round-trip test.
import sys
import ezdxf

out = sys.argv[1] if len(sys.argv) > 1 else "."
for ver in ("R2000", "R2010", "R2018"):
    doc = ezdxf.new(ver, setup=True)
    doc.header["$INSUNITS"] = 4
    doc.header["$LTSCALE"] = 2.5
    doc.header["$LUNITS"] = 2
    doc.header["$DIMDEC"] = 0
    ds = doc.dimstyles.new("TICKS")
    ds.dxf.dimdec = 0
    ds.dxf.dimzin = 8
    ds.dxf.dimgap = 0.625
    ds.dxf.dimtad = 1
    ds.dxf.dimscale = 1.0
    ds.dxf.dimlfac = 100.0
    ds.set_arrows(blk="ARCHTICK")
    msp = doc.modelspace()
    msp.add_line((0, 0), (10, 0))
    msp.add_text("接触器 KM1", dxfattribs={"height": 2.5, "valign": 2, "halign": 1})
    msp.add_mtext("两行\\P文字", dxfattribs={"attachment_point": 5})
    dim = msp.add_linear_dim(base=(0, 5), p1=(0, 0), p2=(10, 0), dimstyle="TICKS")
    dim.render()
    doc.saveas(f"{out}/ezdxf_{ver.lower()}.dxf")
