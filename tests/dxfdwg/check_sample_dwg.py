#!/usr/bin/python3
"""Compares the DWG and the DXF of one conversion of a sample.

Usage: check_sample_dwg.py SUMMARY.json FILE.dxf [CONVERTED.dxf]

SUMMARY is what check_sample_dwg.mjs read from the DWG with libredwg-web.
FILE is the DXF written by the same conversion: ezdxf must find the same
layer table (name, colour, off, frozen, locked) and, on every layer, the
same number of model-space entities of every kind (kinds as
check_drawing.py counts them). CONVERTED is dwg2dxf's conversion of the
DWG: ezdxf's audit must report no error and no fix, and it must hold the
same as well. Prints every problem; exit status 0 when there is none.
"""
import collections
import json
import os
import sys

import ezdxf  # noqa: F401
from ezdxf import recover

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import check_drawing  # noqa: E402


def summary(doc, path):
    # ezdxf adds a "Defpoints" layer on loading a file without one: only
    # layers the file itself names count.
    with open(path, "rb") as f:
        raw = f.read()
    layers = {}
    for l in doc.layers:
        if l.dxf.name == "Defpoints" and b"Defpoints" not in raw:
            continue
        layers[check_drawing.decode(l.dxf.name)] = {
            "colour": abs(l.dxf.color), "off": l.is_off(), "frozen": l.is_frozen(), "locked": l.is_locked()}
    entities = collections.defaultdict(collections.Counter)
    for e in doc.modelspace():
        entities[check_drawing.decode(e.dxf.layer)][check_drawing.kind(e)] += 1
    return layers, {k: dict(v) for k, v in entities.items()}


def compare(what, doc, path, want, problems):
    layers, entities = summary(doc, path)
    for name in sorted(set(layers) | set(want["layers"])):
        got, exp = layers.get(name), want["layers"].get(name)
        if got != exp:
            problems.append(f"{what}: layer {name!r}: {got} != DWG {exp}")
    for name in sorted(set(entities) | set(want["entities"])):
        got, exp = entities.get(name, {}), want["entities"].get(name, {})
        if got != exp:
            problems.append(f"{what}: entities on {name!r}: {got} != DWG {exp}")


def main():
    with open(sys.argv[1], encoding="utf-8") as f:
        want = json.load(f)
    problems = []
    # Both read as CAD programs read them, names' \U+XXXX escapes decoded
    # (see check_drawing.py).
    compare("DXF", recover.readfile(sys.argv[2])[0], sys.argv[2], want, problems)
    if len(sys.argv) > 3:
        doc, auditor = recover.readfile(sys.argv[3])
        for e in auditor.errors[:20]:
            problems.append(f"dwg2dxf: audit error {e.code}: {e.message}")
        for e in auditor.fixes[:20]:
            problems.append(f"dwg2dxf: audit fix {e.code}: {e.message}")
        compare("dwg2dxf", doc, sys.argv[3], want, problems)
    for p in problems[:60]:
        print(p)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
