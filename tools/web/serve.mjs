// A small static server for the built page. By hand: node tools/web/serve.mjs FOLDER [PORT]

import { createServer } from 'node:http';
import { readFile } from 'node:fs/promises';
import { extname, join, normalize } from 'node:path';
import { fileURLToPath } from 'node:url';
import { brotliCompressSync, constants, gzipSync } from 'node:zlib';

/** @type {Record<string, string>} */
const TYPES = {
    '.html': 'text/html; charset=utf-8',
    '.css': 'text/css; charset=utf-8',
    '.js': 'text/javascript; charset=utf-8',
    '.mjs': 'text/javascript; charset=utf-8',
    '.wasm': 'application/wasm',
    '.png': 'image/png',
    '.webp': 'image/webp',
    '.webmanifest': 'application/manifest+json',
    '.performance': 'text/plain; charset=utf-8',
    '.wav': 'audio/wav',
};
// These are packed already, or as good as.
const UNPACKED = ['.png', '.webp', '.wav', '.bin'];

/** How much work Brotli makes of it, of 11 at most: a file of the page is packed while the browser waits. */
const BROTLI_QUALITY = 9;
/** @type {Record<string, (bytes: Buffer) => Buffer>} The best first. */
const PACKERS = {
    br: (bytes) => brotliCompressSync(bytes, { params: { [constants.BROTLI_PARAM_QUALITY]: BROTLI_QUALITY } }),
    gzip: (bytes) => gzipSync(bytes),
};
/** @type {Map<string, { bytes: Buffer, packed: Buffer }>} by encoding and name, whatever server asks */
const known = new Map();

/** @param {string} encoding @param {string} name @param {Buffer} bytes */
function pack(encoding, name, bytes) {
    const key = `${encoding} ${name}`;
    const before = known.get(key);
    if (before?.bytes.equals(bytes)) return before.packed;
    const packed = PACKERS[encoding](bytes);
    known.set(key, { bytes, packed });
    return packed;
}

/**
 * Serves a folder on localhost below `/` and, for a page must work in any sub-folder, below `/in/a/folder/`.
 * @param {string} folder
 * @param {number} port 0 for a free one
 * @param {(path: string, answer: import('node:http').ServerResponse) => boolean} intercept answers in the folder's place
 *     where it returns true
 * @returns {Promise<{ address: string, close(): Promise<void> }>} `address` ends in a slash
 */
export async function serve(folder, port = 0, intercept = () => false) {
    const server = createServer(async (request, answer) => {
        const path = decodeURIComponent(new URL(request.url ?? '/', 'http://localhost').pathname);
        const name = normalize(path).replace(/^\/(?:in\/a\/folder\/)?/, '') || 'index.html';
        if (intercept(name, answer)) return;
        try {
            if (name.startsWith('..')) throw new Error('outside of the folder');
            const bytes = await readFile(join(folder, name));
            const accepted = `${request.headers['accept-encoding']}`.split(/[,;\s]+/);
            const encoding = UNPACKED.includes(extname(name))
                ? undefined
                : Object.keys(PACKERS).find((packer) => accepted.includes(packer));
            answer.writeHead(200, {
                'Content-Type': TYPES[extname(name)] ?? 'application/octet-stream',
                'Cache-Control': 'no-cache',
                ...(encoding ? { 'Content-Encoding': encoding } : {}),
            });
            answer.end(encoding ? pack(encoding, name, bytes) : bytes);
        } catch {
            answer.writeHead(404, { 'Content-Type': 'text/plain' }).end('there is no such file\n');
        }
    });
    await new Promise((resolve, reject) => {
        server.once('error', reject);
        server.listen(port, '127.0.0.1', () => resolve(undefined));
    });
    const bound = /** @type {import('node:net').AddressInfo} */ (server.address()).port;
    return {
        address: `http://localhost:${bound}/`,
        close: () =>
            new Promise((resolve) => {
                server.closeAllConnections();
                server.close(() => resolve());
            }),
    };
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
    const [folder, port = '8080'] = process.argv.slice(2);
    if (folder === undefined) {
        console.error('usage: serve.mjs FOLDER [PORT]');
        process.exit(2);
    }
    try {
        const { address } = await serve(folder, Number(port));
        console.log(`Brevant is at ${address} until Ctrl+C`);
    } catch (error) {
        console.error(`serve: port ${port}: ${error instanceof Error ? error.message : error}`);
        process.exit(1);
    }
}
