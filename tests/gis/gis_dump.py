#!/usr/bin/python3
"""Reads a GIS vector dataset with GDAL's own Python bindings and prints it as
JSON: per layer its feature count, geometry type, coordinate system
(authority:code) and features (fields, and coordinates as [x, y, z, m]).

usage: gis_dump.py DATASET [MAX_FEATURES_PER_LAYER]
"""
import json
import sys

from osgeo import ogr

ogr.UseExceptions()


def points(geom):
    out = []

    def walk(g):
        if g.GetGeometryCount() > 0:
            for i in range(g.GetGeometryCount()):
                walk(g.GetGeometryRef(i))
            return
        for i in range(g.GetPointCount()):
            out.append([g.GetX(i), g.GetY(i), g.GetZ(i), g.GetM(i)])

    walk(geom)
    return out


def main():
    path = sys.argv[1]
    limit = int(sys.argv[2]) if len(sys.argv) > 2 else 1000000
    ds = ogr.Open(path)
    layers = {}
    for i in range(ds.GetLayerCount()):
        layer = ds.GetLayer(i)
        srs = layer.GetSpatialRef()
        code = None
        if srs is not None and srs.GetAuthorityCode(None):
            code = srs.GetAuthorityName(None) + ":" + srs.GetAuthorityCode(None)
        features = []
        for n, f in enumerate(layer):
            if n >= limit:
                break
            g = f.GetGeometryRef()
            features.append({"fields": {k: f.GetField(k) for k in f.keys() if f.IsFieldSetAndNotNull(k)},
                             "coords": points(g) if g is not None else []})
        layers[layer.GetName()] = {"count": layer.GetFeatureCount(),
                                   "geometry": ogr.GeometryTypeToName(layer.GetGeomType()),
                                   "srs": code, "features": features}
    json.dump({"driver": ds.GetDriver().GetName(), "layers": layers}, sys.stdout)


main()
