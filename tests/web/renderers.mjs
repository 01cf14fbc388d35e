// Where renderings are made: in node, and in a page of Chromium. Both run tests/web/rendering.mjs.

import { readFileSync } from 'node:fs';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { join } from 'node:path';
import puppeteer from 'puppeteer-core';
import { serve } from '../../tools/web/serve.mjs';
import { render } from './rendering.mjs';

const RENDERING = fileURLToPath(new URL('rendering.mjs', import.meta.url));
const PAGE = '<!doctype html><title>renderings</title>';

/**
 * @typedef {{ render: typeof renderInNode, close: () => Promise<void> }} Renderer
 * @callback renderInNode
 * @param {string[]} options of the program
 * @param {Map<string, Uint8Array>} files by the names that the options give them
 * @returns {Promise<{ status?: number, refusal?: string, outputs: Map<string, Uint8Array> }>}
 */

/** @param {string} folder build/web @returns {Promise<Renderer>} */
export async function openNode(folder) {
    const load = (name) => import(pathToFileURL(join(folder, name)).href);
    const archive = readFileSync(join(folder, 'package.bin'));
    const built = {
        createBrevant: (await load('brevant.mjs')).default,
        createStorage: (await load('storage.mjs')).createStorage,
        archive: archive.buffer.slice(archive.byteOffset, archive.byteOffset + archive.length),
        splash: readFileSync(join(folder, 'splash.webp')),
        wasm: readFileSync(join(folder, 'brevant.wasm')),
    };
    return { render: (options, files) => render(built, options, files), close: async () => {} };
}

/** @param {string} folder build/web @returns {Promise<Renderer>} */
export async function openPage(folder) {
    const extra = {
        'renderings.html': ['text/html', PAGE],
        'rendering.mjs': ['text/javascript', readFileSync(RENDERING)],
    };
    const server = await serve(folder, 0, (name, answer) => {
        const found = extra[name];
        if (found === undefined) return false;
        answer.writeHead(200, { 'Content-Type': found[0] }).end(found[1]);
        return true;
    });
    const browser = await puppeteer.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox'] });
    const page = await browser.newPage();
    await page.goto(`${server.address}renderings.html`);
    await page.evaluate(async () => {
        const fetchBytes = async (name) => (await fetch(name)).arrayBuffer();
        const built = {
            createBrevant: (await import('./brevant.mjs')).default,
            createStorage: (await import('./storage.mjs')).createStorage,
            archive: await fetchBytes('package.bin'),
            splash: new Uint8Array(await fetchBytes('splash.webp')),
            wasm: new Uint8Array(await fetchBytes('brevant.wasm')),
        };
        const { render } = await import('./rendering.mjs');
        const toText = (bytes) =>
            new Promise((resolve) => {
                const reader = new FileReader();
                reader.onload = () => resolve(reader.result.replace(/^.*,/, ''));
                reader.readAsDataURL(new Blob([bytes]));
            });
        const toBytes = (text) => Uint8Array.from(atob(text), (letter) => letter.charCodeAt(0));
        globalThis.renderHere = async (options, files) => {
            const given = new Map(files.map(([name, text]) => [name, toBytes(text)]));
            const { status, refusal, outputs } = await render(built, options, given);
            const texts = [];
            for (const [name, bytes] of outputs) texts.push([name, await toText(bytes)]);
            return { status, refusal, texts };
        };
    });
    return {
        render: async (options, files) => {
            const given = [...files].map(([name, bytes]) => [name, Buffer.from(bytes).toString('base64')]);
            const { status, refusal, texts } = await page.evaluate(
                (...run) => globalThis.renderHere(...run),
                options,
                given,
            );
            return {
                status,
                refusal,
                outputs: new Map(texts.map(([name, text]) => [name, Buffer.from(text, 'base64')])),
            };
        },
        close: async () => {
            await browser.close();
            await server.close();
        },
    };
}
