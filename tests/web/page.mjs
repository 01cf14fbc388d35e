// What the browsers' tests share: the built page, a phone's screen, and what can be done on it.

import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { spawn } from 'node:child_process';
import { access, mkdtemp, rm, writeFile } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import puppeteer from 'puppeteer-core';
import { serve } from '../../tools/web/serve.mjs';

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

/** The keys of the holes, in the order of HOLES. */
export const KEYS = ['r', 'u', 'f', 'j'];

/** The tone of each fingering as semitones from A4; the index is the mask of the covered holes. */
export const FINGERINGS = [3, -8, 2, -6, 0, -4, -1, -5, 1, -12, -14, -10, -2, -7, -3, -9];

/** @typedef {import('puppeteer-core').Page & { said: string[] }} PhonePage */

/**
 * A page as a phone opens it; what it says on its console is kept.
 * @param {import('puppeteer-core').BrowserContext} context
 * @param {string} address
 * @param {() => void} [first] runs in the page before its own scripts
 * @returns {Promise<PhonePage>}
 */
export async function openOnPhone(context, address, first) {
    const page = await context.newPage();
    await page.setViewport(PHONE);
    if (first) await page.evaluateOnNewDocument(first);
    /** @type {string[]} */
    const said = [];
    page.on('console', (line) => said.push(line.text()));
    page.on('pageerror', (error) => said.push(String(error)));
    await page.goto(address);
    return Object.assign(page, { said });
}

/** Any test lasts at most so long; on a quiet machine a few seconds. */
export const LIMIT = { timeout: 120_000 };

/**
 * A server of the built page and a Chromium with a breath in its microphone, as long as the tests of the calling file run.
 */
export function useChromium() {
    const used = {
        folder: '',
        /** @type {Awaited<ReturnType<typeof serve>>} */
        server: /** @type {any} */ (null),
        /** @type {import('puppeteer-core').Browser} */
        browser: /** @type {any} */ (null),
        /**
         * @param {'accept' | 'deny'} answer to whatever the page asks the user for
         * @param {string} [profile] one that another Chromium has left; otherwise a new one
         */
        launch: async (answer, profile) =>
            puppeteer.launch({
                executablePath: '/usr/bin/chromium',
                userDataDir: profile ?? (await mkdtemp(join(used.folder, 'profile-'))),
                // A container has no user namespaces for Chromium's sandbox; the page is our own.
                args: [
                    '--no-sandbox',
                    '--lang=en',
                    '--use-fake-device-for-media-stream',
                    `--use-fake-ui-for-media-stream${answer === 'deny' ? '=deny' : ''}`,
                    `--use-file-for-fake-audio-capture=${join(used.folder, 'breath.wav')}`,
                ],
            }),
        /**
         * Runs on a page in a context of its own, which must say nothing on its console but what is expected.
         * @param {string} name
         * @param {(page: PhonePage, context: import('puppeteer-core').BrowserContext) => Promise<void>} body
         * @param {{ query?: string, says?: (string | RegExp)[], first?: () => void }} [how] `says` are the lines of the
         *     console in their order; `first` runs in the page before its own scripts
         */
        onPhone: (name, body, { query = '', says = [], first } = {}) =>
            test(name, LIMIT, async () => {
                const context = await used.browser.createBrowserContext();
                try {
                    const page = await openOnPhone(context, used.server.address + query, first);
                    await body(page, context);
                    hasSaid(page, says);
                } finally {
                    await context.close();
                }
            }),
    };
    before(async () => {
        used.folder = await mkdtemp(join(tmpdir(), 'brevant-web-'));
        await writeFile(join(used.folder, 'breath.wav'), breathFile());
        used.server = await serve(BUILT);
        used.browser = await used.launch('accept');
    });
    after(async () => {
        await used.browser?.close();
        await used.server?.close();
        await rm(used.folder, { recursive: true, force: true });
    });
    return used;
}

/** Neither more nor less than these lines. @param {PhonePage} page @param {(string | RegExp)[]} lines */
export function hasSaid(page, lines) {
    assert.equal(page.said.length, lines.length, page.said.join('\n'));
    lines.forEach((line, at) =>
        line instanceof RegExp ? assert.match(page.said[at], line) : assert.equal(page.said[at], line),
    );
}

/**
 * Some browsers run no audio context without a sound device: a server of our own has one that nobody hears, and a
 * microphone.
 * @param {string} folder of the test's own
 */
export async function startSound(folder) {
    const socket = join(folder, 'sound');
    const modules = [
        'module-null-sink sink_name=speaker',
        // What is played into this sink is heard by the microphone.
        'module-null-sink sink_name=breath norewinds=1',
        'module-remap-source master=breath.monitor source_name=microphone',
        `module-native-protocol-unix socket=${socket} auth-anonymous=1`,
    ];
    const env = { HOME: folder, XDG_RUNTIME_DIR: folder };
    const server = spawn(
        'pulseaudio',
        ['-n', '--daemonize=no', '--exit-idle-time=-1', ...modules.map((module) => `--load=${module}`)],
        { env: { ...process.env, ...env }, stdio: 'ignore' },
    );
    const isThere = () =>
        access(socket).then(
            () => true,
            () => false,
        );
    while (!(await isThere())) {
        assert.equal(server.exitCode, null, 'the sound server starts');
        await new Promise((resolve) => setTimeout(resolve, 20));
    }
    return { env: { ...env, PULSE_SERVER: `unix:${socket}` }, end: () => server.kill() };
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

/** With the mouse, where the mirror says that it is. @param {import('puppeteer-core').Page} page @param {string} name */
export async function click(page, name) {
    const { x, y } = await placeOf(page, name);
    await page.mouse.click(x, y);
}

/** With a finger on the canvas, where the mirror says that it is. @param {import('puppeteer-core').Page} page @param {string} name */
export async function tap(page, name) {
    const { x, y } = await placeOf(page, name);
    await page.touchscreen.tap(x, y);
}

/** @param {import('puppeteer-core').Page} page @param {string} name */
async function placeOf(page, name) {
    const place = await page.$$eval(
        '#mirror button',
        (all, wanted) => {
            const box = all.find((button) => button.textContent === wanted)?.getBoundingClientRect();
            return box && { x: box.x + box.width / 2, y: box.y + box.height / 2 };
        },
        name,
    );
    assert.ok(place, `nothing that is called ${name} can be pressed`);
    return place;
}

/** From the play screen to the settings. @param {import('puppeteer-core').Page} page @param {typeof tap} [press] */
export async function openSettings(page, press = tap) {
    await showsPlayScreen(page);
    await press(page, 'Menu');
    await showsButtons(page, ['Menu', 'Help', 'Settings']);
    await press(page, 'Settings');
    await page.waitForSelector('#mirror [role=switch]');
}

/** @param {import('puppeteer-core').Page} page @param {typeof tap} [press] */
export async function turnAutomaticPlayOn(page, press = tap) {
    await openSettings(page, press);
    await page.waitForSelector('#mirror [role=switch][aria-checked=false]');
    await press(page, 'Automatic play');
    await page.waitForSelector('#mirror [role=switch][aria-checked=true]');
    await press(page, 'Close');
    await showsPlayScreen(page);
}

/**
 * Holds these holes by one finger each.
 * @param {import('puppeteer-core').CDPSession} session
 * @param {number} mask
 */
export const cover = (session, mask) =>
    session.send('Input.dispatchTouchEvent', {
        type: 'touchStart',
        touchPoints: HOLES.map((place, id) => ({ ...place, id })).filter(({ id }) => (mask & (1 << id)) !== 0),
    });

/** @param {import('puppeteer-core').CDPSession} session */
export const uncover = (session) => session.send('Input.dispatchTouchEvent', { type: 'touchEnd', touchPoints: [] });

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
