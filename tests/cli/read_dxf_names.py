#!/usr/bin/python3
"""Prints the names a DXF file holds, as ezdxf reads them with the \\U+XXXX
escapes decoded (its recover loader, as CAD programs read names), as one
JSON object: {"layers": [...], "blocks": [...], "texts": [...]}.

Usage: read_dxf_names.py FILE.dxf
"""
import json
import sys

import ezdxf
from ezdxf import recover


def decode(s):
    # Escapes of a character beyond U+FFFF come as a surrogate pair.
    s = ezdxf.decode_dxf_unicode(s)
    return s.encode("utf-16", "surrogatepass").decode("utf-16")


def main():
    doc, _ = recover.readfile(sys.argv[1])
    out = {
        "layers": sorted(decode(l.dxf.name) for l in doc.layers),
        "blocks": sorted(decode(b.name) for b in doc.blocks),
        "texts": sorted(decode(e.dxf.text) for e in doc.modelspace() if e.dxftype() == "TEXT"),
    }
    sys.stdout.write(json.dumps(out, ensure_ascii=False))
    return 0


if __name__ == "__main__":
    sys.exit(main())
