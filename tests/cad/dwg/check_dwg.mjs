// Independent check of a DWG file written by the CAD engine.
//
// Usage: node check_dwg.mjs FILE.dwg EXPECT.json [OUT.dxf]
//
// Reads FILE with two readers installed from the npm registry by
// tests/package.json (test tools only, never part of roadx):
//  - libredwg-web: must report no error; layers (name, colour, off, frozen,
//    locked), blocks (names and entity types) and every model-space entity
//    (type, layer, colour, numbers, flags, text) are compared with EXPECT;
//    3D polyline vertices are taken from the VERTEX objects the polyline
//    owns, text heights of TEXT from the entity itself.
//  - libdxfrw-web: must read the file without error; layers (name, colour,
//    frozen, locked) and the number of model-space entities per layer are
//    compared.
// With OUT.dxf, the file is also converted to DXF by dwg2dxf (a third build
// of a reader) for the ezdxf audit of check_dwg_dxf.py.
// Numbers in EXPECT under "exact" must be equal as doubles; "approx" ones
// (angles in degrees) within 1e-9. Exit status 0 when everything matches.
import { readFileSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const here = dirname(fileURLToPath(import.meta.url));
const modules = join(here, '..', '..', 'node_modules');
const [dwgPath, expectPath, dxfPath] = process.argv.slice(2);
const bytes = new Uint8Array(readFileSync(dwgPath));
const want = JSON.parse(readFileSync(expectPath, 'utf8'));
const problems = [];
const deg = 180 / Math.PI;

// Names and texts are stored in code page 1252 with \U+XXXX escapes for
// other characters; readers hand the bytes over as Latin-1 characters.
// Characters of bytes 0x80..0x9F of code page 1252 (0 where it has none);
// the other bytes are the Latin-1 characters of the same number.
const kCp1252High = [
  0x20ac, 0, 0x201a, 0x0192, 0x201e, 0x2026, 0x2020, 0x2021, 0x02c6, 0x2030, 0x0160, 0x2039, 0x0152, 0, 0x017d, 0,
  0, 0x2018, 0x2019, 0x201c, 0x201d, 0x2022, 0x2013, 0x2014, 0x02dc, 0x2122, 0x0161, 0x203a, 0x0153, 0, 0x017e, 0x0178];
function decodeText(s) {
  const text = [...s].map((c) => {
    const b = c.charCodeAt(0);
    return b >= 0x80 && b <= 0x9f && kCp1252High[b - 0x80] ? String.fromCharCode(kCp1252High[b - 0x80]) : c;
  }).join('');
  return text.replace(/\\U\+([0-9A-Fa-f]{4})/g, (_, h) => String.fromCharCode(parseInt(h, 16)));
}

const xyz = (p) => [p.x, p.y, p.z];

function same(got, w, path) {
  for (const key of ['type', 'layer', 'colour', 'text']) {
    if (got[key] !== w[key]) problems.push(`${path}: ${key} ${JSON.stringify(got[key])} != ${JSON.stringify(w[key])}`);
  }
  if (JSON.stringify(got.flags) !== JSON.stringify(w.flags)) problems.push(`${path}: flags ${got.flags} != ${w.flags}`);
  const exact = got.exact.length === w.exact.length && got.exact.every((v, i) => Object.is(v, w.exact[i]) || v === w.exact[i]);
  if (!exact) problems.push(`${path}: numbers ${JSON.stringify(got.exact)} != ${JSON.stringify(w.exact)}`);
  const approx = got.approx.length === w.approx.length && got.approx.every((v, i) => Math.abs(v - w.approx[i]) <= 1e-9);
  if (!approx) problems.push(`${path}: angles ${JSON.stringify(got.approx)} != ${JSON.stringify(w.approx)}`);
}

async function withLibreDwg() {
  const { LibreDwg, Dwg_Object_Type: T } = await import(join(modules, '@mlightcad/libredwg-web/dist/libredwg-web.js'));
  const L = await LibreDwg.create(join(modules, '@mlightcad/libredwg-web/wasm'));
  L.FS.writeFile('in.dwg', bytes);
  const res = L.dwg_read_file('in.dwg');
  if (res.error !== 0) problems.push(`libredwg: error code ${res.error}`);
  const data = res.data;

  // Objects by handle: layer flags, TEXT elevations, 3D polyline vertices.
  const layerFlags = new Map();
  const elevation = new Map();
  const vertices = new Map();
  for (let i = 0, n = L.dwg_get_num_objects(data); i < n; ++i) {
    const obj = L.dwg_get_object(data, i);
    const type = L.dwg_object_get_fixedtype(obj);
    const handle = Number(L.dwg_object_get_handle_object(obj).value).toString(16).toUpperCase();
    if (type === T.DWG_TYPE_LAYER) {
      const tio = L.dwg_object_to_object_tio(obj);
      const f = (name) => L.dwg_dynapi_entity_data(tio, name);
      layerFlags.set(handle, { off: f('off') !== 0, frozen: f('frozen') !== 0, locked: f('locked') !== 0 });
    } else if (type === T.DWG_TYPE_TEXT) {
      elevation.set(handle, L.dwg_dynapi_entity_data(L.dwg_object_to_entity_tio(obj), 'elevation'));
    } else if (type === T.DWG_TYPE_VERTEX_3D) {
      const owner = L.dwg_object_entity_get_ownerhandle_object(L.dwg_object_to_entity(obj));
      const key = Number(owner.absolute_ref).toString(16).toUpperCase();
      const point = L.dwg_dynapi_entity_data(L.dwg_object_to_entity_tio(obj), 'point');
      if (!vertices.has(key)) vertices.set(key, []);
      vertices.get(key).push({ handle: parseInt(handle, 16), point });
    }
  }
  const db = L.convert(data);

  const layers = new Map();
  for (const l of db.tables.LAYER.entries) layers.set(decodeText(l.name), l);
  for (const [name, w] of Object.entries(want.layers)) {
    const l = layers.get(name);
    if (!l) { problems.push(`libredwg: layer ${JSON.stringify(name)} missing`); continue; }
    const f = layerFlags.get(l.handle) ?? {};
    const got = [f.off ? -l.colorIndex : l.colorIndex, f.frozen, f.locked];
    const exp = [w.colour, w.frozen, w.locked];
    if (JSON.stringify(got) !== JSON.stringify(exp)) problems.push(`libredwg: layer ${JSON.stringify(name)}: ${JSON.stringify(got)} != ${JSON.stringify(exp)}`);
  }

  const blocks = new Map();
  for (const b of db.tables.BLOCK_RECORD.entries) blocks.set(decodeText(b.name), b);
  for (const [name, kinds] of Object.entries(want.blocks)) {
    const b = blocks.get(name);
    if (!b) { problems.push(`libredwg: block ${JSON.stringify(name)} missing`); continue; }
    const got = b.entities.map((e) => (e.type.startsWith('POLYLINE') ? 'POLYLINE' : e.type)).sort();
    if (JSON.stringify(got) !== JSON.stringify([...kinds].sort())) problems.push(`libredwg: block ${JSON.stringify(name)}: ${got} != ${kinds}`);
  }

  const describe = (e) => {
    const d = { type: e.type, layer: decodeText(e.layer), colour: e.colorIndex, exact: [], approx: [], flags: [], text: '' };
    switch (e.type) {
      case 'POINT': d.exact = xyz(e.position); break;
      case 'LINE': d.exact = [...xyz(e.startPoint), ...xyz(e.endPoint)]; break;
      case 'CIRCLE': d.exact = [...xyz(e.center), e.radius]; break;
      case 'ARC':
        d.exact = [...xyz(e.center), e.radius];
        d.approx = [e.startAngle * deg, e.endAngle * deg];
        break;
      case 'LWPOLYLINE':
        d.exact = [e.elevation ?? 0];
        for (const v of e.vertices) d.exact.push(v.x, v.y, v.bulge ?? 0);
        d.flags = [(e.flag & 512) ? 1 : 0];
        break;
      case 'POLYLINE3D': {
        const vs = (vertices.get(e.handle) ?? []).sort((a, b) => a.handle - b.handle);
        for (const v of vs) d.exact.push(...xyz(v.point));
        d.flags = [e.flag & 1];
        break;
      }
      case '3DFACE':
        d.exact = [...xyz(e.corner1), ...xyz(e.corner2), ...xyz(e.corner3), ...xyz(e.corner4)];
        d.flags = [e.flag];
        break;
      case 'TEXT':
        d.exact = [e.startPoint.x, e.startPoint.y, elevation.get(e.handle), e.textHeight];
        d.approx = [e.rotation * deg];
        d.flags = [e.halign, e.valign];
        d.text = decodeText(e.text);
        break;
      case 'INSERT':
        d.exact = [...xyz(e.insertionPoint), e.xScale, e.yScale, e.zScale];
        d.approx = [e.rotation * deg];
        d.text = decodeText(e.name);
        break;
      default: break;
    }
    return d;
  };
  const got = db.entities.map(describe);
  if (got.length !== want.entities.length) problems.push(`libredwg: ${got.length} model-space entities != ${want.entities.length}`);
  got.forEach((g, i) => { if (i < want.entities.length) same(g, want.entities[i], `libredwg: entity ${i}`); });
}

// Entities per layer name of the expectation.
function wantedPerLayer() {
  const m = {};
  for (const e of want.entities) m[e.layer] = (m[e.layer] ?? 0) + 1;
  return m;
}

async function withLibDxfRw() {
  const dir = join(modules, '@mlightcad/libdxfrw-web/dist');
  const factory = (await import(join(dir, 'libdxfrw.js'))).default;
  const m = await factory({ wasmBinary: readFileSync(join(dir, 'libdxfrw.wasm')) });
  const db = new m.DRW_Database();
  const fh = new m.DRW_FileHandler();
  fh.database = db;
  const dwg = new m.DRW_DwgR(bytes);
  const ok = dwg.read(fh, false);
  if (!ok || dwg.getError().value !== 0) problems.push(`libdxfrw: read failed, error ${dwg.getError().value}`);
  const layers = new Map();
  for (let i = 0; i < db.layers.size(); ++i) { const l = db.layers.get(i); layers.set(decodeText(l.name), l); }
  for (const [name, w] of Object.entries(want.layers)) {
    const l = layers.get(name);
    if (!l) { problems.push(`libdxfrw: layer ${JSON.stringify(name)} missing`); continue; }
    const got = [Math.abs(l.color), (l.flags & 1) !== 0, (l.flags & 4) !== 0];
    const exp = [Math.abs(w.colour), w.frozen, w.locked];
    if (JSON.stringify(got) !== JSON.stringify(exp)) problems.push(`libdxfrw: layer ${JSON.stringify(name)}: ${JSON.stringify(got)} != ${JSON.stringify(exp)}`);
  }
  // Model-space entities may be listed under the model-space block or
  // apart; count each handle once.
  const perLayer = {};
  const seen = new Set();
  const take = (list) => {
    for (let i = 0; i < list.size(); ++i) {
      const e = list.get(i);
      if (seen.has(e.handle)) continue;
      seen.add(e.handle);
      const layer = decodeText(e.layer);
      perLayer[layer] = (perLayer[layer] ?? 0) + 1;
    }
  };
  take(db.mBlock.entities);
  for (let i = 0; i < db.blocks.size(); ++i) {
    const b = db.blocks.get(i);
    if (b.name.toLowerCase() === '*model_space') take(b.entities);
  }
  const exp = wantedPerLayer();
  if (JSON.stringify(Object.entries(perLayer).sort()) !== JSON.stringify(Object.entries(exp).sort())) {
    problems.push(`libdxfrw: entities per layer ${JSON.stringify(perLayer)} != ${JSON.stringify(exp)}`);
  }
  dwg.delete();
  fh.delete();
  db.delete();
}

async function withDwg2Dxf() {
  const dir = join(modules, 'dwg2dxf/dist');
  const factory = (await import(join(dir, 'dwg2dxf-wasm.js'))).default;
  const log = [];
  const m = await factory({ wasmBinary: readFileSync(join(dir, 'dwg2dxf-wasm.wasm')), print: () => {}, printErr: (s) => log.push(s) });
  m.FS.writeFile('a.dwg', bytes);
  m._dwg2dxf();
  for (const line of log) if (/ERROR/.test(line)) problems.push(`dwg2dxf: ${line}`);
  writeFileSync(dxfPath, m.FS.readFile('a.dxf'));
}

await withLibreDwg();
await withLibDxfRw();
if (dxfPath) await withDwg2Dxf();
for (const p of problems.slice(0, 50)) console.log(p);
process.exit(problems.length ? 1 : 0);
