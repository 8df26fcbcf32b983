#!/usr/bin/python3
"""Independent check of a drawing written by the drawing export.

Usage: check_drawing.py FILE.dxf EXPECT.json

EXPECT holds:
  "version":  the $ACADVER the file must have ("AC1015", "AC1009");
  "layers":   {layer: {type: count}} for every layer that must hold entities;
              types are POINT, LINE, ARC, CIRCLE, TEXT, 3DFACE, POLYLINE2D
              (LWPOLYLINE or a 2D POLYLINE) and POLYLINE3D; no other layer
              may hold any entity, except the contour layer;
  "contours": optional {"layer", "interval", "min_lines"}: every vertex of
              every 3D polyline on that layer lies at a multiple of the
              interval, every fifth level has one label per line, and there
              are at least min_lines lines;
  "texts":    optional {layer: [text, ...]}: the sorted texts of the layer.

Also required: ezdxf reads the file with the names' \\U+XXXX escapes
decoded, and its audit reports no error and no fix; no coordinate is
undefined (>= 8.5e199 in size) or not finite; `ogrinfo -ro -al -q` reads
the file and lists one feature per model-space entity. Prints every
problem; exit status 0 when there is none.
"""
import collections
import json
import math
import subprocess
import sys

import ezdxf
from ezdxf import recover


def decode(s):
    s = ezdxf.decode_dxf_unicode(s)
    return s.encode("utf-16", "surrogatepass").decode("utf-16")


def kind(e):
    t = e.dxftype()
    if t == "LWPOLYLINE":
        return "POLYLINE2D"
    if t == "POLYLINE":
        return "POLYLINE3D" if e.is_3d_polyline else "POLYLINE2D"
    return t


def points_of(e):
    t = e.dxftype()
    if t == "POINT":
        return [e.dxf.location]
    if t == "LINE":
        return [e.dxf.start, e.dxf.end]
    if t in ("ARC", "CIRCLE"):
        return [e.dxf.center, (e.dxf.radius, 0, 0)]
    if t == "TEXT":
        return [e.dxf.insert]
    if t == "3DFACE":
        return [e.dxf.vtx0, e.dxf.vtx1, e.dxf.vtx2, e.dxf.vtx3]
    if t == "LWPOLYLINE":
        return [(x, y, e.dxf.elevation) for x, y in e.get_points("xy")]
    if t == "POLYLINE":
        return [v.dxf.location for v in e.vertices]
    return []


def check_contours(ents, want, problems):
    layer, interval = want["layer"], want["interval"]
    lines = [e for e in ents if kind(e) == "POLYLINE3D"]
    labels = [e for e in ents if e.dxftype() == "TEXT"]
    if len(lines) < want.get("min_lines", 0):
        problems.append(f"{layer}: {len(lines)} contour lines < {want['min_lines']}")
    index_lines = 0
    for e in lines:
        zs = {v.dxf.location[2] for v in e.vertices}
        if len(zs) != 1:
            problems.append(f"{layer}: contour with several elevations {sorted(zs)[:3]}")
            continue
        k = zs.pop() / interval
        if abs(k - round(k)) > 1e-6:
            problems.append(f"{layer}: contour at {k * interval} is not on a multiple of {interval}")
        if round(k) % 5 == 0:
            index_lines += 1
    if len(labels) != index_lines:
        problems.append(f"{layer}: {len(labels)} labels for {index_lines} index contours")


def main():
    path, expect_path = sys.argv[1], sys.argv[2]
    with open(expect_path, encoding="utf-8") as f:
        want = json.load(f)
    problems = []
    # The file as CAD programs read it: the \U+XXXX escapes of names
    # decoded, which ezdxf's recover loader does (its plain loader keeps
    # them, and then refuses the backslash in a layer name). Whatever the
    # loader had to repair is reported by its audit.
    doc, auditor = recover.readfile(path)
    for e in auditor.errors[:20]:
        problems.append(f"audit error {e.code}: {e.message}")
    for e in auditor.fixes[:20]:
        problems.append(f"audit fix {e.code}: {e.message}")
    if doc.dxfversion != want["version"]:
        problems.append(f"version {doc.dxfversion} != {want['version']}")

    msp = list(doc.modelspace())
    by_layer = collections.defaultdict(list)
    for e in msp:
        by_layer[decode(e.dxf.layer)].append(e)
        for p in points_of(e):
            if any(not math.isfinite(c) or abs(c) >= 8.5e199 for c in p):
                problems.append(f"{e.dxftype()} on {decode(e.dxf.layer)!r} has coordinate {tuple(p)}")
                break
    contour = want.get("contours")
    for layer, ents in sorted(by_layer.items()):
        if contour and layer == contour["layer"]:
            check_contours(ents, contour, problems)
            continue
        got = dict(collections.Counter(kind(e) for e in ents))
        exp = {k: v for k, v in want["layers"].get(layer, {}).items() if v}
        if got != exp:
            problems.append(f"layer {layer!r}: {got} != {exp}")
    if contour and contour.get("min_lines", 0) > 0 and contour["layer"] not in by_layer:
        problems.append(f"contour layer {contour['layer']!r} missing")
    for layer, counts in want["layers"].items():
        if any(counts.values()) and layer not in by_layer:
            problems.append(f"layer {layer!r} missing (expected {counts})")
    for layer, texts in want.get("texts", {}).items():
        got = sorted(decode(e.dxf.text) for e in by_layer.get(layer, []) if e.dxftype() == "TEXT")
        if got != sorted(texts):
            problems.append(f"texts of {layer!r}: {got} != {sorted(texts)}")

    ogr = subprocess.run(["ogrinfo", "-ro", "-al", "-q", path], capture_output=True, text=True)
    if ogr.returncode != 0:
        problems.append(f"ogrinfo failed: {ogr.stderr.strip()[:300]}")
    elif ogr.stdout.count("OGRFeature(") != len(msp):
        problems.append(f"ogrinfo: {ogr.stdout.count('OGRFeature(')} features != {len(msp)} entities")
    for p in problems[:60]:
        print(p)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
