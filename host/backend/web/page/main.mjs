// Starts the ocarina on the page: fetches its parts, hands them the page, and says in one line what cannot be had.

import { Mirror, ROLES } from './accessibility.mjs';
import { listenForInput } from './input.mjs';
import { createLoop } from './loop.mjs';
import { createMicrophone } from './microphone.mjs';
import { createPainter } from './painter.mjs';
import { findDropped, listenForDrops, readRequest } from './performance.mjs';
import { BackKey, KeptForGood, ScreenLock, watchTones, watchVisibility } from './phone.mjs';
import { createSpeaker, waitForSound } from './speaker.mjs';
import { createStorage } from './storage.mjs';
import { textsOf } from './texts.mjs';
import { keepForLater } from './updates.mjs';

/**
 * What the compiled program offers; its main file says what each does.
 * @typedef {{
 *   callMain(options: string[]): void,
 *   ccall(name: string, result: null, types: string[], values: (string | number)[]): void,
 *   _brevant_touch(finger: number, kind: number, x: number, y: number): void,
 *   _brevant_phone_key(kind: number): void,
 *   _brevant_input_lost(): void,
 *   _brevant_resize(width: number, height: number): void,
 *   _brevant_visibility(isVisible: number): void,
 *   _brevant_unlocked(): void,
 *   _brevant_accessible_activate(id: number): void,
 *   _brevant_accessible_set(id: number, value: number): void
 * }} Program
 */

/** The picture that the page shows at once, which is the package's own. */
const SPLASH = 'splash.webp';
const SPLASH_IN_PACKAGE = 'package/images/intro01.png';

const KEY_DOWN = 0;
const KEY_UP = 2;

const request = readRequest(new URLSearchParams(location.search));
const texts = textsOf(early.language);
early.end();

/** @template {HTMLElement} T @param {string} id @param {new () => T} kind @returns {T} */
function element(id, kind) {
    const found = document.getElementById(id);
    if (!(found instanceof kind)) throw new Error(`the page has no ${id}`);
    return found;
}

const canvas = element('ocarina', HTMLCanvasElement);
const mirrorRoot = element('mirror', HTMLDivElement);
const hint = element('hint', HTMLParagraphElement);
const message = element('message', HTMLDivElement);

/** A line over the ocarina until the next touch or key, below one that is there already. @param {string} line */
function notify(line) {
    hint.textContent = hint.hidden ? line : `${hint.textContent}\n${line}`;
    hint.hidden = false;
}

/** The canvas's size in the display's own pixels. */
function deviceSize() {
    return {
        width: Math.max(1, Math.round(canvas.clientWidth * devicePixelRatio)),
        height: Math.max(1, Math.round(canvas.clientHeight * devicePixelRatio)),
    };
}

/** The server is there, but not the file. */
class MissingFile extends Error {}

/** @param {string} name a file beside this one */
async function fetchBytes(name) {
    const answer = await fetch(new URL(name, import.meta.url));
    if (!answer.ok) throw new MissingFile(`${name}: the server says ${answer.status}`);
    return answer.arrayBuffer();
}

/** The browser's storage; null where it keeps nothing, as in some private windows. */
function settingsStorage() {
    try {
        return localStorage;
    } catch {
        return null;
    }
}

// An iPhone's silent switch mutes a page's sound unless its audio session is of the type play-and-record, and a page that
// records gets that session only from its first recording on. So it is asked for at the start: W3C, "Audio Session",
// section "AudioSessionType". That category plays on through the silent switch: Apple, "AVAudioSession.Category
// playAndRecord". The same pages say that voice processing lowers what is played while a microphone is open; Brevant asks
// for the microphone without echo cancellation (microphone.mjs), so that none is switched on.
function askForAudioSession() {
    const session = /** @type {{ audioSession?: { type: string } }} */ (navigator).audioSession;
    if (session !== undefined) session.type = 'play-and-record';
}

/** The start is long for a slow phone; between its steps the browser sees to what has come meanwhile. */
const letBrowserWork = () => new Promise((resolve) => setTimeout(resolve));

/** @returns {string | undefined} what this browser lacks, in one line */
function whatIsMissing() {
    if (typeof WebAssembly !== 'object') return texts.noWebAssembly;
    if (!window.isSecureContext) return texts.insecure;
    if (typeof AudioWorkletNode !== 'function') return texts.noAudioWorklet;
    return undefined;
}

async function start() {
    const missing = whatIsMissing();
    if (missing !== undefined) {
        early.say(missing);
        return;
    }
    askForAudioSession();
    const soundIsUp = waitForSound();
    const dropped = findDropped();
    const files = request.files.filter((name) => name !== dropped?.name);
    /** @type {[ArrayBuffer, ArrayBuffer, ArrayBuffer, ArrayBuffer, { default: (parts: object) => Promise<Program> }, ...ArrayBuffer[]]} */
    const [mix, worklet, archive, splash, program, ...contents] = await Promise.all([
        fetchBytes('mix.wasm'),
        // Loaded with all else, so that a network that ends later leaves the sound whole.
        fetchBytes('worklet.mjs'),
        fetchBytes('package.bin'),
        fetchBytes(SPLASH),
        // @ts-ignore: it is made by the build.
        import('./brevant.mjs'),
        ...files.map(fetchBytes),
    ]);

    const screenLock = new ScreenLock();
    const speaker = createSpeaker({
        mix,
        workletUrl: URL.createObjectURL(new Blob([worklet], { type: 'text/javascript' })),
        isHeardBack: request.options.some((option) => option.startsWith('--record=')),
        onFault: (error) => console.error('brevant: the sound does not start:', error),
    });
    let isUsed = false;
    const keptForGood = new KeptForGood();
    watchTones(speaker, (isPlaying) => {
        screenLock.setPlaying(isPlaying);
        keptForGood.setPlaying(isPlaying);
    });
    const storage = createStorage({
        archive,
        settings: settingsStorage(),
        // What the ocarina writes by itself at its first start is no reason to ask.
        onKept: () => isUsed && keptForGood.written(),
        onFull: () => notify(texts.notKept),
    });
    storage.addFile(SPLASH_IN_PACKAGE, new Uint8Array(splash));
    files.forEach((name, index) => storage.addFile(name, new Uint8Array(contents[index])));
    if (dropped !== undefined) storage.addFile(dropped.name, dropped.bytes);

    /** @type {Program | null} */
    let running = null;
    let hasEnded = false;
    const back = new BackKey(() => {
        running?._brevant_phone_key(KEY_DOWN);
        running?._brevant_phone_key(KEY_UP);
    });
    const mirror = new Mirror(mirrorRoot, canvas);
    mirror.connect({
        activate: (id) => running?._brevant_accessible_activate(id),
        setValue: (id, value) => running?._brevant_accessible_set(id, value),
    });
    const end = () => {
        hasEnded = true;
        running = null;
        back.end();
        screenLock.setPlaying(false);
    };
    Object.assign(canvas, deviceSize());
    const painter = createPainter(canvas);
    // The speaker's open() tells of a worklet that does not load.
    await Promise.all([painter.prepare(storage.pictures()), soundIsUp.then(() => speaker.context()).catch(() => null)]);
    const host = {
        window: {
            canvas,
            // The ocarina's own splash is there now.
            presented: () => document.getElementById('splash')?.remove(),
            ended: () => {
                end();
                early.say(texts.ended, texts.again);
                offerDownloads(storage.outputs);
            },
            /** @param {string} reason */
            refused: (reason) => {
                end();
                early.say(`${texts.failed} ${reason}`);
            },
        },
        painter,
        speaker,
        microphone: createMicrophone(speaker),
        storage,
        loop: createLoop(),
        accessibility: {
            /** @param {boolean} isDialog @param {boolean} isPlayedOn */
            begin: (isDialog, isPlayedOn) => mirror.begin(isDialog, isPlayedOn),
            /** @type {(id: number, role: number, name: string, x: number, y: number, width: number, height: number,
             *     isOn: boolean, value: number, least: number, most: number) => void} */
            item: (id, role, name, x, y, width, height, isOn, value, least, most) =>
                mirror.item({ id, role: ROLES[role], name, x, y, width, height, isOn, value, least, most }),
            end: () => mirror.end(),
        },
        console,
    };
    // For tests and bug reports.
    Object.assign(globalThis, { brevant: host });

    await letBrowserWork();
    const module = await program.default({ host });
    await letBrowserWork();
    module.callMain(request.options);
    if (hasEnded) return;
    await letBrowserWork();
    running = module;
    notify(texts.touch);
    connectInput(
        () => running,
        mirror,
        () => {
            isUsed = true;
            back.arm();
        },
    );
    watchVisibility((isVisible) => running?._brevant_visibility(isVisible ? 1 : 0));
    new ResizeObserver(() => {
        const { width, height } = deviceSize();
        running?._brevant_resize(width, height);
    }).observe(canvas);
}

/** @param {() => Program | null} program @param {Mirror} mirror @param {() => void} onGesture */
function connectInput(program, mirror, onGesture) {
    listenForInput(
        canvas,
        {
            touch: (finger, kind, x, y) => {
                hint.hidden = true;
                program()?._brevant_touch(finger, kind, x, y);
            },
            key: (code, kind, shift) => {
                hint.hidden = true;
                program()?.ccall('brevant_key', null, ['string', 'number', 'number'], [code, kind, shift ? 1 : 0]);
            },
            lost: () => program()?._brevant_input_lost(),
            gesture: () => {
                program()?._brevant_unlocked();
                if (program() !== null) onGesture();
            },
        },
        (code) => !message.hidden || mirror.keeps(code),
    );
}

/** @param {Map<string, Uint8Array>} outputs what the performance has left, by file name */
function offerDownloads(outputs) {
    for (const [name, bytes] of outputs) {
        const link = document.createElement('a');
        link.download = name;
        link.href = URL.createObjectURL(new Blob([/** @type {BlobPart} */ (bytes)]));
        link.textContent = `${texts.download}: ${name}`;
        element('downloads', HTMLDivElement).append(link);
    }
}

listenForDrops((name, problem) => notify(`${name}: ${texts[problem]}`));

// On a first visit the ocarina comes first, and then what keeps it for later.
const isKept = navigator.serviceWorker?.controller != null;
if (isKept) keepForLater();
start()
    .catch((error) => {
        console.error('brevant:', error);
        if (error instanceof SyntaxError) early.say(early.texts.tooOld);
        else if (error instanceof MissingFile) early.say(`${texts.failed} ${error.message}`, early.texts.retry);
        else early.say(early.texts.interrupted, early.texts.retry);
    })
    .then(() => {
        if (!isKept) keepForLater();
    });
