#!/usr/bin/python3
"""Checks the ground profile of a roadx report against the triangulation of
the LandXML file it was made from, computed here on its own: the TIN is read
with xml.etree and the ground found by barycentric interpolation in it.

usage: check_ground.py LANDXML SURFACE REPORT.html [SEED]

For every road: at every vertex of "ground_profile" with an elevation, the
TIN under the axis point of that station gives the same elevation within
1 mm; every gap ([station, null]) lies outside the TIN in its middle; and at
600 random stations the profile (linear between its vertices) agrees with
the TIN within 1 mm, or both say there is no ground. Prints one line per
road; exits 1 on the first disagreement."""
import bisect
import json
import random
import re
import sys
import xml.etree.ElementTree as ET

TOL = 0.001


def local(tag):
    return tag.rsplit('}', 1)[-1]


def read_tin(path, name):
    root = ET.parse(path).getroot()
    for surf in root.iter():
        if local(surf.tag) != 'Surface' or surf.get('name') != name:
            continue
        pts, faces = {}, []
        for el in surf.iter():
            if local(el.tag) == 'P':
                n, e, z = (float(v) for v in el.text.split()[:3])
                pts[el.get('id')] = (e, n, z)
            elif local(el.tag) == 'F':
                ids = el.text.split()
                if all(i in pts for i in ids[:3]):
                    faces.append(tuple(pts[i] for i in ids[:3]))
        return faces
    sys.exit(f'{path}: no surface {name}')


class Tin:
    def __init__(self, faces, cell=10.0):
        self.faces, self.cell, self.cells = faces, cell, {}
        for k, f in enumerate(faces):
            xs, ys = [p[0] for p in f], [p[1] for p in f]
            for i in range(int(min(xs) // cell), int(max(xs) // cell) + 1):
                for j in range(int(min(ys) // cell), int(max(ys) // cell) + 1):
                    self.cells.setdefault((i, j), []).append(k)

    def z(self, x, y, slack=0.0):
        """Elevation by barycentric interpolation; None outside. slack (m)
        widens every triangle a little."""
        for k in self.cells.get((int(x // self.cell), int(y // self.cell)), []):
            (x1, y1, z1), (x2, y2, z2), (x3, y3, z3) = self.faces[k]
            det = (y2 - y3) * (x1 - x3) + (x3 - x2) * (y1 - y3)
            if det == 0:
                continue
            l1 = ((y2 - y3) * (x - x3) + (x3 - x2) * (y - y3)) / det
            l2 = ((y3 - y1) * (x - x3) + (x1 - x3) * (y - y3)) / det
            l3 = 1 - l1 - l2
            size = max(abs(x1 - x2), abs(x2 - x3), abs(y1 - y2), abs(y2 - y3), 1e-9)
            eps = 1e-9 + slack / size
            if min(l1, l2, l3) >= -eps:
                return l1 * z1 + l2 * z2 + l3 * z3
        return None


def axis_point(axis, stations, s):
    i = min(max(bisect.bisect_right(stations, s) - 1, 0), len(axis) - 2)
    (x0, y0, s0), (x1, y1, s1) = axis[i], axis[i + 1]
    t = 0.0 if s1 == s0 else (s - s0) / (s1 - s0)
    return x0 + (x1 - x0) * t, y0 + (y1 - y0) * t


def profile_at(ground, s):
    """(defined, z) of the profile at s; None when s lies outside it."""
    st = [g[0] for g in ground]
    i = bisect.bisect_right(st, s) - 1
    if i < 0:
        return None
    if ground[i][1] is None:
        return (False, None)
    if i + 1 >= len(ground):
        return (True, ground[i][1]) if abs(s - st[i]) < 1e-9 else None
    if ground[i + 1][1] is None and s > st[i] + 1e-9 and s < st[i + 1]:
        return None  # cannot happen: a segment ends at a gap vertex
    s0, z0, s1, z1 = st[i], ground[i][1], st[i + 1], ground[i + 1][1]
    if z1 is None:
        return (True, z0)
    return (True, z0 + (z1 - z0) * (s - s0) / (s1 - s0))


def main():
    xml, surface, report = sys.argv[1:4]
    rnd = random.Random(int(sys.argv[4]) if len(sys.argv) > 4 else 14)
    tin = Tin(read_tin(xml, surface))
    html = open(report, encoding='utf-8').read()
    data = json.loads(re.search(r'<script type="application/json" id="roadx-data">(.*?)</script>', html, re.S).group(1))
    bad = 0
    for road in data['roads']:
        axis, ground = road['axis'], road['ground_profile']
        if not ground:
            sys.exit(f"{road['name']}: no ground profile")
        stations = [a[2] for a in axis]
        worst, checked, gaps = 0.0, 0, 0
        for k, (s, z) in enumerate(ground):
            x, y = axis_point(axis, stations, s)
            if z is None:
                gaps += 1
                nxt = ground[k + 1][0] if k + 1 < len(ground) else road['end_station']
                mx, my = axis_point(axis, stations, (s + nxt) / 2)
                if tin.z(mx, my) is not None:
                    print(f"{road['name']}: gap at {s} but the TIN holds ({mx}, {my})")
                    bad += 1
                continue
            zt = tin.z(x, y, slack=TOL)
            if zt is None or abs(zt - z) > TOL:
                print(f"{road['name']}: vertex {s}: profile {z}, TIN {zt}")
                bad += 1
            else:
                worst = max(worst, abs(zt - z))
                checked += 1
        for _ in range(600):
            s = rnd.uniform(road['start_station'], road['end_station'])
            x, y = axis_point(axis, stations, s)
            p = profile_at(ground, s)
            zt = tin.z(x, y)
            if p is None or not p[0]:
                if zt is not None and tin.z(x, y, slack=-TOL) is not None:
                    print(f"{road['name']}: station {s}: no profile but TIN {zt}")
                    bad += 1
                continue
            zt = tin.z(x, y, slack=TOL)
            if zt is None or abs(zt - p[1]) > TOL:
                print(f"{road['name']}: station {s}: profile {p[1]}, TIN {zt}")
                bad += 1
            else:
                worst = max(worst, abs(zt - p[1]))
        print(f"{road['name']}: {checked} vertices, {gaps} gaps, 600 stations, worst {worst * 1000:.4f} mm")
    sys.exit(1 if bad else 0)


main()
