// The built page in Chromium, as on a phone: what a player does. What goes wrong is in faults.test.mjs.

import assert from 'node:assert/strict';
import { readFile, writeFile } from 'node:fs/promises';
import { join } from 'node:path';
import * as phone from './page.mjs';

const chromium = phone.useChromium();
const { onPhone } = chromium;

const WAV_HEADER_BYTES = 44;
// The space bar blows into the ocarina with all holes open, for half a second, once the splash has gone.
const BLOWN = '4000 key Space press\n4500 key Space release\n6000 quit\n';

/** @param {phone.PhonePage} page */
async function axeFindsNothing(page) {
    await page.evaluate(await readFile(new URL('../../node_modules/axe-core/axe.min.js', import.meta.url), 'utf8'));
    const { violations, passes } = await page.evaluate(() => /** @type {any} */ (globalThis).axe.run());
    assert.deepEqual(
        violations.map((/** @type {any} */ each) => `${each.id}: ${each.nodes[0].html}`),
        [],
    );
    assert.notEqual(passes.length, 0, 'something was looked at');
}

onPhone('the first touch also acts, and the line over the ocarina goes', async (page) => {
    await phone.showsPlayScreen(page);
    assert.equal(await page.$eval('#hint', (hint) => hint.textContent), 'Touch to play');
    await phone.tap(page, 'Menu');
    await phone.showsButtons(page, ['Menu', 'Help', 'Settings']);
    assert.equal(await page.$('#hint:not([hidden])'), null);
});

onPhone('the sixteen fingerings sound in tune while a breath blows', async (page) => {
    await phone.showsPlayScreen(page);
    await phone.listen(page);
    const session = await page.createCDPSession();
    // The first touch that is lifted lets sound and the microphone in.
    await page.touchscreen.tap(phone.HOLES[0].x, phone.HOLES[0].y);
    await phone.sounds(page, phone.FINGERINGS[0]);
    for (let mask = 1; mask < phone.FINGERINGS.length; ++mask) {
        await phone.cover(session, mask);
        await phone.sounds(page, phone.FINGERINGS[mask]);
        await phone.uncover(session);
        await phone.sounds(page, phone.FINGERINGS[0]);
    }
});

onPhone('ten fingers hold their holes; those that the system takes away let go', async (page) => {
    await phone.showsPlayScreen(page);
    await phone.turnAutomaticPlayOn(page);
    await phone.listen(page);
    const session = await page.createCDPSession();
    const ten = [...phone.HOLES, ...phone.HOLES, phone.HOLES[0], phone.HOLES[1]].map(({ x, y }, id) => ({
        x: x + 8 * Math.floor(id / 4),
        y,
        id,
    }));
    await session.send('Input.dispatchTouchEvent', { type: 'touchStart', touchPoints: ten });
    await phone.sounds(page, phone.FINGERINGS[15]);
    // Six are lifted; the four others still cover everything.
    await session.send('Input.dispatchTouchEvent', { type: 'touchEnd', touchPoints: ten.slice(0, 4) });
    await phone.sounds(page, phone.FINGERINGS[15]);
    await session.send('Input.dispatchTouchEvent', { type: 'touchCancel', touchPoints: [] });
    await phone.isSilent(page);
});

onPhone('settings last; help, colours and Back lead where they lead on a phone', async (page) => {
    await phone.showsPlayScreen(page);
    await phone.turnAutomaticPlayOn(page);
    await page.reload();
    await phone.showsPlayScreen(page);
    await phone.tap(page, 'Menu');
    await phone.showsButtons(page, ['Menu', 'Help', 'Settings']);
    await phone.tap(page, 'Settings');
    await page.waitForSelector('#mirror [role=switch][aria-checked=true]');
    await phone.tap(page, 'Hole colour');
    await page.waitForSelector('#mirror[role=dialog] input[aria-label=Red]');
    await page.evaluate(() => history.back());
    await page.waitForSelector('#mirror:not([role=dialog]) [role=switch]');
    await page.evaluate(() => history.back());
    await phone.showsPlayScreen(page);
    await page.evaluate(() => history.back());
    assert.equal(await phone.showsMessage(page), 'Brevant has ended.');
    await Promise.all([page.waitForNavigation(), page.click('#message-button')]);
    await phone.showsPlayScreen(page);
});

onPhone('the mirror alone leads through the screens by keyboard, and axe finds nothing', async (page) => {
    await phone.showsPlayScreen(page);
    await axeFindsNothing(page);
    await page.focus('#mirror button');
    await page.keyboard.press('Enter');
    await phone.showsButtons(page, ['Menu', 'Help', 'Settings']);
    await axeFindsNothing(page);
    await page.keyboard.press('Tab');
    await page.keyboard.press('Enter');
    await page.waitForSelector('#mirror[role=dialog][aria-label=Help]');
    await axeFindsNothing(page);
    await page.keyboard.press('Escape');
    await phone.showsPlayScreen(page);
    await page.focus('#mirror button');
    await page.keyboard.press('Enter');
    await phone.showsButtons(page, ['Menu', 'Help', 'Settings']);
    await page.keyboard.press('Tab');
    await page.keyboard.press('Tab');
    await page.keyboard.press('Enter');
    await page.waitForSelector('#mirror [role=switch]');
    await axeFindsNothing(page);
    await page.focus('#mirror [role=switch]');
    await page.keyboard.press('Space');
    await page.waitForSelector('#mirror [role=switch][aria-checked=true]');
    await page.$$eval('#mirror button', (all) => all.find((button) => button.textContent === 'Hole colour')?.click());
    await page.waitForSelector('#mirror input[aria-label=Red]');
    await axeFindsNothing(page);
    const red = () => page.$eval('#mirror input[aria-label=Red]', (input) => Number(input.value));
    const before = await red();
    await page.focus('#mirror input[aria-label=Red]');
    await page.keyboard.press('ArrowLeft');
    assert.equal(await red(), before - 1);
});

onPhone(
    'axe finds nothing on the splash, which stays for as long as the clock stands still',
    async (page) => {
        await page.waitForFunction(() => {
            const canvas = document.querySelector('canvas');
            const pixel = new OffscreenCanvas(1, 1).getContext('2d', { willReadFrequently: true });
            if (canvas === null || pixel === null) throw new Error('no canvas');
            pixel.drawImage(canvas, 0, 0, 1, 1);
            return pixel.getImageData(0, 0, 1, 1).data.some((value) => value !== 0);
        });
        assert.deepEqual(await phone.buttons(page), []);
        await axeFindsNothing(page);
    },
    {
        first: () => {
            const mostMilliseconds = 1000;
            const now = performance.now.bind(performance);
            performance.now = () => Math.min(now(), mostMilliseconds);
        },
    },
);

onPhone(
    'a dropped performance plays and leaves its trace and recording; one that is no text is told',
    async (page) => {
        const session = await page.createCDPSession();
        /** @param {string} name @param {string | Buffer} content */
        const drop = async (name, content) => {
            const path = join(chromium.folder, name);
            await writeFile(path, content);
            await page.waitForFunction(() => 'brevant' in globalThis);
            const isLoaded = page.waitForNavigation();
            const data = { items: [], files: [path], dragOperationsMask: 1 };
            for (const type of /** @type {const} */ (['dragEnter', 'dragOver', 'drop'])) {
                await session.send('Input.dispatchDragEvent', { type, x: 180, y: 320, data });
            }
            await isLoaded;
            return phone.showsMessage(page);
        };
        /** @param {string} name */
        const download = async (name) =>
            Buffer.from(
                await page.$eval(`#downloads a[download="${name}"]`, async (link) => {
                    const answer = await fetch(/** @type {HTMLAnchorElement} */ (link).href);
                    return [...new Uint8Array(await answer.arrayBuffer())];
                }),
            );
        const readsOutputs = async () => {
            const trace = `${await download('trace.jsonl')}`;
            assert.match(trace, /"event":"open","file":"ocarina_5_00.ogg","ok":true/);
            const recording = await download('recording.wav');
            assert.ok(
                recording.subarray(WAV_HEADER_BYTES).some((byte) => byte !== 0),
                'something sounds',
            );
        };
        assert.equal(await drop('blown.performance', BLOWN), 'Brevant has ended.');
        await axeFindsNothing(page);
        await readsOutputs();
        await Promise.all([page.waitForNavigation(), page.click('#message-button')]);
        assert.equal(await phone.showsMessage(page), 'Brevant has ended.');
        // It plays again.
        await readsOutputs();
        const refusal = await drop('bytes.performance', Buffer.from('0 quit # \xff\n', 'latin1'));
        assert.match(`${refusal}`, /bytes\.performance:1: the line is not UTF-8 text/);
    },
    { query: '?backend=headless&screen=720x1280' },
);

onPhone('without a network everything is there after the first visit', async (page) => {
    await phone.showsPlayScreen(page);
    await page.evaluate(async () => (await navigator.serviceWorker.ready).scope);
    await page.setOfflineMode(true);
    // An address without options is answered past the worker where the browser can do so.
    await page.goto(chromium.server.address);
    await phone.showsPlayScreen(page);
    await page.goto(`${chromium.server.address}?language=de`);
    await page.waitForFunction(() => document.querySelector('#mirror button')?.textContent === 'Menü');
    await phone.listen(page);
    await page.keyboard.down('KeyR');
    await page.keyboard.down('Space');
    await phone.sounds(page, phone.FINGERINGS[1]);
});

onPhone(
    'what a live page plays is recorded',
    async (page) => {
        await phone.turnAutomaticPlayOn(page);
        await phone.listen(page);
        await phone.cover(await page.createCDPSession(), 1);
        await phone.sounds(page, phone.FINGERINGS[1]);
        // The file is written five times a second.
        await page.waitForFunction(
            (header) => {
                const bytes = /** @type {any} */ (globalThis).brevant.storage.outputs.get('recording.wav');
                return bytes?.subarray(header).some((/** @type {number} */ byte) => byte !== 0);
            },
            {},
            WAV_HEADER_BYTES,
        );
    },
    { query: '?record' },
);
