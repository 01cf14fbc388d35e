// Each screen of the page beside the desktop's golden: texts may differ by the font, shapes may not.

import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { mkdir, mkdtemp, readFile, rm, writeFile } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import puppeteer from 'puppeteer-core';
import { serve } from '../../tools/web/serve.mjs';
import * as phone from './page.mjs';

// The pictures are looked at in cells of this many pixels. A cell differs when its mean colour is this far off, of 255: an
// edge that is smoothed differently does not do that, nor does a letter of another font in most of its cells.
const CELL = 16;
const FAR = 24;
// Of all cells, by what was measured: texts alone make the difference.
const MOST_DIFFERENT = { play: 0.0005, menu: 0.0005, setup: 0.001, colour: 0.001, help: 0.01 };
const MOST_LOOKS = 30;
const SHOTS = new URL('../../build/web-pictures/', import.meta.url).pathname;

/** @type {string} */ let profile;
/** @type {Awaited<ReturnType<typeof serve>>} */ let server;
/** @type {import('puppeteer-core').Browser} */ let browser;

before(async () => {
    profile = await mkdtemp(join(tmpdir(), 'brevant-pictures-'));
    await mkdir(SHOTS, { recursive: true });
    server = await serve(phone.BUILT);
    browser = await puppeteer.launch({
        executablePath: '/usr/bin/chromium',
        userDataDir: profile,
        // A container has no user namespaces for Chromium's sandbox; the page is our own.
        args: ['--no-sandbox', '--lang=en', '--force-color-profile=srgb'],
    });
});
after(async () => {
    await browser?.close();
    await server?.close();
    await rm(profile, { recursive: true, force: true });
});

/**
 * Waits until the screen looks so: pictures of the menu's button follow each other for a while.
 * @param {import('puppeteer-core').Page} page
 * @param {keyof typeof MOST_DIFFERENT} name
 */
async function looksLikeGolden(page, name) {
    let share = 1;
    for (let looks = 0; looks < MOST_LOOKS && share > MOST_DIFFERENT[name]; ++looks)
        share = await difference(page, name);
    assert.ok(
        share <= MOST_DIFFERENT[name],
        `${name}: ${(100 * share).toFixed(2)} % of the cells differ; see ${SHOTS}${name}.png`,
    );
}

/**
 * @param {import('puppeteer-core').Page} page
 * @param {string} name
 * @returns {Promise<number>} the share of cells that differ
 */
async function difference(page, name) {
    const shot = await page.screenshot({ encoding: 'base64' });
    await writeFile(join(SHOTS, `${name}.png`), Buffer.from(shot, 'base64'));
    const golden = (await readFile(join(phone.GOLDENS, `${name}.png`))).toString('base64');
    return page.evaluate(
        async (pictures, cell, far) => {
            const cells = await Promise.all(
                pictures.map(async (picture) => {
                    const bytes = Uint8Array.from(atob(picture), (character) => character.charCodeAt(0));
                    const bitmap = await createImageBitmap(new Blob([bytes], { type: 'image/png' }));
                    const { width, height } = bitmap;
                    const context = new OffscreenCanvas(width, height).getContext('2d');
                    if (context === null) throw new Error('no canvas');
                    context.drawImage(bitmap, 0, 0);
                    const { data } = context.getImageData(0, 0, width, height);
                    const means = new Float32Array((width / cell) * (height / cell) * 3);
                    for (let at = 0; at < width * height; ++at) {
                        const column = Math.floor((at % width) / cell);
                        const row = Math.floor(at / width / cell);
                        for (let channel = 0; channel < 3; ++channel) {
                            means[(row * (width / cell) + column) * 3 + channel] +=
                                data[at * 4 + channel] / (cell * cell);
                        }
                    }
                    return { width, height, means };
                }),
            );
            const [left, right] = cells;
            if (left.width !== right.width || left.height !== right.height) return 1;
            let different = 0;
            for (let at = 0; at < left.means.length; at += 3) {
                const distance = Math.max(
                    ...[0, 1, 2].map((channel) => Math.abs(left.means[at + channel] - right.means[at + channel])),
                );
                if (distance > far) ++different;
            }
            return different / (left.means.length / 3);
        },
        [shot, golden],
        CELL,
        FAR,
    );
}

test('each screen has the shapes of the desktop', { timeout: 120_000 }, async (t) => {
    const page = await phone.openOnPhone(browser.defaultBrowserContext(), `${server.address}?screen=720x1280`);
    await phone.showsPlayScreen(page);
    /** @param {keyof typeof MOST_DIFFERENT} name */
    const look = (name) => t.test(name, () => looksLikeGolden(page, name));
    await phone.tap(page, 'Menu');
    await phone.showsButtons(page, ['Menu', 'Help', 'Settings']);
    await look('menu');
    await phone.tap(page, 'Menu');
    await phone.showsPlayScreen(page);
    await look('play');
    await phone.tap(page, 'Menu');
    await phone.showsButtons(page, ['Menu', 'Help', 'Settings']);
    await phone.tap(page, 'Help');
    await page.waitForSelector('#mirror[role=dialog][aria-label=Help]');
    await look('help');
    await phone.tap(page, 'Close');
    await phone.showsPlayScreen(page);
    await phone.tap(page, 'Menu');
    await phone.showsButtons(page, ['Menu', 'Help', 'Settings']);
    await phone.tap(page, 'Settings');
    await page.waitForSelector('#mirror [role=switch]');
    await look('setup');
    await phone.tap(page, 'Hole colour');
    await page.waitForSelector('#mirror input[aria-label=Red]');
    await look('colour');
});
