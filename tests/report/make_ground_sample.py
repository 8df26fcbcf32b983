#!/usr/bin/python3
"""Writes tests/data/report/ground_gaps.xml: a small bumpy TIN with a hole,
and a road (straight, arc, straight) that starts west of the surface, crosses
the hole and leaves the surface in the north, so that its ground profile has
gaps; with a design profile and one cross section."""
import math
import sys

STEP, N = 20.0, 6  # 6 x 6 vertices, 0..100 m


def z(x, y):
    return 100 + 0.05 * x + 0.02 * y + 3 * math.sin(x / 17) * math.cos(y / 23)


def main(out):
    pts = []
    for j in range(N):
        for i in range(N):
            x, y = i * STEP, j * STEP
            pts.append((x, y, z(x, y)))
    faces = []
    for j in range(N - 1):
        for i in range(N - 1):
            if (i, j) == (3, 2):  # the hole: cell 60..80 x 40..60
                continue
            a = j * N + i + 1
            b, c, d = a + 1, a + N + 1, a + N
            if (i + j) % 2:
                faces += [(a, b, c), (a, c, d)]
            else:
                faces += [(a, b, d), (b, c, d)]
    r, sweep = 50.0, math.radians(60)
    p0, p1 = (-10.0, 35.0), (30.0, 35.0)
    centre = (30.0, 85.0)
    p2 = (centre[0] + r * math.sin(sweep), centre[1] - r * math.cos(sweep))
    d2 = (math.cos(sweep), math.sin(sweep))
    p3 = (p2[0] + 50 * d2[0], p2[1] + 50 * d2[1])
    arc = r * sweep
    pi_len = r * math.tan(sweep / 2)
    pi = (p1[0] + pi_len, p1[1])
    end = 40 + arc + 50
    w = []
    w.append('<?xml version="1.0" encoding="UTF-8"?>')
    w.append('<LandXML xmlns="http://www.landxml.org/schema/LandXML-1.0" version="1.0">')
    w.append('  <Units><Metric linearUnit="meter" angularUnit="decimal degrees" directionUnit="decimal degrees"/></Units>')
    w.append('  <Surfaces><Surface name="BUMPS"><Definition surfType="TIN"><Pnts>')
    for k, (x, y, zz) in enumerate(pts):
        w.append(f'    <P id="{k + 1}">{y:.6f} {x:.6f} {zz:.6f}</P>')
    w.append('  </Pnts><Faces>')
    for f in faces:
        w.append(f'    <F>{f[0]} {f[1]} {f[2]}</F>')
    w.append('  </Faces></Definition></Surface></Surfaces>')
    w.append(f'  <Alignments><Alignment name="Gaps" length="{end:.6f}" staStart="0"><CoordGeom>')
    w.append(f'    <Line staStart="0" length="40" dir="0"><Start>{p0[1]} {p0[0]}</Start><End>{p1[1]} {p1[0]}</End></Line>')
    w.append(f'    <Curve staStart="40" length="{arc:.9f}" radius="{r}" rot="ccw" delta="60" dirStart="0" dirEnd="60">'
             f'<Start>{p1[1]} {p1[0]}</Start><Center>{centre[1]} {centre[0]}</Center>'
             f'<End>{p2[1]:.9f} {p2[0]:.9f}</End><PI>{pi[1]:.9f} {pi[0]:.9f}</PI></Curve>')
    w.append(f'    <Line staStart="{40 + arc:.9f}" length="50" dir="60"><Start>{p2[1]:.9f} {p2[0]:.9f}</Start>'
             f'<End>{p3[1]:.9f} {p3[0]:.9f}</End></Line>')
    w.append('  </CoordGeom><Profile><ProfAlign name="Design"><PVI>0 101</PVI>'
             '<ParaCurve length="30">60 103</ParaCurve><PVI>' + f'{end:.6f}' + ' 102</PVI></ProfAlign></Profile>')
    w.append('  <CrossSects><CrossSect sta="50" name="S50"><CrossSectSurf name="FG"><PntList2D>'
             '-8 102 -4 102.3 0 102.4 4 102.3 8 102</PntList2D></CrossSectSurf></CrossSect></CrossSects>')
    w.append('  </Alignment></Alignments>')
    w.append('</LandXML>')
    with open(out, 'w', encoding='utf-8') as f:
        f.write('\n'.join(w) + '\n')


if __name__ == '__main__':
    main(sys.argv[1])
