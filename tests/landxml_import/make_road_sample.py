#!/usr/bin/python3
"""Writes samples/road.xml: a small, self-consistent LandXML 1.0 road.

One alignment (lines, circular arcs, entry/exit clothoids and a clothoid
between two radii), its design profile (PVIs and parabolic vertical curves),
cross sections of the existing ground (EG) and the finished grade (FG), a
small TIN of the existing ground with its outer boundary, and a group of
control points. Every End, PI and Center point is computed from the element's
own start, direction and parameters, so an importer can check its geometry
against the file. Directions are decimal degrees counted counter-clockwise
from east (+x).

Usage: make_road_sample.py OUT.xml
"""
import math
import sys

E0, N0 = 2000.0, 5000.0   # start of the alignment (easting, northing)
DIR0 = 30.0               # start direction, degrees from east


def terrain(e, n):
    """Existing ground elevation."""
    return 100.0 + 0.004 * (e - E0) - 0.002 * (n - N0) + 1.5 * math.sin((e - E0) / 140.0) * math.cos((n - N0) / 110.0)


class Elem:
    """One plan element: curvature runs linearly from k0 to k1 (signed, left positive)."""

    def __init__(self, kind, length, k0, k1, **attrs):
        self.kind, self.length, self.k0, self.k1, self.attrs = kind, length, k0, k1, attrs

    def heading(self, s):
        c = (self.k1 - self.k0) / self.length
        return self.h0 + self.k0 * s + 0.5 * c * s * s

    def point(self, s, steps=4000):
        """Position after s along the element (composite Simpson)."""
        if s == 0.0:
            return self.e0, self.n0
        if self.k0 == 0.0 and self.k1 == 0.0:
            return self.e0 + s * math.cos(self.h0), self.n0 + s * math.sin(self.h0)
        h = s / steps
        ce = cn = 0.0
        for i in range(steps + 1):
            w = 1 if i in (0, steps) else (4 if i % 2 else 2)
            a = self.heading(i * h)
            ce += w * math.cos(a)
            cn += w * math.sin(a)
        return self.e0 + ce * h / 3.0, self.n0 + cn * h / 3.0


def build_alignment():
    R1, R2, R3 = 300.0, 250.0, 500.0
    elems = [
        Elem("Line", 120.0, 0, 0),
        Elem("Spiral", 60.0, 0, 1 / R1),
        Elem("Curve", 150.0, 1 / R1, 1 / R1),
        Elem("Spiral", 60.0, 1 / R1, 0),
        Elem("Line", 100.0, 0, 0),
        Elem("Spiral", 50.0, 0, -1 / R2),
        Elem("Curve", 90.0, -1 / R2, -1 / R2),
        Elem("Spiral", 40.0, -1 / R2, -1 / R3),
        Elem("Curve", 80.0, -1 / R3, -1 / R3),
        Elem("Spiral", 50.0, -1 / R3, 0),
        Elem("Line", 150.0, 0, 0),
    ]
    e, n, h, sta = E0, N0, math.radians(DIR0), 0.0
    for el in elems:
        el.e0, el.n0, el.h0, el.sta = e, n, h, sta
        e, n = el.point(el.length)
        h = el.heading(el.length)
        el.e1, el.n1, el.h1 = e, n, h
        sta += el.length
    return elems, sta


def locate(elems, sta):
    """Point and heading of the axis at a station."""
    for el in elems:
        if el.sta <= sta <= el.sta + el.length:
            s = sta - el.sta
            e, n = el.point(s)
            return e, n, el.heading(s)
    raise ValueError(sta)


def fmt(v, d=6):
    s = f"{v:.{d}f}"
    return "0." + "0" * d if s == "-0." + "0" * d else s


def deg(a):
    return fmt(math.degrees(a) % 360.0, 10)


def ne(e, n):
    return f"{fmt(n)} {fmt(e)}"


def tangent_intersection(el):
    """PI of an element: where its start and end tangents meet."""
    d0 = (math.cos(el.h0), math.sin(el.h0))
    d1 = (math.cos(el.h1), math.sin(el.h1))
    det = d0[0] * d1[1] - d0[1] * d1[0]
    t = ((el.e1 - el.e0) * d1[1] - (el.n1 - el.n0) * d1[0]) / det
    return el.e0 + t * d0[0], el.n0 + t * d0[1]


def coordgeom_xml(elems):
    out = []
    for el in elems:
        rot = "ccw" if (el.k0 + el.k1) > 0 else "cw"
        common = f'staStart="{fmt(el.sta)}" length="{fmt(el.length)}"'
        start, end = ne(el.e0, el.n0), ne(el.e1, el.n1)
        if el.kind == "Line":
            out.append(f'      <Line {common} dir="{deg(el.h0)}">\n'
                       f'        <Start>{start}</Start>\n        <End>{end}</End>\n      </Line>')
        elif el.kind == "Curve":
            r = 1 / abs(el.k0)
            side = 1 if el.k0 > 0 else -1
            ce = el.e0 - side * r * math.sin(el.h0)
            cn = el.n0 + side * r * math.cos(el.h0)
            pe, pn = tangent_intersection(el)
            out.append(f'      <Curve {common} radius="{fmt(r)}" rot="{rot}" crvType="arc" '
                       f'delta="{fmt(math.degrees(el.length / r), 10)}" dirStart="{deg(el.h0)}" dirEnd="{deg(el.h1)}">\n'
                       f'        <Start>{start}</Start>\n        <Center>{ne(ce, cn)}</Center>\n'
                       f'        <End>{end}</End>\n        <PI>{ne(pe, pn)}</PI>\n      </Curve>')
        else:
            rs = "INF" if el.k0 == 0 else fmt(1 / abs(el.k0))
            re = "INF" if el.k1 == 0 else fmt(1 / abs(el.k1))
            if el.k0 == 0 or el.k1 == 0:
                a = math.sqrt(float(rs if el.k1 == 0 else re) * el.length)
            else:
                a = math.sqrt(el.length / abs(1 / float(re) - 1 / float(rs)))
            pe, pn = tangent_intersection(el)
            out.append(f'      <Spiral {common} radiusStart="{rs}" radiusEnd="{re}" rot="{rot}" spiType="clothoid" '
                       f'constant="{a:.12f}" dirStart="{deg(el.h0)}" dirEnd="{deg(el.h1)}">\n'
                       f'        <Start>{start}</Start>\n        <PI>{ne(pe, pn)}</PI>\n'
                       f'        <End>{end}</End>\n      </Spiral>')
    return "\n".join(out)


# Design profile: PVIs at both ends, parabolic curves at the inner vertices.
def profile_vertices(total):
    return [(0.0, 101.0, None), (330.0, 104.3, 120.0), (720.0, 100.4, 160.0), (total, 102.2, None)]


def profile_elevation(verts, sta):
    """Elevation of the design line with its symmetric parabolas."""
    for i in range(1, len(verts) - 1):
        (s0, z0, _), (s1, z1, L), (s2, z2, _) = verts[i - 1], verts[i], verts[i + 1]
        g1, g2 = (z1 - z0) / (s1 - s0), (z2 - z1) / (s2 - s1)
        if s1 - L / 2 <= sta <= s1 + L / 2:
            x = sta - (s1 - L / 2)
            return z1 - g1 * L / 2 + g1 * x + (g2 - g1) * x * x / (2 * L)
    for (s0, z0, _), (s1, z1, _) in zip(verts, verts[1:]):
        if s0 <= sta <= s1:
            return z0 + (z1 - z0) * (sta - s0) / (s1 - s0)
    raise ValueError(sta)


def profile_xml(verts):
    lines = []
    for s, z, L in verts:
        if L is None:
            lines.append(f"        <PVI>{fmt(s)} {fmt(z)}</PVI>")
        else:
            lines.append(f'        <ParaCurve length="{fmt(L)}">{fmt(s)} {fmt(z)}</ParaCurve>')
    return "\n".join(lines)


def cross_sections_xml(elems, verts):
    out = []
    for sta in (100.0, 300.0, 500.0, 700.0, 900.0):
        e, n, h = locate(elems, sta)
        # Offsets are positive to the right of the running direction.
        right = (math.sin(h), -math.cos(h))
        eg = []
        for off in (-25.0, -15.0, -5.0, 0.0, 5.0, 15.0, 25.0):
            eg.append((off, terrain(e + off * right[0], n + off * right[1])))
        zc = profile_elevation(verts, sta)
        fg = [(-11.5, zc - 1.2), (-10.0, zc - 0.08), (-3.5, zc - 0.07), (0.0, zc), (3.5, zc - 0.07),
              (10.0, zc - 0.08), (11.5, zc - 1.2)]
        def plist(pts):
            return " ".join(f"{fmt(o, 3)} {fmt(z, 3)}" for o, z in pts)
        out.append(f'      <CrossSect sta="{fmt(sta, 3)}" name="S{sta:.0f}">\n'
                   f'        <CrossSectSurf name="EG">\n          <PntList2D>{plist(eg)}</PntList2D>\n        </CrossSectSurf>\n'
                   f'        <CrossSectSurf name="FG">\n          <PntList2D>{plist(fg)}</PntList2D>\n        </CrossSectSurf>\n'
                   f'      </CrossSect>')
    return "\n".join(out)


def surface_xml(elems):
    es = [el.e0 for el in elems] + [elems[-1].e1]
    ns = [el.n0 for el in elems] + [elems[-1].n1]
    e_lo, e_hi = math.floor((min(es) - 80) / 100) * 100, math.ceil((max(es) + 80) / 100) * 100
    n_lo, n_hi = math.floor((min(ns) - 80) / 100) * 100, math.ceil((max(ns) + 80) / 100) * 100
    cols, rows = int((e_hi - e_lo) / 100) + 1, int((n_hi - n_lo) / 100) + 1
    pid = lambda i, j: j * cols + i + 1
    pts, faces = [], []
    for j in range(rows):
        for i in range(cols):
            e, n = e_lo + 100 * i, n_lo + 100 * j
            pts.append(f'          <P id="{pid(i, j)}">{ne(e, n)} {fmt(terrain(e, n), 3)}</P>')
    for j in range(rows - 1):
        for i in range(cols - 1):
            a, b, c, d = pid(i, j), pid(i + 1, j), pid(i + 1, j + 1), pid(i, j + 1)
            faces.append(f"          <F>{a} {b} {c}</F>")
            faces.append(f"          <F>{a} {c} {d}</F>")
    ring = [(e_lo, n_lo), (e_hi, n_lo), (e_hi, n_hi), (e_lo, n_hi), (e_lo, n_lo)]
    bnd = " ".join(f"{ne(e, n)} {fmt(terrain(e, n), 3)}" for e, n in ring)
    return ("    <Surface name=\"EG\" desc=\"Existing ground\">\n"
            "      <SourceData>\n        <Boundaries>\n"
            f"          <Boundary name=\"Limit\" bndType=\"outer\" edgeTrim=\"true\">\n"
            f"            <PntList3D>{bnd}</PntList3D>\n          </Boundary>\n"
            "        </Boundaries>\n      </SourceData>\n"
            "      <Definition surfType=\"TIN\">\n        <Pnts>\n" + "\n".join(pts) + "\n        </Pnts>\n"
            "        <Faces>\n" + "\n".join(faces) + "\n        </Faces>\n      </Definition>\n    </Surface>")


def points_xml(elems):
    out = []
    for k, sta in enumerate((0.0, 200.0, 400.0, 600.0, 800.0, 950.0), start=1):
        e, n, h = locate(elems, sta)
        off = 30.0 if k % 2 else -30.0
        e, n = e + off * math.sin(h), n - off * math.cos(h)
        out.append(f'    <CgPoint name="CP{k}" code="CONTROL">{ne(e, n)} {fmt(terrain(e, n), 3)}</CgPoint>')
    return "\n".join(out)


def main(path):
    elems, total = build_alignment()
    verts = profile_vertices(total)
    xml = f"""<?xml version="1.0" encoding="UTF-8"?>
<LandXML xmlns="http://www.landxml.org/schema/LandXML-1.0" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xsi:schemaLocation="http://www.landxml.org/schema/LandXML-1.0 http://www.landxml.org/schema/LandXML-1.0/LandXML-1.0.xsd" date="2024-05-06" time="10:00:00" version="1.0" language="English" readOnly="false">
  <Units>
    <Metric areaUnit="squareMeter" linearUnit="meter" volumeUnit="cubicMeter" temperatureUnit="celsius" pressureUnit="milliBars" angularUnit="decimal degrees" directionUnit="decimal degrees"/>
  </Units>
  <Project name="roadx sample" desc="A small road: alignment, profile, cross sections, terrain and control points"/>
  <Application name="roadx" desc="sample written by tests/landxml_import/make_road_sample.py" version="1"/>
  <CgPoints name="Control" desc="Control points">
{points_xml(elems)}
  </CgPoints>
  <Alignments name="Roads">
    <Alignment name="Main Road" length="{fmt(total)}" staStart="0.000000" desc="Two reverse curves with clothoids">
    <CoordGeom>
{coordgeom_xml(elems)}
    </CoordGeom>
    <Profile name="Main Road">
      <ProfAlign name="Design">
{profile_xml(verts)}
      </ProfAlign>
    </Profile>
    <CrossSects name="Sections">
{cross_sections_xml(elems, verts)}
    </CrossSects>
    </Alignment>
  </Alignments>
  <Surfaces name="Terrain">
{surface_xml(elems)}
  </Surfaces>
</LandXML>
"""
    with open(path, "w", encoding="utf-8", newline="\n") as f:
        f.write(xml)


if __name__ == "__main__":
    main(sys.argv[1])
