#!/usr/bin/python3
"""Independent check of a drawing file written by the CAD engine.

Usage: check_dxf.py FILE.dxf EXPECT.json

Reads FILE with ezdxf, requires doc.audit() to report no error and no fix,
compares version, layers, blocks and every model-space entity (in file
order) with EXPECT, then requires `ogrinfo -ro -al -q FILE` to succeed.
Exact numbers must be equal as doubles; "approx" numbers (angles, written
in degrees) within 1e-9. Exit status 0 when everything matches.
"""
import json
import math
import subprocess
import sys

import ezdxf


def decode(s):
    """\\U+XXXX escapes (UTF-16 units) and caret-space back to text."""
    s = ezdxf.decode_dxf_unicode(s)
    s = s.encode("utf-16", "surrogatepass").decode("utf-16")
    return s.replace("^ ", "^")


def xyz(v):
    return [v[0], v[1], v[2]]


def describe(e):
    t = e.dxftype()
    d = {"type": t, "layer": decode(e.dxf.layer), "colour": e.dxf.color,
         "exact": [], "approx": [], "flags": [], "text": ""}
    if t == "POINT":
        d["exact"] = xyz(e.dxf.location)
    elif t == "LINE":
        d["exact"] = xyz(e.dxf.start) + xyz(e.dxf.end)
    elif t == "CIRCLE":
        d["exact"] = xyz(e.dxf.center) + [e.dxf.radius]
    elif t == "ARC":
        d["exact"] = xyz(e.dxf.center) + [e.dxf.radius]
        d["approx"] = [e.dxf.start_angle, e.dxf.end_angle]
    elif t == "LWPOLYLINE":
        d["exact"] = [e.dxf.elevation]
        for x, y, _sw, _ew, b in e.get_points("xyseb"):
            d["exact"] += [x, y, b]
        d["flags"] = [int(e.closed)]
    elif t == "POLYLINE":
        if e.is_3d_polyline:
            d["type"] = "POLYLINE3D"
            for v in e.vertices:
                d["exact"] += xyz(v.dxf.location)
        else:
            d["type"] = "POLYLINE2D"
            d["exact"] = [e.dxf.elevation[2]]
            for v in e.vertices:
                d["exact"] += [v.dxf.location[0], v.dxf.location[1], v.dxf.bulge]
        d["flags"] = [int(e.is_closed)]
    elif t == "3DFACE":
        d["exact"] = xyz(e.dxf.vtx0) + xyz(e.dxf.vtx1) + xyz(e.dxf.vtx2) + xyz(e.dxf.vtx3)
        d["flags"] = [e.dxf.invisible]
    elif t == "TEXT":
        d["exact"] = xyz(e.dxf.insert) + [e.dxf.height]
        d["approx"] = [e.dxf.rotation]
        d["flags"] = [e.dxf.halign, e.dxf.valign]
        d["text"] = decode(e.dxf.text)
    elif t == "INSERT":
        d["exact"] = xyz(e.dxf.insert) + [e.dxf.xscale, e.dxf.yscale, e.dxf.zscale]
        d["approx"] = [e.dxf.rotation]
        d["text"] = decode(e.dxf.name)
    return d


def same(got, want, path, problems):
    for key in ("type", "layer", "colour", "flags", "text"):
        if got[key] != want[key]:
            problems.append(f"{path}: {key} {got[key]!r} != {want[key]!r}")
    if got["exact"] != want["exact"]:
        problems.append(f"{path}: numbers {got['exact']!r} != {want['exact']!r}")
    if len(got["approx"]) != len(want["approx"]) or any(
            not math.isclose(a, b, abs_tol=1e-9) for a, b in zip(got["approx"], want["approx"])):
        problems.append(f"{path}: angles {got['approx']!r} != {want['approx']!r}")


def check_layers(doc, want, problems):
    layers = {decode(l.dxf.name): l for l in doc.layers}
    for name, w in want.items():
        l = layers.get(name)
        if l is None:
            problems.append(f"layer {name!r} missing")
            continue
        got = [l.dxf.color, l.is_frozen(), l.is_locked()]
        exp = [w["colour"], w["frozen"], w["locked"]]
        if got != exp:
            problems.append(f"layer {name!r}: {got} != {exp}")


def check_blocks(doc, want, problems):
    for name, kinds in want.items():
        blk = doc.blocks.get(name)
        if blk is None:
            problems.append(f"block {name!r} missing")
            continue
        got = sorted(e.dxftype() for e in blk)
        if got != sorted(kinds):
            problems.append(f"block {name!r}: {got} != {sorted(kinds)}")


def main():
    path, expect_path = sys.argv[1], sys.argv[2]
    with open(expect_path, encoding="utf-8") as f:
        want = json.load(f)
    problems = []
    doc = ezdxf.readfile(path)
    auditor = doc.audit()
    for e in auditor.errors:
        problems.append(f"audit error {e.code}: {e.message}")
    for e in auditor.fixes:
        problems.append(f"audit fix {e.code}: {e.message}")
    if doc.dxfversion != want["version"]:
        problems.append(f"version {doc.dxfversion} != {want['version']}")
    check_layers(doc, want["layers"], problems)
    check_blocks(doc, want["blocks"], problems)
    got = [describe(e) for e in doc.modelspace()]
    if len(got) != len(want["entities"]):
        problems.append(f"{len(got)} model-space entities != {len(want['entities'])}")
    for i, (g, w) in enumerate(zip(got, want["entities"])):
        same(g, w, f"entity {i}", problems)
    ogr = subprocess.run(["ogrinfo", "-ro", "-al", "-q", path], capture_output=True, text=True)
    if ogr.returncode != 0:
        problems.append(f"ogrinfo failed: {ogr.stderr.strip()}")
    elif "features" in want and ogr.stdout.count("OGRFeature(") != want["features"]:
        problems.append(f"ogrinfo: {ogr.stdout.count('OGRFeature(')} features != {want['features']}")
    for p in problems[:50]:
        print(p)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
