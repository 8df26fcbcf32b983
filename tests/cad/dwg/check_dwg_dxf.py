#!/usr/bin/python3
"""Check of the DXF that dwg2dxf made from a DWG file of the CAD engine.

Usage: check_dwg_dxf.py FILE.dxf EXPECT.json

Requires ezdxf's audit() to report no error and no fix, then compares
layers, blocks, the number of model-space entities on every layer and every
model-space entity with EXPECT, using the comparisons of ../check_dxf.py.
The converter writes numbers with 16 significant digits, not always the
shortest text of the double, so numbers are compared within 1e-15 relative
(check_dwg.mjs compares the doubles of the DWG itself exactly); it copies
texts as the DWG holds them, without the caret escapes of DXF, so texts are
decoded without them.
Exit status 0 when everything matches.
"""
import collections
import json
import math
import os
import sys

import ezdxf

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
import check_dxf  # noqa: E402


def decode_plain(s):
    s = ezdxf.decode_dxf_unicode(s)
    return s.encode("utf-16", "surrogatepass").decode("utf-16")


def main():
    path, expect_path = sys.argv[1], sys.argv[2]
    with open(expect_path, encoding="utf-8") as f:
        want = json.load(f)
    check_dxf.decode = decode_plain
    problems = []
    doc = ezdxf.readfile(path)
    auditor = doc.audit()
    for e in auditor.errors:
        problems.append(f"audit error {e.code}: {e.message}")
    for e in auditor.fixes:
        problems.append(f"audit fix {e.code}: {e.message}")
    if doc.dxfversion != want["version"]:
        problems.append(f"version {doc.dxfversion} != {want['version']}")
    check_dxf.check_layers(doc, want["layers"], problems)
    check_dxf.check_blocks(doc, want["blocks"], problems)
    got = [check_dxf.describe(e) for e in doc.modelspace()]
    per_layer = collections.Counter(g["layer"] for g in got)
    want_per_layer = collections.Counter(w["layer"] for w in want["entities"])
    if per_layer != want_per_layer:
        problems.append(f"entities per layer {dict(per_layer)} != {dict(want_per_layer)}")
    if len(got) != len(want["entities"]):
        problems.append(f"{len(got)} model-space entities != {len(want['entities'])}")
    for i, (g, w) in enumerate(zip(got, want["entities"])):
        if len(g["exact"]) == len(w["exact"]) and all(
                math.isclose(a, b, rel_tol=1e-15, abs_tol=0.0) for a, b in zip(g["exact"], w["exact"])):
            g["exact"] = w["exact"]
        check_dxf.same(g, w, f"entity {i}", problems)
    for p in problems[:50]:
        print(p)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
