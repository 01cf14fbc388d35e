// Writes into FOLDER/sw.js which files the folder has, with their sums, and the version that follows from them, which
// FOLDER/index.html gets as well.
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
    // The large icons are for the system's own lists, which take them from the network.
    .filter((name) => name !== 'sw.js' && !name.endsWith('-512.png'))
    .sort();
const index = join(folder, 'index.html');
/** @param {string} version */
const stampIndex = (version) =>
    writeFileSync(index, readFileSync(index, 'utf8').replace(/(?<=<meta name="version" content=")[^"]*/, version));
const sumAll = () => Object.fromEntries(names.map((name) => [name, sumOf(readFileSync(join(folder, name)))]));
stampIndex('');
const version = sumOf(JSON.stringify(sumAll()) + worker).slice(0, 16);
stampIndex(version);
const files = sumAll();
writeFileSync(
    join(folder, 'sw.js'),
    worker
        .replace("'@VERSION@'", `'${version}'`)
        .replace('const FILES = {};', `const FILES = ${JSON.stringify(files, null, 4)};`),
);
