#!/usr/bin/python3
"""Checks a GeoJSON file roadx wrote against an independent PROJ transform:
each expected point (layer, feature index within the layer, vertex index,
x, y, z in the source system; z null for a 2D feature) must appear, transformed to WGS 84 lon/lat by
pyproj, within 1e-9 degrees, with its z unchanged. The GeoJSON is read as
plain JSON, without GDAL.

usage: check_geojson.py FILE.geojson SOURCE_CRS EXPECTED.json
Prints "ok" or one line per mismatch (exit 1).
"""
import json
import sys

from pyproj import Transformer


def vertices(geometry):
    out = []

    def walk(c):
        if c and isinstance(c[0], (int, float)):
            out.append(c)
        else:
            for x in c:
                walk(x)

    walk(geometry["coordinates"])
    return out


def main():
    path, source, expected_path = sys.argv[1:4]
    with open(path, encoding="utf-8") as f:
        doc = json.load(f)
    with open(expected_path, encoding="utf-8") as f:
        expected = json.load(f)
    errors = []
    if doc.get("type") != "FeatureCollection" or "crs" in doc:
        errors.append("not an RFC 7946 feature collection")
    by_layer = {}
    for feat in doc["features"]:
        by_layer.setdefault(feat["properties"]["layer"], []).append(feat)
    to_wgs84 = Transformer.from_crs(source, "EPSG:4326", always_xy=True)
    for e in expected:
        feats = by_layer.get(e["layer"], [])
        if e["index"] >= len(feats):
            errors.append(f"{e['layer']}: no feature {e['index']}")
            continue
        v = vertices(feats[e["index"]]["geometry"])[e["vertex"]]
        lon, lat = to_wgs84.transform(e["x"], e["y"])
        z_ok = e["z"] is None and len(v) == 2 or e["z"] is not None and len(v) == 3 and abs(v[2] - e["z"]) <= 1e-9
        if abs(v[0] - lon) > 1e-9 or abs(v[1] - lat) > 1e-9 or not z_ok:
            errors.append(f"{e['layer']} {e['index']} vertex {e['vertex']}: {v} != {[lon, lat, e['z']]}")
    print("\n".join(errors) if errors else "ok")
    sys.exit(1 if errors else 0)


main()
