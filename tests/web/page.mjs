// What the browsers' tests share: the built page, a phone's screen, and what can be done on it.

import assert from 'node:assert/strict';

export const BUILT = new URL('../../build/web', import.meta.url).pathname;
export const GOLDENS = new URL('../goldens/720x1280', import.meta.url).pathname;
/** The phone of the goldens: 720 x 1280 of its own pixels. */
export const PHONE = { width: 360, height: 640, deviceScaleFactor: 2, isMobile: true, hasTouch: true };

/** The middles of the holes' quarters in CSS pixels: top left, top right, bottom left, bottom right. */
export const HOLES = [
    { x: 90, y: 214 },
    { x: 270, y: 214 },
    { x: 90, y: 498 },
    { x: 270, y: 498 },
];

/** The tone of each fingering as semitones from A4; the index is the mask of the covered holes. */
export const FINGERINGS = [3, -8, 2, -6, 0, -4, -1, -5, 1, -12, -14, -10, -2, -7, -3, -9];

/** @typedef {import('puppeteer-core').Page & { said: string[] }} PhonePage */

/**
 * A page as a phone opens it; what it says on its console is kept.
 * @param {import('puppeteer-core').BrowserContext} context
 * @param {string} address
 * @returns {Promise<PhonePage>}
 */
export async function openOnPhone(context, address) {
    const page = await context.newPage();
    await page.setViewport(PHONE);
    /** @type {string[]} */
    const said = [];
    page.on('console', (line) => said.push(line.text()));
    page.on('pageerror', (error) => said.push(String(error)));
    await page.goto(address);
    return Object.assign(page, { said });
}

/** The names of what can be pressed now. @param {import('puppeteer-core').Page} page */
export const buttons = (page) => page.$$eval('#mirror button', (all) => all.map((button) => button.textContent ?? ''));

/**
 * Waits until exactly these can be pressed.
 * @param {import('puppeteer-core').Page} page
 * @param {string[]} names
 */
export const showsButtons = (page, names) =>
    page.waitForFunction(
        (wanted) => [...document.querySelectorAll('#mirror button')].map((b) => b.textContent).join() === wanted,
        { polling: 'mutation' },
        names.join(),
    );

/** @param {import('puppeteer-core').Page} page */
export const showsPlayScreen = (page) => showsButtons(page, ['Menu']);

/** With a finger on the canvas, where the mirror says that it is. @param {import('puppeteer-core').Page} page @param {string} name */
export async function tap(page, name) {
    const place = await page.$$eval(
        '#mirror button',
        (all, wanted) => {
            const box = all.find((button) => button.textContent === wanted)?.getBoundingClientRect();
            return box && { x: box.x + box.width / 2, y: box.y + box.height / 2 };
        },
        name,
    );
    assert.ok(place, `nothing that is called ${name} can be pressed`);
    await page.touchscreen.tap(place.x, place.y);
}

/** The message in the ocarina's place. @param {import('puppeteer-core').Page} page */
export const showsMessage = (page) =>
    page.waitForSelector('#message:not([hidden])').then(() => page.$eval('#message-text', (text) => text.textContent));

/**
 * Listens to what the mix's worklet gives out, in the page: brevantTest.pitch() is semitones from A4, or null for silence.
 * @param {import('puppeteer-core').Page} page
 */
export async function listen(page) {
    await page.waitForFunction(() => /** @type {any} */ (globalThis).brevant?.speaker.node);
    await page.evaluate(() => {
        const { node } = /** @type {any} */ (globalThis).brevant.speaker;
        const analyser = new AnalyserNode(node.context, { fftSize: 8192 });
        node.connect(analyser);
        const wave = new Float32Array(analyser.fftSize);
        const pitch = () => {
            analyser.getFloatTimeDomainData(wave);
            const window = wave.subarray(4096);
            const power = window.reduce((sum, value) => sum + value * value, 0) / window.length;
            if (power < 1e-7) return null;
            // The lag at which the wave is most like itself, the first that is nearly as good as the best.
            const { sampleRate } = node.context;
            /** @type {number[]} */
            const likeness = [];
            const longest = Math.round(sampleRate / 150);
            for (let lag = 0; lag <= longest + 1; ++lag) {
                let sum = 0;
                for (let at = 0; at < 2048; ++at) sum += window[at] * window[at + lag];
                likeness.push(sum);
            }
            const shortest = Math.round(sampleRate / 800);
            const best = Math.max(...likeness.slice(shortest));
            let lag = shortest;
            while (likeness[lag] < 0.9 * best || likeness[lag] < likeness[lag + 1]) ++lag;
            const [before, at, after] = [likeness[lag - 1], likeness[lag], likeness[lag + 1]];
            const exact = lag + (before - after) / (2 * (before - 2 * at + after));
            return 12 * Math.log2(sampleRate / exact / 440);
        };
        Object.assign(globalThis, { brevantTest: { pitch } });
    });
}

/** Waits until this tone sounds. @param {import('puppeteer-core').Page} page @param {number} semitones from A4 */
export const sounds = (page, semitones) =>
    page.waitForFunction(
        (wanted) => {
            const pitch = /** @type {any} */ (globalThis).brevantTest.pitch();
            return pitch !== null && Math.abs(pitch - wanted) < 0.3;
        },
        { polling: 20 },
        semitones,
    );

/** @param {import('puppeteer-core').Page} page */
export const isSilent = (page) =>
    page.waitForFunction(() => /** @type {any} */ (globalThis).brevantTest.pitch() === null, { polling: 20 });

/** The lines of the page's own trace so far; the page was opened with ?trace. @param {import('puppeteer-core').Page} page */
export const readTrace = (page) =>
    page.evaluate(() => {
        const bytes = /** @type {any} */ (globalThis).brevant.storage.outputs.get('trace.jsonl') ?? new Uint8Array();
        return new TextDecoder()
            .decode(bytes)
            .split('\n')
            .filter((line) => line !== '')
            .map((line) => JSON.parse(line));
    });

/**
 * Noise as a breath into a microphone is, so loud that every block is above the ocarina's threshold.
 * @returns {Buffer} a WAV file of one second, 16 bits, mono, 48000 Hz
 */
export function breathFile() {
    const rate = 48000;
    const file = Buffer.alloc(44 + 2 * rate);
    file.write('RIFF', 0);
    file.writeUInt32LE(36 + 2 * rate, 4);
    file.write('WAVEfmt ', 8);
    file.writeUInt32LE(16, 16);
    file.writeUInt16LE(1, 20);
    file.writeUInt16LE(1, 22);
    file.writeUInt32LE(rate, 24);
    file.writeUInt32LE(2 * rate, 28);
    file.writeUInt16LE(2, 32);
    file.writeUInt16LE(16, 34);
    file.write('data', 36);
    file.writeUInt32LE(2 * rate, 40);
    let random = 1;
    let smooth = 0;
    for (let frame = 0; frame < rate; ++frame) {
        random = (Math.imul(random, 1664525) + 1013904223) >>> 0; // Numerical Recipes' quick generator, 2nd ed., 7.1
        smooth += (random / 4294967296 - 0.5 - smooth) * 0.1;
        file.writeInt16LE(Math.max(-30000, Math.min(30000, Math.round(smooth * 160000))), 44 + 2 * frame);
    }
    return file;
}
