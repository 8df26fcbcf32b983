#!/usr/bin/python3
"""What importing a LandXML file with everything chosen must put into the
document, counted from the file alone with xml.etree (no roadx code): roads
with their plan elements, main profile line and cross sections, surfaces
with their vertices, triangles and breaklines, point groups, GPS groups and
total-station jobs. Prints one JSON object shaped like the matching part of
`roadx info --json`.

Number texts are split at blanks only and each piece read for its leading
number, as the importer reads them. Cross sections are counted when they have
width and their station lies within the alignment's staStart .. staStart +
length (the file's own attributes); section lines go under a code of their
own surface name, so every named surface with points is one line.
"""
import json
import re
import sys
import xml.etree.ElementTree as ET

FEET = 0.3048006096012
UNDEFINED = 1.7e200
NUMBER = re.compile(r'[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d*)?')
INTEGER = re.compile(r'[+-]?\d+')
SPACE = ' \t\n\r\v\f'


def local(tag):
    return tag.rsplit('}', 1)[-1] if isinstance(tag, str) else ''


def kids(elem, name):
    return [c for c in elem if local(c.tag) == name] if elem is not None else []


def first(elem, name):
    k = kids(elem, name)
    return k[0] if k else None


def tokens(text):
    return [t for t in (text or '').strip(SPACE).split(' ') if t]


def number(token):
    m = NUMBER.match(token.lstrip(SPACE))
    if not m or (m.group(2) is not None and not re.search(r'\d', m.group(2))):
        return 0.0
    try:
        return float(m.group(0))
    except OverflowError:
        return 0.0


def integer(token):
    m = INTEGER.match(token.lstrip(SPACE))
    if not m:
        return 0
    return max(-2**31, min(2**31 - 1, int(m.group(0))))


def numbers(elem, metric):
    vals = [number(t) for t in tokens(elem.text if elem is not None else '')]
    return vals if metric else [v * FEET for v in vals]


def attr_number(elem, name, default):
    v = elem.get(name) if elem is not None else None
    return default if v is None else number(v)


def is_metric(root):
    metric = True
    for units in kids(root, 'Units'):
        if kids(units, 'Metric'):
            metric = True
        if kids(units, 'Imperial'):
            metric = False
    return metric


# --- points and surveys -----------------------------------------------------

class Points:
    def __init__(self, root, metric):
        self.root, self.metric, self.referenced = root, metric, set()

    def lookup(self, source, name):
        for group in kids(source, 'CgPoints'):
            for p in kids(group, 'CgPoint'):
                if p.get('name', '') == name:
                    return p
        return None

    def resolve(self, elem, survey):
        if len(numbers(elem, self.metric)) == 3:
            return True
        ref = elem.get('pntRef', '')
        if not ref:
            return False
        for source in (self.root, survey):
            p = self.lookup(source, ref)
            if p is not None and len(numbers(p, self.metric)) == 3:
                self.referenced.add(ref)
                return True
        return False


def survey_counts(root, metric):
    pts = Points(root, metric)
    jobs, gps, groups = [], [], []
    for survey in kids(root, 'Survey'):
        setups = kids(survey, 'InstrumentSetup')
        if not setups:
            continue
        obs = 0
        for setup in setups:
            station = first(setup, 'InstrumentPoint')
            if station is not None:
                pts.resolve(station, survey)
            for raw in kids(setup, 'RawObservation'):
                obs += sum(1 for t in kids(raw, 'TargetPoint') if pts.resolve(t, survey))
        jobs.append({'name': survey.get('desc', ''), 'stations': len(setups), 'observations': obs})
    for survey in kids(root, 'Survey'):
        header = first(survey, 'SurveyHeader')
        header_name = header.get('name', '') if header is not None else ''
        for setup in kids(survey, 'GPSSetup'):
            base = first(setup, 'GPSPosition')
            if base is not None and first(base, 'TargetPoint') is not None:
                pts.resolve(first(base, 'TargetPoint'), survey)
            rovers = 0
            for pos in kids(survey, 'GPSPosition'):
                if pos.get('setupID', '') != setup.get('id', ''):
                    continue
                given = all(attr_number(pos, a, UNDEFINED) < 8.5e199 for a in ('wgsLatitude', 'wgsLongitude'))
                rovers += 1 if given else 0
                if first(pos, 'TargetPoint') is not None:
                    pts.resolve(first(pos, 'TargetPoint'), survey)
            gps.append({'name': header_name, 'base': setup.get('stationName', ''), 'points': rovers})
    sources = kids(root, 'CgPoints') + [g for s in kids(root, 'Survey') for g in kids(s, 'CgPoints')]
    for group in sources:
        kept = [p for p in kids(group, 'CgPoint')
                if p.get('name', '') not in pts.referenced and len(numbers(p, metric)) == 3]
        if kept:
            groups.append({'name': group.get('name', ''), 'points': len(kept)})
    return jobs, gps, groups


# --- surfaces ---------------------------------------------------------------

def surface_counts(root, metric):
    out = []
    for surfaces in kids(root, 'Surfaces'):
        for surface in kids(surfaces, 'Surface'):
            verts, tris, breaklines = 0, 0, 0
            known = set()
            for source in kids(surface, 'SourceData'):
                for bls in kids(source, 'Breaklines'):
                    for bl in kids(bls, 'Breakline'):
                        breaklines += len(kids(bl, 'PntList3D')) + len(kids(bl, 'PntList2D'))
            for definition in kids(surface, 'Definition'):
                tin = definition.get('surfType', '') == 'TIN'
                pid = 0
                for p in kids(first(definition, 'Pnts'), 'P'):
                    if p.get('id') is not None:
                        pid = integer(p.get('id'))
                    known.add(pid)
                    verts += 1
                for f in kids(first(definition, 'Faces'), 'F'):
                    ids = [integer(t) for t in tokens(f.text)]
                    faces = [ids[0:3]] if tin else [ids[0:3], [ids[0], ids[2], ids[3]]]
                    tris += sum(1 for face in faces if all(i in known for i in face))
            out.append({'name': surface.get('name', ''), 'vertices': verts, 'triangles': tris,
                        'breaklines': breaklines})
    return out


# --- roads ------------------------------------------------------------------

def profile_counts(alignment):
    for profile in kids(alignment, 'Profile'):
        for pa in kids(profile, 'ProfAlign'):
            curves = len(kids(pa, 'ParaCurve')) + len(kids(pa, 'CircCurve'))
            n = len(kids(pa, 'PVI')) + curves
            if n:
                return {'vertices': n, 'curves': curves}
    return {'vertices': 0, 'curves': 0}


def tol(a):
    return 1e-12 + 1e-12 * abs(a)


def surface_points(surf, metric):
    pts, first_pt, last_pt = [], None, None
    for lst in kids(surf, 'PntList2D'):
        v = numbers(lst, metric)
        for k in range(0, len(v) - 1, 2):
            p = (v[k], v[k + 1])
            if not pts:
                first_pt = last_pt = p
            elif p[0] >= last_pt[0] and p != last_pt:
                last_pt = p
            elif p[0] <= first_pt[0] and p != first_pt:
                first_pt = p
            else:
                continue
            pts.append(p)
    return pts


def section_counts(alignment, metric):
    start = attr_number(alignment, 'staStart', 0.0) * (1 if metric else FEET)
    end = start + attr_number(alignment, 'length', 0.0) * (1 if metric else FEET)
    sections, points = 0, 0
    for css in kids(alignment, 'CrossSects'):
        for cs in kids(css, 'CrossSect'):
            surfs = kids(cs, 'CrossSectSurf')
            if not surfs:
                continue
            sta = attr_number(cs, 'sta', 0.0) * (1 if metric else FEET)
            offsets = [v for s in surfs for lst in kids(s, 'PntList2D') for v in numbers(lst, metric)[0::2]]
            low = min([0.0] + offsets)
            high = max([0.0] + offsets)
            if low + tol(low) >= high or not (start - tol(start) <= sta <= end + tol(end)):
                continue
            sections += 1
            for s in surfs:
                if s.get('name', '') in ('TER', 'TERRENO'):
                    raise SystemExit('terrain-coded section surfaces are not counted by this script')
                if s.get('name', ''):
                    points += len(surface_points(s, metric))
    return sections, points


def road_counts(root, metric):
    out = []
    for als in kids(root, 'Alignments'):
        for al in kids(als, 'Alignment'):
            elements = sum(1 for cg in kids(al, 'CoordGeom') for c in cg
                           if local(c.tag) in ('Line', 'Curve', 'Spiral'))
            sections, points = section_counts(al, metric)
            out.append({'name': al.get('name', ''), 'elements': elements, 'profile': profile_counts(al),
                        'sections': sections, 'sectionPoints': points})
    return out


def main():
    root = ET.parse(sys.argv[1]).getroot()
    metric = is_metric(root)
    jobs, gps, groups = survey_counts(root, metric)
    print(json.dumps({'roads': road_counts(root, metric), 'surfaces': surface_counts(root, metric),
                      'pointGroups': groups, 'gpsGroups': gps, 'jobs': jobs}, ensure_ascii=False))


if __name__ == '__main__':
    main()
