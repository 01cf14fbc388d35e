// The built page in WebKit, the nearest thing to an iPhone: what its driver can do of what a player does.

import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { spawn } from 'node:child_process';
import { mkdtemp, rm } from 'node:fs/promises';
import { createServer } from 'node:net';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { serve } from '../../tools/web/serve.mjs';
import * as phone from './page.mjs';

const MINI_BROWSER = `/usr/lib/${process.arch === 'arm64' ? 'aarch64' : 'x86_64'}-linux-gnu/webkit2gtk-4.1/MiniBrowser`;
const LOOK_AGAIN_MS = 50;
const LONGEST_WAIT_MS = 60_000;

/**
 * Looks until there is something.
 * @template T
 * @param {() => Promise<T>} look
 * @param {string} what
 */
async function waitFor(look, what) {
    for (const end = Date.now() + LONGEST_WAIT_MS; Date.now() < end; await pause(LOOK_AGAIN_MS)) {
        const found = await look();
        if (found) return found;
    }
    throw new Error(`${what}: not within ${LONGEST_WAIT_MS} ms`);
}

/** A session of the WebDriver protocol, with those of puppeteer's calls that page.mjs makes. */
class WebKitPage {
    /** @param {string} session its address */
    constructor(session) {
        this.session = session;
    }

    /** @param {string} driver its address */
    static async open(driver) {
        const { sessionId } = await WebKitPage.send(`${driver}/session`, 'POST', {
            capabilities: {
                alwaysMatch: { 'webkitgtk:browserOptions': { binary: MINI_BROWSER, args: ['--automation'] } },
            },
        });
        return new WebKitPage(`${driver}/session/${sessionId}`);
    }
    /** @param {string} address @param {string} method @param {object} [body] */
    static async send(address, method, body) {
        const answer = await fetch(address, { method, body: body && JSON.stringify(body) });
        const { value } = /** @type {any} */ (await answer.json());
        if (!answer.ok) throw new Error(`${method} ${address}: ${value.error}: ${value.message}`);
        return value;
    }
    /** @param {string} command @param {object} [body] */
    post(command, body = {}) {
        return WebKitPage.send(`${this.session}/${command}`, 'POST', body);
    }
    close() {
        return WebKitPage.send(this.session, 'DELETE');
    }
    /** @param {string} address */
    goto(address) {
        return this.post('url', { url: address });
    }
    reload() {
        return this.post('refresh');
    }
    /** @param {Function} call @param {...any} values */
    evaluate(call, ...values) {
        return this.post('execute/sync', { script: `return (${call})(...arguments);`, args: values });
    }
    /** @param {Function} call @param {object} how @param {...any} values */
    waitForFunction(call, how, ...values) {
        const script = `return Boolean((${call})(...arguments));`;
        return waitFor(() => this.post('execute/sync', { script, args: values }), `${call}(${values})`);
    }
    /** @param {string} selector */
    waitForSelector(selector) {
        return this.waitForFunction(
            (/** @type {string} */ each) => document.querySelector(each) !== null,
            {},
            selector,
        );
    }
    /** @param {string} selector @param {Function} call @param {...any} values */
    $$eval(selector, call, ...values) {
        const script = `return (${call})([...document.querySelectorAll(arguments[0])], ...[...arguments].slice(1));`;
        return this.post('execute/sync', { script, args: [selector, ...values] });
    }
    /**
     * Puts a finger or the mouse down, or lifts it.
     * @param {'pointerDown' | 'pointerUp'} what
     * @param {{ x: number, y: number }} place
     * @param {'touch' | 'mouse'} pointerType
     */
    point(what, { x, y }, pointerType) {
        const move = { type: 'pointerMove', duration: 0, origin: 'viewport', x: Math.round(x), y: Math.round(y) };
        const pointer = { type: 'pointer', id: pointerType, parameters: { pointerType } };
        return this.post('actions', { actions: [{ ...pointer, actions: [move, { type: what, button: 0 }] }] });
    }
    mouse = {
        /** @param {number} x @param {number} y */
        click: async (x, y) => {
            await this.point('pointerDown', { x, y }, 'mouse');
            await this.point('pointerUp', { x, y }, 'mouse');
        },
    };
}

/** @type {string} */ let folder;
/** @type {Awaited<ReturnType<typeof serve>>} */ let server;
/** @type {Awaited<ReturnType<typeof phone.startSound>>} */ let sound;
/** @type {import('node:child_process').ChildProcess[]} */ const helpers = [];
/** @type {any} */ let page;

const freePort = () =>
    new Promise((resolve) => {
        const probe = createServer().listen(0, '127.0.0.1', () => {
            const { port } = /** @type {import('node:net').AddressInfo} */ (probe.address());
            probe.close(() => resolve(port));
        });
    });

/** A screen that nobody sees. @returns {Promise<string>} its name */
async function startScreen() {
    const screen = spawn('Xvfb', ['-displayfd', '3', '-screen', '0', '1280x1600x24', '-nolisten', 'tcp'], {
        stdio: ['ignore', 'ignore', 'ignore', 'pipe'],
    });
    helpers.push(screen);
    const told = /** @type {import('node:stream').Readable} */ (screen.stdio[3]);
    for await (const line of told) return `:${String(line).trim()}`;
    throw new Error('Xvfb does not start');
}

before(async () => {
    folder = await mkdtemp(join(tmpdir(), 'brevant-webkit-'));
    sound = await phone.startSound(folder);
    const DISPLAY = await startScreen();
    const port = await freePort();
    const env = { ...process.env, ...sound.env, DISPLAY, GDK_BACKEND: 'x11', NO_AT_BRIDGE: '1' };
    helpers.push(spawn('WebKitWebDriver', ['--host=127.0.0.1', `--port=${port}`], { env, stdio: 'ignore' }));
    const driver = `http://127.0.0.1:${port}`;
    await waitFor(() => WebKitPage.send(`${driver}/status`, 'GET').catch(() => null), 'the driver starts');
    server = await serve(phone.BUILT);
    page = await WebKitPage.open(driver);
    // The window has a frame around the page and a least width: what is shown gets the shape of the phone's screen.
    const BEGUN = { width: 600, height: 800 };
    await page.post('window/rect', BEGUN);
    const [width, height] = await page.evaluate(() => [innerWidth, innerHeight]);
    const wanted = Math.round((width * phone.PHONE.height) / phone.PHONE.width);
    await page.post('window/rect', { ...BEGUN, height: BEGUN.height + wanted - height });
    await page.waitForFunction((/** @type {number} */ each) => Math.abs(innerHeight - each) <= 2, {}, wanted);
});
after(async () => {
    await page?.close();
    for (const each of helpers.reverse()) each.kill();
    sound?.end();
    await server?.close();
    await rm(folder, { recursive: true, force: true, maxRetries: 10 });
});

/** Blows into the microphone until the process is killed. */
function blow() {
    const SECONDS = 60;
    const WAV_HEADER_BYTES = 44;
    const format = ['--format=s16le', '--rate=48000', '--channels=1'];
    const blowing = spawn('pacat', ['--playback', '--raw', '--device=breath', ...format], {
        env: { ...process.env, ...sound.env },
        stdio: ['pipe', 'ignore', 'ignore'],
    });
    helpers.push(blowing);
    const second = phone.breathFile().subarray(WAV_HEADER_BYTES);
    blowing.stdin.on('error', () => {}); // It ends before all of it has been heard.
    blowing.stdin.end(Buffer.concat(Array(SECONDS).fill(second)));
    return blowing;
}

test(
    'breath sounds, a finger on each hole in tune; settings last, without a network, too',
    phone.LIMIT,
    async (context) => {
        await page.goto(`${server.address}?language=en`);
        await phone.showsPlayScreen(page);
        await phone.listen(page);
        const scale = (await page.evaluate(() => innerWidth)) / phone.PHONE.width;
        const holes = phone.HOLES.map(({ x, y }) => ({ x: x * scale, y: y * scale }));
        // The first touch that is lifted asks for the microphone.
        await page.point('pointerDown', holes[0], 'touch');
        await page.point('pointerUp', holes[0], 'touch');
        const breath = blow();
        await phone.sounds(page, phone.FINGERINGS[0]);
        breath.kill();
        await phone.isSilent(page);
        await phone.turnAutomaticPlayOn(page, phone.click);
        for (const [hole, place] of holes.entries()) {
            await page.point('pointerDown', place, 'touch');
            await phone.sounds(page, phone.FINGERINGS[1 << hole]);
            await page.point('pointerUp', place, 'touch');
            await phone.isSilent(page);
        }
        await page.evaluate(() => {
            navigator.serviceWorker.ready.then(() => Object.assign(globalThis, { isKept: true }));
        });
        await page.waitForFunction(() => 'isKept' in globalThis, {});
        await server.close();
        await page.reload();
        await phone.openSettings(page, phone.click);
        await page.waitForSelector('#mirror [role=switch][aria-checked=true]');
        context.diagnostic('not tried in WebKit: several fingers or keys, which its driver does not lift');
    },
);
