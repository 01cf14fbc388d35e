// make-archive.mjs FOLDER FILE [NAME=OTHER...]: all files below FOLDER in one, but those named, each of which becomes a
// file of its own. The one begins with the length of its table (four bytes, the lowest first); the table is JSON, from
// each file's path to its place behind the table and its length. Pictures keep their names, but are lossless WebP: half
// as large, and every browser decodes it. The program's icon stays PNG: it is decoded by the program itself.
import { execFileSync } from 'node:child_process';
import { readFileSync, readdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

const MOST_BYTES = 16 * 1024 * 1024;
const [folder, target, ...others] = process.argv.slice(2);
/** @type {Map<string, string>} */
const alone = new Map(others.map((other) => /** @type {[string, string]} */ (other.split('='))));
const table = {};
const contents = [];
let place = 0;
for (const name of readdirSync(folder, { recursive: true, withFileTypes: true })
    .filter((entry) => entry.isFile())
    .map((entry) => join(entry.parentPath ?? entry.path, entry.name))
    .sort()) {
    const isPicture = name.endsWith('.png') && !name.endsWith('/app_icon.png');
    const content = isPicture
        ? execFileSync('cwebp', ['-quiet', '-lossless', '-z', '6', name, '-o', '-'], { maxBuffer: MOST_BYTES })
        : readFileSync(name);
    const path = name.slice(folder.length).replace(/^\/+/, '');
    const other = alone.get(path);
    if (other !== undefined) {
        writeFileSync(other, content);
        continue;
    }
    table[path] = [place, content.length];
    contents.push(content);
    place += content.length;
}
const head = Buffer.from(JSON.stringify(table));
const length = Buffer.alloc(4);
length.writeUInt32LE(head.length);
writeFileSync(target, Buffer.concat([length, head, ...contents]));
