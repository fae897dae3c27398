"""python3-ezdxf checks what the reference host reads from real DWG files.

Usage: dwg_ezdxf_oracle.py <dwg_oracle_tool> <samples dir> <scratch dir>
Every sample either opens or fails with a message. For those that open, ezdxf reads
the same conversion (the cached DXF) and must count the same entities in every block
and report the same extents; a new drawing with the sample inserted, saved by the host,
must pass ezdxf's audit without errors. Exit 77 (skipped) without samples.
"""
import json
import math
import os
import shutil
import subprocess
import sys

import ezdxf
from ezdxf.render.arrows import ARROWS

# Blocks ezdxf makes itself for the dimension arrows of an upgraded old drawing.
EZDXF_ARROWS = {ARROWS.block_name(a).lower() for a in ARROWS.__all_arrows__}

TOOL, SAMPLES, WORK = sys.argv[1], sys.argv[2], sys.argv[3]
failures = []


def run(*args):
    return subprocess.run([TOOL, *args], capture_output=True, timeout=300)


def close(a, b):
    return all(math.isclose(x, y, rel_tol=1e-9, abs_tol=1e-9) for x, y in zip(a, b))


def compare(name, ours):
    try:
        doc = ezdxf.readfile(ours["dxf"])
    except ezdxf.DXFStructureError as e:
        # LibreDWG's R12 output can hold a POLYLINE without vertices, which ezdxf refuses.
        print(f"{name}: ezdxf cannot read the conversion itself ({e}); not compared")
        return None
    theirs = {b.name.lower(): len(b) for b in doc.blocks}
    for block, count in ours["blocks"].items():
        want = theirs.get(block.lower())
        if want is not None and want != count:
            failures.append(f"{name}: block {block}: {count} entities, ezdxf {want}")
    missing = set(theirs) - {b.lower() for b in ours["blocks"]} - EZDXF_ARROWS
    if missing:
        failures.append(f"{name}: blocks ezdxf has and we lack: {sorted(missing)[:5]}")
    for var, key in (("$EXTMIN", "extmin"), ("$EXTMAX", "extmax")):
        if var in doc.header and not close(doc.header[var], ours[key]):
            failures.append(f"{name}: {var} {ours[key]}, ezdxf {tuple(doc.header[var])}")
    return len(doc.modelspace())


def audit_insert(name, ours):
    out = os.path.join(WORK, name + ".inserted.dwg")
    result = run("insert", os.path.join(WORK, "cache"), os.path.join(SAMPLES, name), out)
    if result.returncode != 0:
        failures.append(f"{name}: insert and save failed: {result.stderr.decode()[-300:]}")
        return
    doc = ezdxf.readfile(out)
    auditor = doc.audit()
    for e in auditor.errors:
        failures.append(f"{name} inserted: audit error {e.code} {e.message}")
    block = doc.blocks.get("SAMPLE")
    model = {k.lower(): n for k, n in ours["blocks"].items()}["*model_space"]
    if block is None or len(block) != model:
        failures.append(f"{name} inserted: block SAMPLE has "
                        f"{None if block is None else len(block)} entities")


def main():
    if not os.path.isdir(SAMPLES):
        print(f"no sample drawings at {SAMPLES}")
        return 77
    shutil.rmtree(WORK, ignore_errors=True)
    os.makedirs(WORK)
    opened = 0
    for name in sorted(os.listdir(SAMPLES)):
        if not name.lower().endswith(".dwg"):
            continue
        result = run("read", os.path.join(WORK, "cache"), os.path.join(SAMPLES, name))
        note = result.stderr.decode("utf-8", "replace")
        if result.returncode != 0:
            if "无法转换" not in note:
                failures.append(f"{name}: failed without saying why: {note[-300:]}")
            print(f"{name}: not converted: {note.strip().splitlines()[-1]}")
            continue
        ours = json.loads(result.stdout)
        entities = compare(name, ours)
        audit_insert(name, ours)
        opened += 1
        print(f"{name}: {ours['version']}, model space {entities} entities, "
              f"{ours['unknown']} kept unmodelled")
    if opened < 11:
        failures.append(f"only {opened} samples opened")
    for f in failures:
        print("FAIL", f)
    return 1 if failures else 0


sys.exit(main())
