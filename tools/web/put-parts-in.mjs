// Puts the style and the first script into the page, so that nothing more is waited for before it is painted, and the
// script is there whatever the network does.
// Usage: node tools/web/put-parts-in.mjs PAGE STYLE SCRIPT RESULT

import { readFileSync, writeFileSync } from 'node:fs';
import { basename } from 'node:path';

const [page, style, script, result] = process.argv.slice(2);
if (result === undefined) {
    console.error('usage: put-parts-in.mjs PAGE STYLE SCRIPT RESULT');
    process.exit(2);
}
let text = readFileSync(page, 'utf8');
for (const [part, reference, name] of [
    [style, `<link rel="stylesheet" href="${basename(style)}" />`, 'style'],
    [script, `<script src="${basename(script)}"></script>`, 'script'],
]) {
    if (!text.includes(reference)) throw new Error(`${page} has no ${reference}`);
    text = text.replace(reference, () => `<${name}>\n${readFileSync(part, 'utf8')}</${name}>`);
}
writeFileSync(result, text);
