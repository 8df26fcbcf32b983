// Parses one LandXML TIN file with @ifc-lite/wasm (a benchmark tool only) and
// prints "seconds points faces": the time of the parse call alone, after the
// file is read and the WebAssembly module is instantiated.
import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { dirname, join } from 'node:path';
import { initSync, IfcAPI } from '@ifc-lite/wasm';

// The package's entry module lies beside its .wasm file.
const entry = fileURLToPath(import.meta.resolve('@ifc-lite/wasm'));
initSync({ module: readFileSync(join(dirname(entry), 'ifc-lite_bg.wasm')) });

const bytes = new Uint8Array(readFileSync(process.argv[2]));
const api = new IfcAPI();
const t0 = process.hrtime.bigint();
const doc = api.parseLandXmlTinBytes(bytes);
const seconds = Number(process.hrtime.bigint() - t0) / 1e9;
const s = doc.surfaces[0] || { points: [], faces: [] };
console.log(`${seconds.toFixed(3)} ${s.points.length} ${s.faces.length}`);
