// What a DWG file holds, as libredwg-web reads it, for the sample test
// (test_sample_dwg.cpp) to compare with ezdxf's reading of the DXF of the
// same conversion.
//
// Usage: node check_sample_dwg.mjs FILE.dwg SUMMARY.json [OUT.dxf]
//
// libredwg-web (installed by `npm ci --prefix tests`, test tool only) must
// read FILE without error. SUMMARY receives
//   "layers":   {name: {colour, off, frozen, locked}} of the layer table;
//   "entities": {layer: {kind: count}} of the model space, kinds as
//               check_drawing.py names them (LWPOLYLINE and 2D POLYLINE
//               are both POLYLINE2D).
// With OUT.dxf, dwg2dxf (another build of a reader) also converts FILE to
// DXF, for ezdxf's audit. Exit status 0 when FILE was read without error.
import { readFileSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const here = dirname(fileURLToPath(import.meta.url));
const modules = join(here, '..', 'node_modules');
const [dwgPath, summaryPath, dxfPath] = process.argv.slice(2);
const bytes = new Uint8Array(readFileSync(dwgPath));
const problems = [];

// Names are stored in code page 1252 with \U+XXXX escapes for other
// characters; the reader hands the bytes over as Latin-1 characters.
// Characters of bytes 0x80..0x9F of code page 1252 (0 where it has none).
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

function kind(type) {
  if (type === 'LWPOLYLINE' || type === 'POLYLINE2D') return 'POLYLINE2D';
  return type;
}

async function summarise() {
  const { LibreDwg, Dwg_Object_Type: T } = await import(join(modules, '@mlightcad/libredwg-web/dist/libredwg-web.js'));
  const L = await LibreDwg.create(join(modules, '@mlightcad/libredwg-web/wasm'));
  L.FS.writeFile('in.dwg', bytes);
  const res = L.dwg_read_file('in.dwg');
  if (res.error !== 0) problems.push(`libredwg: error code ${res.error}`);
  const data = res.data;

  // The converted tables carry no layer flags: take them from the objects.
  const flags = new Map();
  for (let i = 0, n = L.dwg_get_num_objects(data); i < n; ++i) {
    const obj = L.dwg_get_object(data, i);
    if (L.dwg_object_get_fixedtype(obj) !== T.DWG_TYPE_LAYER) continue;
    const handle = Number(L.dwg_object_get_handle_object(obj).value).toString(16).toUpperCase();
    const tio = L.dwg_object_to_object_tio(obj);
    const f = (name) => L.dwg_dynapi_entity_data(tio, name) !== 0;
    flags.set(handle, { off: f('off'), frozen: f('frozen'), locked: f('locked') });
  }
  const db = L.convert(data);

  const layers = {};
  for (const l of db.tables.LAYER.entries) {
    const name = decodeText(l.name);
    const f = flags.get(l.handle);
    if (!f) problems.push(`libredwg: layer ${JSON.stringify(name)} has no LAYER object`);
    if (name in layers) problems.push(`libredwg: layer ${JSON.stringify(name)} listed twice`);
    layers[name] = { colour: Math.abs(l.colorIndex), off: f?.off ?? false, frozen: f?.frozen ?? false, locked: f?.locked ?? false };
  }
  const entities = {};
  for (const e of db.entities) {
    const layer = decodeText(e.layer);
    entities[layer] ??= {};
    entities[layer][kind(e.type)] = (entities[layer][kind(e.type)] ?? 0) + 1;
  }
  writeFileSync(summaryPath, JSON.stringify({ layers, entities }));
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

await summarise();
if (dxfPath) await withDwg2Dxf();
for (const p of problems.slice(0, 50)) console.log(p);
process.exit(problems.length ? 1 : 0);
