// The built page in Chromium, beside plain pages that do the same thing and nothing else, in one run. `./dev web --bench` runs
// it and prints a line for each figure.

import { mkdtemp, readdir, readFile, rm, writeFile } from 'node:fs/promises';
import { brotliCompressSync, gzipSync } from 'node:zlib';
import { execFileSync } from 'node:child_process';
import { tmpdir } from 'node:os';
import { extname, join } from 'node:path';
import puppeteer from 'puppeteer-core';
import { serve } from '../tools/web/serve.mjs';
import * as phone from '../tests/web/page.mjs';

const TOUCHES = 50;
const LOADS = 15;
const IDLE_SECONDS = 20;
const SETTLING_SECONDS = 10;
const BYTES_OF_KB = 1000;
/** The recording that sounds with the top left hole covered. */
const RECORDING = 'res/data/ocarina_4_01.ogg';
const SPLASH = 'res/images/intro01.png';

// What listens: tells the context's time of the first frame that is not silent after a tenth of a second of silence.
const METER = `
registerProcessor('meter', class extends AudioWorkletProcessor {
    silent = 0;
    process([[channel]]) {
        if (channel === undefined) this.silent += 128; // Nothing is connected to what sounds.
        for (let at = 0; channel && at < channel.length; ++at) {
            if (Math.abs(channel[at]) < 1e-5) {
                ++this.silent;
                continue;
            }
            if (this.silent > sampleRate / 10) this.port.postMessage(currentTime + at / sampleRate);
            this.silent = 0;
        }
        return true;
    }
});`;

const PLAIN_SOUND = `<!doctype html><meta name="viewport" content="width=device-width"><body style="height: 100vh">
<script type="module">
const context = new AudioContext({ latencyHint: 'interactive' });
const bytes = await (await fetch('recording.ogg')).arrayBuffer();
const buffer = await context.decodeAudioData(bytes);
const out = new GainNode(context);
out.connect(context.destination);
let source = null;
addEventListener('touchstart', (event) => {
    event.preventDefault();
    source = new AudioBufferSourceNode(context, { buffer });
    source.connect(out);
    source.start();
}, { passive: false });
addEventListener('touchend', () => {
    context.resume();
    source?.stop();
});
globalThis.plain = { context, out };
</script>`;

const PLAIN_PICTURE = `<!doctype html><meta name="viewport" content="width=device-width">
<body style="margin: 0"><img src="splash.webp" style="width: 100vw; height: 100vh"
    onload="requestAnimationFrame(() => setTimeout(() => (globalThis.shown = performance.now())))">`;

const folder = await mkdtemp(join(tmpdir(), 'brevant-bench-'));
execFileSync('cwebp', ['-quiet', '-lossless', SPLASH, '-o', join(folder, 'splash.webp')]);
/** @type {Record<string, [string, string | Buffer]>} */
const extra = {
    'meter.mjs': ['text/javascript', METER],
    'sound.html': ['text/html', PLAIN_SOUND],
    'picture.html': ['text/html', PLAIN_PICTURE],
    'recording.ogg': ['audio/ogg', await readFile(RECORDING)],
    'splash.webp': ['image/webp', await readFile(join(folder, 'splash.webp'))],
};
const server = await serve(phone.BUILT, 0, (name, answer) => {
    const found = extra[name];
    if (found === undefined) return false;
    answer.writeHead(200, { 'Content-Type': found[0] }).end(found[1]);
    return true;
});
// A microphone in a quiet room. It is not wholly silent, of which the player would be told.
const silence = phone.breathFile().fill(0, 44);
for (let at = 44; at + 1 < silence.length; at += 2) silence.writeInt16LE(((at >> 1) % 7) - 3, at);
await writeFile(join(folder, 'silence.wav'), silence);
const browser = await puppeteer.launch({
    executablePath: '/usr/bin/chromium',
    userDataDir: join(folder, 'profile'),
    args: [
        '--no-sandbox',
        '--lang=en',
        '--use-fake-device-for-media-stream',
        '--use-fake-ui-for-media-stream',
        `--use-file-for-fake-audio-capture=${join(folder, 'silence.wav')}`,
    ],
});

/** @param {number[]} values */
const medianOf = (values) => [...values].sort((a, b) => a - b)[values.length >> 1];
/** @param {number} milliseconds */
const pause = (milliseconds) => new Promise((resolve) => setTimeout(resolve, milliseconds));
/** @param {string} what @param {string} figure */
const tell = (what, figure) => console.log(`${what.padEnd(58)} ${figure}`);

/**
 * From the time of the context when the page gets the touch to the first frame that is not silent, in ms. Each touch
 * comes at another place of the device's period.
 * @param {import('puppeteer-core').Page} page
 * @param {string} node the page's expression for what sounds
 */
async function touchesToSound(page, node) {
    const session = await page.createCDPSession();
    /** @param {'touchStart' | 'touchEnd'} type */
    const touch = (type) =>
        session.send('Input.dispatchTouchEvent', {
            type,
            touchPoints: type === 'touchStart' ? [{ ...phone.HOLES[0], id: 0 }] : [],
        });
    await touch('touchStart');
    await touch('touchEnd');
    await page.evaluate(
        async (expression, meterAddress) => {
            const out = globalThis.eval(expression);
            await out.context.audioWorklet.addModule(meterAddress);
            const meter = new AudioWorkletNode(out.context, 'meter', { numberOfOutputs: 0 });
            out.connect(meter);
            /** @type {any} */
            const state = { touched: 0, sounded: 0 };
            meter.port.onmessage = ({ data }) => (state.sounded = data);
            addEventListener('touchstart', () => (state.touched = out.context.currentTime), { capture: true });
            Object.assign(globalThis, { bench: state });
        },
        node,
        `${server.address}meter.mjs`,
    );
    const times = [];
    // The first ones find nothing warm.
    for (let count = -5; count < TOUCHES; ++count) {
        await pause(600 + ((count * 7) % 20));
        await page.evaluate(() => /** @type {any} */ (globalThis.bench.sounded = 0));
        await touch('touchStart');
        await page.waitForFunction(() => /** @type {any} */ (globalThis).bench.sounded > 0, { polling: 5 });
        const time = await page.evaluate(() => {
            const { sounded, touched } = /** @type {any} */ (globalThis).bench;
            return sounded - touched;
        });
        await touch('touchEnd');
        if (count >= 0) times.push(time * 1000);
    }
    return times;
}

/** @param {string} name @param {(page: phone.PhonePage) => Promise<void>} body */
async function onPage(name, body) {
    const context = await browser.createBrowserContext();
    try {
        await body(await phone.openOnPhone(context, server.address + name));
    } finally {
        await context.close();
    }
}

/**
 * When the splash's picture is on the page, and when the ocarina's own first picture has taken its place, in ms since the
 * page was asked for. A plain page has no second one.
 * @param {string} name of the page
 * @param {boolean} isSecond of two visits
 * @returns {Promise<{ picture: number, ocarina: number }>}
 */
async function timesToSplash(name, isSecond) {
    const context = await browser.createBrowserContext();
    try {
        const page = await context.newPage();
        await page.setViewport(phone.PHONE);
        await page.evaluateOnNewDocument(() => {
            const times = { picture: 0, ocarina: 0 };
            Object.assign(globalThis, { benchTimes: times });
            /** @param {'picture' | 'ocarina'} what is on the page with the browser's next picture */
            const note = (what) => requestAnimationFrame(() => setTimeout(() => (times[what] ||= performance.now())));
            document.addEventListener('load', ({ target }) => target instanceof HTMLImageElement && note('picture'), {
                capture: true,
            });
            // The page hands over its painter before the program runs.
            /** @type {any} */ let host;
            Object.defineProperty(globalThis, 'brevant', {
                get: () => host,
                set: (given) => {
                    host = given;
                    const { presented } = host.window;
                    host.window.presented = () => {
                        presented();
                        note('ocarina');
                    };
                },
            });
        });
        const isOurs = name === '';
        const shown = async () => {
            await page.waitForFunction(
                (ours) => /** @type {any} */ (globalThis).benchTimes[ours ? 'ocarina' : 'picture'] > 0,
                { polling: 50 },
                isOurs,
            );
            return page.evaluate(() => /** @type {any} */ (globalThis).benchTimes);
        };
        await page.goto(server.address + name);
        const first = await shown();
        if (!isSecond) return first;
        if (isOurs) await page.evaluate(() => navigator.serviceWorker.ready.then(() => {}));
        await page.reload();
        return await shown();
    } finally {
        await context.close();
    }
}

try {
    /** @type {number[]} */ let plain = [];
    /** @type {number[]} */ let ours = [];
    await onPage('sound.html', async (page) => {
        await page.waitForFunction(() => /** @type {any} */ (globalThis).plain);
        plain = await touchesToSound(page, 'plain.out');
    });
    await onPage('', async (page) => {
        await phone.showsPlayScreen(page);
        await phone.turnAutomaticPlayOn(page);
        ours = await touchesToSound(page, 'brevant.speaker.node');
    });
    for (const [what, of] of /** @type {[string, (values: number[]) => number][]} */ ([
        ['median', medianOf],
        ['worst', (values) => Math.max(...values)],
    ])) {
        tell(
            `touch to first sample, ${what} of ${TOUCHES}`,
            `${of(ours).toFixed(1)} ms; AudioBufferSourceNode ${of(plain).toFixed(1)} ms`,
        );
    }

    for (const [what, isSecond] of /** @type {[string, boolean][]} */ ([
        ['first visit', false],
        ['second visit', true],
    ])) {
        const ours = [];
        const plain = [];
        for (let count = 0; count < LOADS; ++count) {
            ours.push(await timesToSplash('', isSecond));
            plain.push(await timesToSplash('picture.html', isSecond));
        }
        const picture = medianOf(ours.map((times) => times.picture));
        const beside = medianOf(plain.map((times) => times.picture));
        tell(
            `splash, ${what}, median of ${LOADS}`,
            `${picture.toFixed(0)} ms; a plain page with the picture ${beside.toFixed(0)} ms; ${(picture / beside).toFixed(2)} times`,
        );
        tell('the ocarina itself in its place', `${medianOf(ours.map((times) => times.ocarina)).toFixed(0)} ms`);
    }

    await onPage('', async (page) => {
        await phone.showsPlayScreen(page);
        await page.touchscreen.tap(phone.HOLES[0].x, phone.HOLES[0].y);
        const times = await touchesToHoles(page);
        tell(
            'touch to the picture of its hole, with the tick of 30 ms',
            `${medianOf(times).toFixed(1)} ms; worst of ${TOUCHES} ${Math.max(...times).toFixed(1)} ms`,
        );
    });
    await onPage('', async (page) => {
        await phone.showsPlayScreen(page);
        // Lets the microphone in.
        await page.touchscreen.tap(phone.HOLES[0].x, phone.HOLES[0].y);
        // What is told after some seconds without a tone is told once.
        await pause(SETTLING_SECONDS * 1000);
        const before = await page.metrics();
        await pause(IDLE_SECONDS * 1000);
        const after = await page.metrics();
        /** @param {'TaskDuration' | 'ScriptDuration' | 'LayoutDuration' | 'RecalcStyleDuration'} name */
        const share = (name) => ((100 * ((after[name] ?? 0) - (before[name] ?? 0))) / IDLE_SECONDS).toFixed(2);
        tell('idle play screen, microphone open: its scripts', `${share('ScriptDuration')} % of a core`);
        tell("the same: all tasks of the page, the browser's own in it", `${share('TaskDuration')} %`);
    });

    let [plainBytes, gzipBytes, brotliBytes] = [0, 0, 0];
    for (const name of await readdir(phone.BUILT)) {
        // For the system's own lists, when the page is installed.
        if (name.endsWith('-512.png')) continue;
        const bytes = await readFile(join(phone.BUILT, name));
        const isPacked = extname(name) === '.png';
        const gzip = isPacked ? bytes.length : gzipSync(bytes, { level: 9 }).length;
        const brotli = isPacked ? bytes.length : brotliCompressSync(bytes).length;
        plainBytes += bytes.length;
        gzipBytes += gzip;
        brotliBytes += brotli;
        if (extname(name) === '.wasm') tell(name, sizes(bytes.length, gzip, brotli));
    }
    tell('everything that a first visit loads', sizes(plainBytes, gzipBytes, brotliBytes));
} finally {
    await browser.close();
    await server.close();
    await rm(folder, { recursive: true, force: true });
}

/** @param {number} plain @param {number} gzip @param {number} brotli */
function sizes(plain, gzip, brotli) {
    const [all, zipped, packed] = [plain, gzip, brotli].map((bytes) => (bytes / BYTES_OF_KB).toFixed(0));
    return `${all} kB; gzip ${zipped} kB; Brotli ${packed} kB`;
}

/**
 * From each touch of a hole to the picture with it covered, in ms. The ocarina draws what changed at its next tick, which
 * comes every 30 ms.
 * @param {phone.PhonePage} page
 */
async function touchesToHoles(page) {
    await page.evaluate(() => {
        const { window: shown } = /** @type {any} */ (globalThis).brevant;
        const state = { touched: 0, shown: 0 };
        const { presented } = shown;
        shown.presented = () => {
            presented();
            state.shown ||= performance.now();
        };
        addEventListener('touchstart', () => Object.assign(state, { touched: performance.now(), shown: 0 }), {
            capture: true,
        });
        Object.assign(globalThis, { bench: state });
    });
    const times = [];
    const session = await page.createCDPSession();
    for (let count = 0; count < TOUCHES; ++count) {
        await pause(100 + ((count * 7) % 30));
        const at = { ...phone.HOLES[count % 4], id: 0 };
        await session.send('Input.dispatchTouchEvent', { type: 'touchStart', touchPoints: [at] });
        await page.waitForFunction(() => /** @type {any} */ (globalThis).bench.shown > 0, { polling: 5 });
        const { touched, shown } = await page.evaluate(() => /** @type {any} */ (globalThis).bench);
        await session.send('Input.dispatchTouchEvent', { type: 'touchEnd', touchPoints: [] });
        times.push(shown - touched);
    }
    return times;
}
