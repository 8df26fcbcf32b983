#!/usr/bin/python3
"""Writes the golden LandXML files of the export tests.

An independent rendering of the export's text from the same input values as
tests/landxml_export/lxe_documents.h: the element geometry is worked out here
(arcs in closed form, clothoids by numerical integration of their heading),
numbers are formatted by Python's "%f", which rounds the exact binary value
half to even as the C library does. "@PATH@" stands for the output path.

Run: /usr/bin/python3 gen_golden.py   (writes the *.xml files next to it)
"""
import math
import os

UNDEF = 1.7e200


def f6(v):
    if math.isnan(v):
        return "-nan" if math.copysign(1.0, v) < 0 else "nan"
    return "%f" % v


def f9(v):
    return "%.9f" % v


def defined(v):
    return v < 8.5e199


def esc(s):
    return s.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;").replace('"', "&quot;")


def yx(x, y):
    return "%s %s" % (f6(y), f6(x))


def yxz(x, y, z):
    return "%s %s %s" % (f6(y), f6(x), f6(z))


def dir_deg(vx, vy):
    d = math.atan2(vy, vx) * 57.29577951308233
    while d < 0.0:
        d += 360.0
    while d >= 360.0:
        d -= 360.0
    return d + 0.0  # no negative zero


HEADER = (
    '<?xml version="1.0" ?>\n'
    '<LandXML xmlns="http://www.landxml.org/schema/LandXML-1.0"'
    ' xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"'
    ' xsi:schemaLocation="http://www.landxml.org/schema/LandXML-1.0'
    ' http://www.landxml.org/schema/LandXML-1.0/LandXML-1.0.xsd"'
    ' version="1.0" date="2009-10-27" time="09:30:22" readOnly="false" language="English">\n'
    '\t<Project name="@PATH@"/>\n'
    '\t<Units>\n'
    '\t\t<Metric linearUnit="meter" areaUnit="squareMeter" volumeUnit="cubicMeter" temperatureUnit="celsius"'
    ' pressureUnit="mmHG" angularUnit="radians" directionUnit="decimal degrees"/>\n'
    '\t</Units>\n'
    '\t<Application name="roadx" manufacturer="Korvel" version="2012" manufacturerURL="www.korvel.it"/>\n'
)
FOOTER = "</LandXML>\n"


# ---------------------------------------------------------------- geometry

def integrate(heading, x0, y0, length, n=20000):
    """Point at `length` along a curve of the given heading, Simpson's rule."""
    h = length / n
    sx = sy = 0.0
    for i in range(n + 1):
        w = 1 if i in (0, n) else (4 if i % 2 else 2)
        a = heading(i * h)
        sx += w * math.cos(a)
        sy += w * math.sin(a)
    return x0 + sx * h / 3.0, y0 + sy * h / 3.0


def pi_point(x0, y0, tx, ty, xe, ye, ex, ey):
    m1 = ty / tx
    b1 = y0 - m1 * x0
    m2 = ey / ex
    b2 = ye - m2 * xe
    x = (b2 - b1) / (m1 - m2)
    return x, m1 * x + b1


def line(prog, x0, y0, dx, dy, length):
    return ('\t\t\t\t<Line length="%s" dir="%s" staStart="%s">\n' % (f6(length), f6(dir_deg(dx, dy)), f6(prog)) +
            "\t\t\t\t\t<Start>%s</Start>\n" % yx(x0, y0) +
            "\t\t\t\t\t<End>%s</End>\n" % yx(x0 + dx * length, y0 + dy * length) +
            "\t\t\t\t</Line>\n")


def arc(prog, x0, y0, tx, ty, r, angle, ccw):
    s = 1.0 if ccw else -1.0
    t0 = math.atan2(ty, tx)
    t1 = t0 + s * angle
    xe = x0 + s * r * (math.sin(t1) - math.sin(t0))
    ye = y0 - s * r * (math.cos(t1) - math.cos(t0))
    ex, ey = math.cos(t1), math.sin(t1)
    pix, piy = pi_point(x0, y0, tx, ty, xe, ye, ex, ey)
    return ('\t\t\t\t<Curve rot="%s" delta="%s" dirEnd="%s" dirStart="%s" length="%s" radius="%s" staStart="%s">\n'
            % ("ccw" if ccw else "cw", f6(angle), f6(dir_deg(ex, ey)), f6(dir_deg(tx, ty)), f6(r * angle), f6(r),
               f6(prog)) +
            "\t\t\t\t\t<Start>%s</Start>\n" % yx(x0, y0) +
            "\t\t\t\t\t<Center>%s</Center>\n" % yx(x0 - s * r * ty, y0 + s * r * tx) +
            "\t\t\t\t\t<End>%s</End>\n" % yx(xe, ye) +
            "\t\t\t\t\t<PI>%s</PI>\n" % yx(pix, piy) +
            "\t\t\t\t</Curve>\n")


def spiral(prog, x0, y0, tx, ty, a, r, ccw, entrance):
    s = 1.0 if ccw else -1.0
    length = a * a / r
    t0 = math.atan2(ty, tx)
    if entrance:
        heading = lambda u: t0 + s * u * u / (2 * a * a)
    else:
        heading = lambda u: t0 + s * (length * u - u * u / 2) / (a * a)
    xe, ye = integrate(heading, x0, y0, length)
    te = heading(length)
    ex, ey = math.cos(te), math.sin(te)
    pix, piy = pi_point(x0, y0, tx, ty, xe, ye, ex, ey)
    radii = ('radiusEnd="%s" radiusStart="INF" ' % f6(r)) if entrance else ('radiusEnd="INF" radiusStart="%s" ' % f6(r))
    return ('\t\t\t\t<Spiral length="%s" ' % f6(length) + radii +
            'rot="%s" spiType="clothoid" constant="%s" dirEnd="%s" dirStart="%s" staStart="%s">\n'
            % ("ccw" if ccw else "cw", f6(-(a * a)), f6(dir_deg(ex, ey)), f6(dir_deg(tx, ty)), f6(prog)) +
            "\t\t\t\t\t<Start>%s</Start>\n" % yx(x0, y0) +
            "\t\t\t\t\t<PI>%s</PI>\n" % yx(pix, piy) +
            "\t\t\t\t\t<End>%s</End>\n" % yx(xe, ye) +
            "\t\t\t\t</Spiral>\n")


# ---------------------------------------------------------------- roads

def grade(p0, z0, p1, z1):
    d = p1 - p0
    return 0.0 if d == 0.0 else (z1 - z0) / d


def curve_span(prog, z, pp, zp, pn, zn, radius):
    length = abs(radius) * abs(grade(pp, zp, prog, z) - grade(prog, z, pn, zn))
    return (prog + length / 2.0) - (prog - length / 2.0)


def runs(points):
    out, cur = [], []
    for x, z in points:
        if defined(x) and defined(z):
            cur.append((x, z))
            continue
        if len(cur) > 1:
            out.append(cur)
        cur = []
    if len(cur) >= 2:
        out.append(cur)
    return out


def surfs(name, points):
    t = ""
    for run in runs(points):
        t += '\t\t\t\t\t<CrossSectSurf name="%s">\n' % esc(name)
        t += "\t\t\t\t\t\t<PntList2D>" + "".join("%s %s " % (f6(x), f6(z)) for x, z in run) + "</PntList2D>\n"
        t += "\t\t\t\t\t</CrossSectSurf>\n"
    return t


def road_ss12():
    t = '\t\t<Alignment name="SS 12" length="%s" staStart="%s" state="existing">\n' % (f6(1511.0 + 39.5 - 1000.0),
                                                                                    f6(1000.0))
    t += '\t\t\t<Start name="Start_SS 12" state="existing">%s</Start>\n' % yxz(2000.0, 5000.0, 100.5)
    t += '\t\t\t<CoordGeom name="CoordGeom_SS 12" state="existing">\n'
    t += line(1000.0, 2000.0, 5000.0, 0.6, 0.8, 120.0)
    t += spiral(1120.0, 2072.0, 5096.0, 0.6, 0.8, 100.0, 250.0, True, True)
    t += arc(1160.0, 2090.0, 5134.0, 0.28, 0.96, 250.0, 0.4, True)
    t += spiral(1260.0, 2100.0, 5240.0, -0.6, 0.8, 120.0, 400.0, False, False)
    t += arc(1296.0, 2080.0, 5270.0, 0.8, -0.6, 300.0, 0.3, False)
    # the continuity clothoid at 1386 has no form here: a gap
    t += line(1461.0, 2300.0, 5300.0, 0.0, -1.0, 50.0)
    t += line(1511.0, 2300.0, 5250.0, 1.0, 0.0, 39.5)
    t += "\t\t\t</CoordGeom>\n"
    t += "\t\t\t<Profile>\n"
    t += '\t\t\t\t<ProfAlign name="Profile_SS 12" state="existing">\n'
    t += "\t\t\t\t\t<PVI>%s %s</PVI>\n" % (f6(1000.0), f6(100.5))
    t += '\t\t\t\t\t<ParaCurve length="%s">%s %s</ParaCurve>\n' % (
        f6(curve_span(1200.0, 104.5, 1000.0, 100.5, 1400.0, 102.5, 5000.0)), f6(1200.0), f6(104.5))
    t += '\t\t\t\t\t<CircCurve length="%s" radius="%s">%s %s</CircCurve>\n' % (
        f6(curve_span(1400.0, 102.5, 1200.0, 104.5, 1500.0, 103.5, 8000.0)), f6(8000.0), f6(1400.0), f6(102.5))
    t += "\t\t\t\t\t<PVI>%s %s</PVI>\n" % (f6(1500.0), f6(103.5))
    t += "\t\t\t\t</ProfAlign>\n"
    t += "\t\t\t</Profile>\n"
    t += '\t\t\t<CrossSects state="existing">\n'
    t += '\t\t\t\t<CrossSect sta="%s" name="S1">\n' % f6(1050.0)
    t += surfs("TERRENO", [(-10.0, 99.0), (-5.0, 99.5), (UNDEF, UNDEF), (0.0, 100.0), (5.0, 100.2), (10.0, 100.125)])
    t += surfs("PRO", [(-3.5, 100.4), (0.0, 100.5), (3.5, 100.4)])
    t += surfs("", [(-1.0, 100.0), (1.0, 100.0)])
    t += "\t\t\t\t</CrossSect>\n"
    t += '\t\t\t\t<CrossSect sta="%s" name="S2">\n' % f6(1150.0)
    t += surfs("TERRENO", [(-4.0, 101.0), (0.0, UNDEF), (0.0, 101.5), (4.0, 101.25)])
    t += surfs("STF", [(-2.0, 101.0), (2.0, 101.0), (UNDEF, 101.0), (3.0, 100.0)])
    t += "\t\t\t\t</CrossSect>\n"
    t += "\t\t\t</CrossSects>\n"
    t += "\t\t</Alignment>\n"
    return t


def road_vuota():
    return ('\t\t<Alignment name="vuota" length="%s" staStart="%s" state="existing">\n' % (f6(0.0), f6(0.0)) +
            '\t\t\t<Start name="Start_vuota" state="existing">%s</Start>\n' % yxz(0.0, 0.0, 0.0) +
            "\t\t</Alignment>\n")


def alignments():
    return "\t<Alignments>\n" + road_ss12() + road_vuota() + "\t</Alignments>\n"


# ---------------------------------------------------------------- surfaces

def surface(name, outer, island, breaklines, verts, faces):
    t = '\t\t<Surface name="%s">\n' % esc(name)
    t += "\t\t\t<SourceData>\n\t\t\t\t<Boundaries>\n"
    for kind, prefix, cnts in (("outer", "contornoEst", outer), ("island", "contornoInt", island)):
        for i, c in enumerate(cnts):
            t += '\t\t\t\t\t<Boundary bndType="%s" edgeTrim="true" name="%s%d">\n' % (kind, prefix, i)
            t += "\t\t\t\t\t\t<PntList3D>" + "".join(yxz(*p) + " " for p in c) + "</PntList3D>\n"
            t += "\t\t\t\t\t</Boundary>\n"
    t += "\t\t\t\t</Boundaries>\n\t\t\t\t<Breaklines>\n"
    for i, (p, q) in enumerate(breaklines):
        t += '\t\t\t\t\t<Breakline name="vincolo%d">\n' % i
        t += "\t\t\t\t\t\t<PntList3D>%s %s</PntList3D>\n" % (yxz(*p), yxz(*q))
        t += "\t\t\t\t\t</Breakline>\n"
    t += "\t\t\t\t</Breaklines>\n\t\t\t</SourceData>\n"
    t += '\t\t\t<Definition surfType="TIN">\n\t\t\t\t<Pnts>\n'
    for i, p in enumerate(verts):
        t += '\t\t\t\t\t<P id="%d">%s</P>\n' % (i, yxz(*p))
    t += "\t\t\t\t</Pnts>\n\t\t\t\t<Faces>\n"
    for f in faces:
        t += "\t\t\t\t\t<F>%d %d %d</F>\n" % f
    t += "\t\t\t\t</Faces>\n\t\t\t</Definition>\n\t\t</Surface>\n"
    return t


def surfaces():
    verts = [(100.0, 200.0, 10.5), (110.0, 200.0, 11.25), (110.0, 210.0, 12.0), (100.0, 210.0, 11.0)]
    outer1 = [(100, 200, 10.5), (110, 200, 11.25), (110, 210, 12), (100, 210, 11)]
    outer2 = [(120, 200, 0), (130, 200, 0), (125, 205, 0)]
    island = [(104, 204, 11), (106, 204, 11), (105, 206, 11), (104, 204, 11)]
    breaklines = [((100.0, 200.0, 10.5), (110.0, 210.0, 12.0)), ((101.5, 202.25, 0.0), (108.0, 207.75, 0.0))]
    t = "\t<Surfaces>\n"
    t += surface("Piano", [outer1, outer2], [island], breaklines, verts, [(0, 1, 2), (0, 2, 3)])
    t += surface("vuoto", [], [], [], [], [])
    return t + "\t</Surfaces>\n"


# ---------------------------------------------------------------- surveys

def named_point(indent_tag, close, name, desc, x, y, z):
    return '%s name="%s" desc="%s">%s%s' % (indent_tag, esc(name), esc(desc), yxz(x, y, z), close)


def station_survey():
    stations = [
        ("ST0", "base", 1.55, (1000.0, 2000.0, 50.0), [("P1", "palo", (1010.0, 2020.0, 51.5), 1.3, 22.5, 1.5, 0.25)]),
        ("ST1", "", 1.6, (UNDEF, UNDEF, UNDEF), [("P2", "", (1020.0, 2030.0, 52.0), UNDEF, 30.0, 1.55, 0.5),
                                              ("P3", "no xyz", (UNDEF, UNDEF, UNDEF), 1.5, 12.0, 1.6, 0.75)]),
        ("ST2", "", 1.45, (1100.0, 2100.0, 55.0), [("Q0", "a", (1105.0, 2105.0, 55.5), 1.2, 7.0, 1.57, 1.0),
                                                  ("Q1", "b", (1110.0, 2110.0, 56.0), 1.2, UNDEF, UNDEF, UNDEF)]),
    ]
    t = '\t<Survey desc="J1">\n\t\t<SurveyHeader name="J1" />\n'
    for s, (name, desc, h, xyz, obs) in enumerate(stations):
        t += '\t\t<InstrumentSetup id="Setup%d" stationName="%s" instrumentHeight="%s">\n' % (s, name, f6(h))
        if all(defined(v) for v in xyz):
            t += named_point("\t\t\t<InstrumentPoint", "</InstrumentPoint>\n", name, desc, *xyz)
        for p, (pname, pdesc, pxyz, th, d0, d1, d2) in enumerate(obs):
            t += '\t\t\t<RawObservation setupID="Setup%d" ' % p
            for attr, v in (("targetHeight", th), ("horizAngle", d2), ("slopeDistance", d0), ("zenithAngle", d1)):
                if defined(v):
                    t += '%s="%s" ' % (attr, f6(v))
            t += ">\n"
            if all(defined(v) for v in pxyz):
                t += named_point("\t\t\t\t<TargetPoint", "</TargetPoint>\n", pname, pdesc, *pxyz)
            t += "\t\t\t</RawObservation>\n"
        t += "\t\t</InstrumentSetup>\n"
    return t + "\t</Survey>\n"


def deg(rad):
    return rad * 180.0 / 3.141592653589793


def float32(v):
    import struct
    return struct.unpack("f", struct.pack("f", v))[0]


def gps_survey():
    lat, lon = deg(0.7853981633974483), deg(0.2)
    t = "\t<Survey>\n"
    t += '\t\t<SurveyHeader name="G1" />\n'
    t += "\t\t<Equipment>\n"
    t += '\t\t\t<GPSAntennaDetails id="BASE" latitude="%s" longitude="%s" altitude="%s" />\n' % (f9(lat), f9(lon),
                                                                                               f6(250.5))
    t += "\t\t</Equipment>\n"
    t += '\t\t<GPSSetup id="BASE" antennaHeight="%s" stationName="BASE" >\n' % f6(1.8)
    t += '\t\t\t<GPSPosition wgsHeight="%s" wgsLatitude="%s" wgsLongitude="%s">\n' % (f6(250.5), f9(lat), f9(lon))
    t += "\t\t\t\t<TargetPoint>%s</TargetPoint>\n" % yxz(1000.0, 2000.0, 250.5)
    t += "\t\t\t</GPSPosition>\n\t\t</GPSSetup>\n"
    types = {5: "Unknown", 8: "Fixed", 2: "Code", 3: "Float", -1: "Unknown"}
    cov = [float32(c) for c in (0.0015, -0.0002, 0.0001, 0.0025, 0.0, 0.004)]
    for i, q in enumerate((5, 8, 2, 3, -1)):
        t += '\t\t<GPSPosition setupID="BASE" wgsHeight="%s" wgsLatitude="%s" wgsLongitude="%s">\n' % (
            f6(251.0 + i), f9(deg(0.78 + i * 0.001)), f9(deg(0.21)))
        t += named_point("\t\t\t<TargetPoint", "</TargetPoint>\n", "R%d" % i, "d%d" % i, 1001.0 + i, 2002.0, 251.0 + i)
        t += ('\t\t\t<GPSQCInfoLevel2 GPSSolnType="%s" covarianceXX="%s" covarianceXY="%s" covarianceXZ="%s"'
              ' covarianceYY="%s" covarianceYZ="%s" covarianceZZ="%s" nbrSatellites="%d" />\n'
              % ((types[q],) + tuple(f6(c) for c in cov) + (12 + 5,)))
        t += "\t\t</GPSPosition>\n"
    return t + "\t</Survey>\n"


def cg_points():
    return ('\t<CgPoints name="PG">\n' +
            '\t\t<CgPoint name="A">%s</CgPoint>\n' % yxz(1.0, 2.0, 3.0) +
            '\t\t<CgPoint name="B&amp;C">%s</CgPoint>\n' % yxz(UNDEF, UNDEF, UNDEF) +
            "\t</CgPoints>\n")


def surveys():
    return station_survey() + gps_survey() + cg_points()


FILES = {
    "header_only.xml": HEADER + FOOTER,
    "alignments.xml": HEADER + alignments() + FOOTER,
    "surfaces.xml": HEADER + surfaces() + FOOTER,
    "surveys.xml": HEADER + surveys() + FOOTER,
    "full.xml": HEADER + alignments() + surveys() + surfaces() + FOOTER,
}

if __name__ == "__main__":
    here = os.path.dirname(os.path.abspath(__file__))
    for name, text in FILES.items():
        with open(os.path.join(here, name), "w", newline="\n") as f:
            f.write(text)
