// Puts the style and the first scripts into the page: it is painted without waiting for them, and they are there whatever
// the network does.
// Usage: node tools/web/put-parts-in.mjs RESULT PAGE PART...

import { readFileSync, writeFileSync } from 'node:fs';
import { basename, extname } from 'node:path';

const [result, page, ...parts] = process.argv.slice(2);
if (page === undefined) {
    console.error('usage: put-parts-in.mjs RESULT PAGE PART...');
    process.exit(2);
}
let text = readFileSync(page, 'utf8');
for (const part of parts) {
    const [name, reference] =
        extname(part) === '.css'
            ? ['style', `<link rel="stylesheet" href="${basename(part)}" />`]
            : ['script', `<script src="${basename(part)}"></script>`];
    if (!text.includes(reference)) throw new Error(`${page} has no ${reference}`);
    text = text.replace(reference, () => `<${name}>\n${readFileSync(part, 'utf8')}</${name}>`);
}
writeFileSync(result, text);
