#!/usr/bin/python3
"""Checks a GeoTIFF elevation model roadx wrote, with GDAL's gdalinfo (as a
library) and an independent barycentric interpolation in numpy.

usage: check_dem.py FILE.tif TRIANGLES.json SAMPLES
TRIANGLES.json: {"vertices": [[x, y, z], ...], "faces": [[a, b, c], ...]}
Prints one JSON object: crs, size, nodata, compression, the grid's fit
around the triangles, and for SAMPLES random cells: how many lie inside a
triangle, the largest difference there, and how many outside are not nodata.
"""
import json
import random
import sys

import numpy as np
from osgeo import gdal

gdal.UseExceptions()


def main():
    path, tri_path, samples = sys.argv[1], sys.argv[2], int(sys.argv[3])
    with open(tri_path, encoding="utf-8") as f:
        tin = json.load(f)
    v = np.array(tin["vertices"], dtype=float)
    t = np.array(tin["faces"], dtype=int)
    a, b, c = v[t[:, 0]], v[t[:, 1]], v[t[:, 2]]
    det = (b[:, 0] - a[:, 0]) * (c[:, 1] - a[:, 1]) - (c[:, 0] - a[:, 0]) * (b[:, 1] - a[:, 1])

    ds = gdal.Open(path)
    info = gdal.Info(ds, format="json")
    band = ds.GetRasterBand(1)
    nodata = band.GetNoDataValue()
    values = band.ReadAsArray()
    west, cell, _, north, _, neg = ds.GetGeoTransform()
    cols, rows = ds.RasterXSize, ds.RasterYSize
    used = v[np.unique(t)]
    minx, miny = used[:, 0].min(), used[:, 1].min()
    maxx, maxy = used[:, 0].max(), used[:, 1].max()
    fits = (west <= minx < west + cell and north >= maxy > north - cell and
            west + cols * cell >= maxx > west + (cols - 1) * cell and
            north - rows * cell <= miny < north - (rows - 1) * cell and neg == -cell)

    rng = random.Random(16)
    inside = outside = outside_bad = 0
    max_err = 0.0
    for _ in range(samples):
        col, row = rng.randrange(cols), rng.randrange(rows)
        x, y = west + (col + 0.5) * cell, north - (row + 0.5) * cell
        # Barycentric coordinates of the centre in every triangle.
        l1 = ((b[:, 0] - x) * (c[:, 1] - y) - (c[:, 0] - x) * (b[:, 1] - y)) / det
        l2 = ((c[:, 0] - x) * (a[:, 1] - y) - (a[:, 0] - x) * (c[:, 1] - y)) / det
        l3 = 1.0 - l1 - l2
        low = np.minimum(np.minimum(l1, l2), l3)
        got = values[row, col]
        if low.max() > 1e-9:
            z = l1 * a[:, 2] + l2 * b[:, 2] + l3 * c[:, 2]
            err = np.abs(z[low > 1e-9] - got).min()
            max_err = max(max_err, float(err))
            inside += 1
        elif low.max() < -1e-9:
            outside += 1
            outside_bad += got != nodata
    print(json.dumps({
        "crs": info.get("coordinateSystem", {}).get("wkt", ""),
        "epsg": ds.GetSpatialRef().GetAuthorityCode(None) if ds.GetSpatialRef() else None,
        "size": info["size"], "nodata": nodata, "type": info["bands"][0]["type"],
        "compression": info["metadata"].get("IMAGE_STRUCTURE", {}).get("COMPRESSION"),
        "fits": bool(fits), "inside": inside, "max_err": max_err, "outside": outside,
        "outside_not_nodata": int(outside_bad)}))


main()
