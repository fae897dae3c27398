// The reference host's DWG to DXF converter: one long-lived process, one request per line.
//
// Request:  "<input path as hex> <output path as hex>\n"  (paths are bytes, so hex keeps any name)
// Replies:  "READY\n" once started, then per request "OK <warning bits>\n" or "ERR <text>\n".
// After a failed conversion the WebAssembly instance may be corrupt: the process exits and the
// host starts a new one. Everything the library prints goes to stderr, never into the replies.
import fs from 'node:fs';
import path from 'node:path';
import readline from 'node:readline';
import { fileURLToPath, pathToFileURL } from 'node:url';

const here = path.dirname(fileURLToPath(import.meta.url));
const log = (...a) => process.stderr.write(a.join(' ') + '\n');
console.log = log;
console.info = log;
console.warn = log;

function reply(line) {
    process.stdout.write(line.replace(/[\r\n]+/g, ' ') + '\n');
}

// LibreDWG's error bits: below 128 the drawing was read with warnings.
const DWG_ERR_CRITICAL = 128;

let lib;
try {
    const url = pathToFileURL(
        path.join(here, 'node_modules/@mlightcad/libredwg-web/wasm/libredwg-web.js'));
    const { default: createModule } = await import(url.href);
    lib = await createModule({ print: log, printErr: log });
} catch (e) {
    reply('MISSING @mlightcad/libredwg-web: ' + String(e && e.message ? e.message : e));
    process.exit(2);
}
reply('READY');

function convert(inPath, outPath) {
    const data = fs.readFileSync(inPath);
    lib.FS.writeFile('/in.dwg', new Uint8Array(data.buffer, data.byteOffset, data.length));
    try {
        const err = lib.dwg_write_dxf('/in.dwg', '/out.dxf');
        if (err >= DWG_ERR_CRITICAL)
            throw new Error('LibreDWG error ' + err);
        fs.writeFileSync(outPath, lib.FS.readFile('/out.dxf'));
        return err;
    } finally {
        for (const f of ['/in.dwg', '/out.dxf'])
            if (lib.FS.analyzePath(f, false).exists)
                lib.FS.unlink(f);
    }
}

const lines = readline.createInterface({ input: process.stdin, terminal: false });
for await (const line of lines) {
    const parts = line.trim().split(' ');
    if (parts.length !== 2) {
        reply('ERR bad request');
        continue;
    }
    try {
        const err = convert(Buffer.from(parts[0], 'hex'), Buffer.from(parts[1], 'hex'));
        reply('OK ' + err);
    } catch (e) {
        reply('ERR ' + String(e && e.message ? e.message : e));
        process.exit(1);
    }
}
