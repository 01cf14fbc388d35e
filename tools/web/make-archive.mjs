// make-archive.mjs FOLDER FILE: all files below FOLDER in one. It begins with the length of its table (four bytes, the
// lowest first); the table is JSON, from each file's path to its place behind the table and its length.
import { readFileSync, readdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

const [folder, target] = process.argv.slice(2);
const table = {};
const contents = [];
let place = 0;
for (const name of readdirSync(folder, { recursive: true, withFileTypes: true })
    .filter((entry) => entry.isFile())
    .map((entry) => join(entry.parentPath ?? entry.path, entry.name))
    .sort()) {
    const content = readFileSync(name);
    table[name.slice(folder.length).replace(/^\/+/, '')] = [place, content.length];
    contents.push(content);
    place += content.length;
}
const head = Buffer.from(JSON.stringify(table));
const length = Buffer.alloc(4);
length.writeUInt32LE(head.length);
writeFileSync(target, Buffer.concat([length, head, ...contents]));
