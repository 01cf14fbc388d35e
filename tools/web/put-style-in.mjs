// Puts the style into the page, so that nothing more is waited for before it is painted.
// Usage: node tools/web/put-style-in.mjs PAGE STYLE RESULT

import { readFileSync, writeFileSync } from 'node:fs';
import { basename } from 'node:path';

const [page, style, result] = process.argv.slice(2);
if (result === undefined) {
    console.error('usage: put-style-in.mjs PAGE STYLE RESULT');
    process.exit(2);
}
const text = readFileSync(page, 'utf8');
const link = `<link rel="stylesheet" href="${basename(style)}" />`;
if (!text.includes(link)) throw new Error(`${page} has no ${link}`);
writeFileSync(
    result,
    text.replace(link, () => `<style>\n${readFileSync(style, 'utf8')}</style>`),
);
