// Writes into FOLDER/sw.js which files the folder has, with their sums, and the version that follows from them.
// Usage: node tools/web/stamp.mjs FOLDER

import { createHash } from 'node:crypto';
import { readdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

const [folder] = process.argv.slice(2);
if (folder === undefined) {
    console.error('usage: stamp.mjs FOLDER');
    process.exit(2);
}
/** @param {string | Buffer} bytes */
const sumOf = (bytes) => createHash('sha256').update(bytes).digest('hex');

const worker = readFileSync(join('host/backend/web/page', 'sw.js'), 'utf8');
const names = readdirSync(folder)
    .filter((name) => name !== 'sw.js')
    .sort();
const files = Object.fromEntries(names.map((name) => [name, sumOf(readFileSync(join(folder, name)))]));
const version = sumOf(JSON.stringify(files) + worker).slice(0, 16);
writeFileSync(
    join(folder, 'sw.js'),
    worker
        .replace("'@VERSION@'", `'${version}'`)
        .replace('const FILES = {};', `const FILES = ${JSON.stringify(files, null, 4)};`),
);
