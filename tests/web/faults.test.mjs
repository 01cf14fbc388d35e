// The built page in Chromium where something goes wrong: what is lost is told in one line, and all else goes on.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { mkdtemp, readFile } from 'node:fs/promises';
import { join } from 'node:path';
import { serve } from '../../tools/web/serve.mjs';
import * as phone from './page.mjs';

const chromium = phone.useChromium();
const { onPhone } = chromium;

test('a microphone that is refused is told once, and automatic play goes on', phone.LIMIT, async () => {
    const refusing = await chromium.launch('deny');
    try {
        const page = await phone.openOnPhone(refusing.defaultBrowserContext(), `${chromium.server.address}?trace`);
        await phone.turnAutomaticPlayOn(page);
        await phone.listen(page);
        await phone.cover(await page.createCDPSession(), 1);
        await phone.sounds(page, phone.FINGERINGS[1]);
        const lost = (await phone.readTrace(page)).filter(
            ({ what, event }) => what === 'microphone' && event === 'lost',
        );
        assert.equal(lost.length, 1);
        phone.hasSaid(page, ['brevant: there is no microphone; blowing works when there is one']);
    } finally {
        await refusing.close();
    }
});

onPhone(
    'a microphone that is taken away is told, and heard again when it is back',
    async (page) => {
        await phone.showsPlayScreen(page);
        await phone.listen(page);
        await page.touchscreen.tap(phone.HOLES[0].x, phone.HOLES[0].y);
        await phone.sounds(page, phone.FINGERINGS[0]);
        await page.evaluate(() => window.tracks.at(-1).dispatchEvent(new Event('ended')));
        await phone.isSilent(page);
        assert.equal(await page.evaluate(() => window.tracks.length), 1);
        await page.evaluate(() => navigator.mediaDevices.dispatchEvent(new Event('devicechange')));
        await phone.sounds(page, phone.FINGERINGS[0]);
    },
    {
        says: [
            'brevant: the microphone is gone; blowing works again when it is back',
            'brevant: the microphone is back',
        ],
        first: () => {
            const { mediaDevices } = navigator;
            const ask = mediaDevices.getUserMedia.bind(mediaDevices);
            /** @type {MediaStreamTrack[]} */
            const tracks = [];
            Object.assign(globalThis, { tracks });
            mediaDevices.getUserMedia = async (wish) => {
                const stream = await ask(wish);
                tracks.push(...stream.getAudioTracks());
                return stream;
            };
        },
    },
);

onPhone(
    'a frozen page sounds no more and goes on when it is thawed',
    async (page, browserContext) => {
        await phone.turnAutomaticPlayOn(page);
        await phone.listen(page);
        const session = await page.createCDPSession();
        await phone.cover(session, 1);
        await phone.sounds(page, phone.FINGERINGS[1]);
        await page.evaluate(() => {
            const { context } = window.brevant.speaker.node;
            window.events = [];
            document.addEventListener('freeze', () => window.events.push('freeze'));
            document.addEventListener('resume', () => window.events.push('resume'));
            context.addEventListener('statechange', () => window.events.push(context.state));
        });
        await session.send('Page.setWebLifecycleState', { state: 'frozen' });
        await session.send('Page.setWebLifecycleState', { state: 'active' });
        // Chromium hides what it freezes; it is shown again when the user comes back from another tab.
        await (await browserContext.newPage()).bringToFront();
        await page.bringToFront();
        await page.waitForFunction(() => window.events.length === 4, { polling: 20 });
        assert.deepEqual((await page.evaluate(() => window.events)).sort(), [
            'freeze',
            'resume',
            'running',
            'suspended',
        ]);
        await phone.uncover(session);
        await phone.isSilent(page);
        await phone.cover(session, 1);
        await phone.sounds(page, phone.FINGERINGS[1]);
        const events = (await phone.readTrace(page)).filter(({ what }) => what === 'app').map(({ event }) => event);
        assert.deepEqual(events, ['initialized', 'foreground', 'background', 'foreground']);
    },
    { query: '?trace' },
);

onPhone(
    'the screen is kept awake while breath comes or a tone sounds, and a little longer',
    async (page) => {
        const isAwake = (/** @type {boolean} */ wanted) =>
            page.waitForFunction((awake) => window.locks.some((lock) => !lock.released) === awake, {}, wanted);
        await phone.showsPlayScreen(page);
        assert.equal(await page.evaluate(() => window.locks.length), 0);
        await page.touchscreen.tap(phone.HOLES[0].x, phone.HOLES[0].y);
        await isAwake(true);
        await phone.turnAutomaticPlayOn(page);
        const session = await page.createCDPSession();
        await phone.cover(session, 1);
        await phone.uncover(session);
        await isAwake(false);
        await phone.cover(session, 2);
        await isAwake(true);
    },
    {
        first: () => {
            const { wakeLock } = navigator;
            const ask = wakeLock.request.bind(wakeLock);
            /** @type {WakeLockSentinel[]} */
            const locks = [];
            Object.assign(globalThis, { locks });
            wakeLock.request = async (kind) => {
                const lock = await ask(kind);
                locks.push(lock);
                return lock;
            };
        },
    },
);

onPhone(
    'an iPhone’s session plays and records, and an interrupted context goes on within the next touch’s handler',
    async (page) => {
        await phone.turnAutomaticPlayOn(page);
        assert.equal(await page.evaluate(() => window.navigator.audioSession.type), 'play-and-record');
        await phone.listen(page);
        await page.evaluate(async () => {
            const { context } = window.brevant.speaker.node;
            await context.suspend();
            Object.defineProperty(context, 'state', { configurable: true, get: () => 'interrupted' });
            context.resume = () => {
                window.resumedIn.push(window.handlers.at(-1));
                delete context.state;
                delete context.resume;
                return context.resume();
            };
        });
        const session = await page.createCDPSession();
        await phone.cover(session, 1);
        assert.deepEqual(await page.evaluate(() => window.resumedIn), [], 'before a touch is lifted, browsers refuse');
        await phone.uncover(session);
        const [handler] = await page.evaluate(() => window.resumedIn);
        assert.ok(['pointerup', 'touchend'].includes(handler), `it goes on in ${handler}`);
        await phone.cover(session, 1);
        await phone.sounds(page, phone.FINGERINGS[1]);
    },
    {
        first: () => {
            Object.defineProperty(navigator, 'audioSession', { value: { type: 'auto' } });
            // The events whose listeners run now, the innermost last: whatever is awaited runs in none of them.
            /** @type {string[]} */
            const handlers = [];
            Object.assign(globalThis, { handlers, resumedIn: [] });
            const listen = EventTarget.prototype.addEventListener;
            EventTarget.prototype.addEventListener = function (kind, listener, options) {
                const watched =
                    typeof listener !== 'function'
                        ? listener
                        : (/** @type {Event} */ event) => {
                              handlers.push(kind);
                              try {
                                  listener.call(this, event);
                              } finally {
                                  handlers.pop();
                              }
                          };
                listen.call(this, kind, watched, options);
            };
        },
    },
);

/** What is kept, as text; empty for nothing. @param {import('puppeteer-core').Page} page */
const settingsOf = (page) => page.evaluate(() => localStorage.getItem('brevant/data/info.ini') ?? '');

test('two tabs keep the settings of both', phone.LIMIT, async () => {
    const context = await chromium.browser.createBrowserContext();
    try {
        const refuseMicrophone = () => {
            navigator.mediaDevices.getUserMedia = () => Promise.reject(new Error('not here'));
        };
        const blown = await phone.openOnPhone(context, chromium.server.address);
        await phone.showsPlayScreen(blown);
        const pressed = await phone.openOnPhone(context, chromium.server.address, refuseMicrophone);
        await phone.turnAutomaticPlayOn(pressed);
        assert.doesNotMatch(await settingsOf(pressed), /FirstBlow/);
        await blown.bringToFront();
        await blown.touchscreen.tap(phone.HOLES[0].x, phone.HOLES[0].y);
        await blown.waitForFunction(() => /FirstBlow/.test(localStorage.getItem('brevant/data/info.ini') ?? ''));
        for (const page of [blown, pressed]) {
            assert.match(
                await settingsOf(page),
                /^\[Setup\]\nHoleColor=[\d,]+\nBackColor=[\d,]+\nAutoPlay=1\nFirstBlow=1\n$/,
            );
        }
        phone.hasSaid(blown, []);
    } finally {
        await context.close();
    }
});

for (const [
    what,
    kill,
] of /** @type {[string, (browser: import('puppeteer-core').Browser, page: phone.PhonePage) => Promise<void>][]} */ ([
    [
        'page',
        async (_, page) => {
            const gone = new Promise((resolve) => page.once('error', resolve));
            const session = await page.createCDPSession();
            session.send('Page.crash').catch(() => {});
            await gone;
        },
    ],
    [
        'browser',
        async (browser) => {
            const gone = new Promise((resolve) => browser.process()?.once('exit', resolve));
            browser.process()?.kill('SIGKILL');
            await gone;
        },
    ],
])) {
    test(
        `a ${what} that is killed while settings are written leaves the old ones or the new ones`,
        phone.LIMIT,
        async () => {
            const profile = await mkdtemp(join(chromium.folder, 'killed-'));
            // Long enough that half of it could be written; the comment is kept as everything that a user has put there.
            const versions = ['1,2,3,255', '4,5,6,255'].map(
                (colour) => `# ${colour.repeat(20_000)}\n[Setup]\nHoleColor=${colour}\nAutoPlay=1\n`,
            );
            let browser = await chromium.launch('accept', profile);
            try {
                const page = await phone.openOnPhone(browser.defaultBrowserContext(), chromium.server.address);
                await phone.turnAutomaticPlayOn(page);
                const old = await settingsOf(page);
                await page.evaluate((texts) => {
                    const contents = texts.map((text) => new TextEncoder().encode(text));
                    window.writes = 0;
                    const write = () => {
                        for (const content of contents) window.brevant.storage.replace('data/info.ini', content);
                        window.writes += 1;
                        setTimeout(write);
                    };
                    write();
                }, versions);
                await page.waitForFunction(() => window.writes > 20, { polling: 20 });
                await kill(browser, page);
                if (what === 'browser') browser = await chromium.launch('accept', profile);
                const next = await phone.openOnPhone(browser.defaultBrowserContext(), chromium.server.address);
                await phone.showsPlayScreen(next);
                assert.ok(['', old, ...versions].includes(await settingsOf(next)), 'neither the old nor the new ones');
                await phone.openSettings(next);
                phone.hasSaid(next, []);
            } finally {
                await browser.close();
            }
        },
    );
}

for (const [what, first, says] of /** @type {[string, () => void, string][]} */ ([
    [
        'that is full',
        () => {
            Storage.prototype.setItem = () => {
                throw new DOMException('no room', 'QuotaExceededError');
            };
        },
        'brevant: settings file data/info.ini: cannot be made; settings are not kept',
    ],
    [
        'that is refused',
        () => {
            Object.defineProperty(window, 'localStorage', {
                get() {
                    throw new DOMException('refused', 'SecurityError');
                },
            });
        },
        'brevant: this browser keeps nothing for the page; settings last until it is closed',
    ],
])) {
    onPhone(
        `a storage ${what} leaves the defaults, and is told once`,
        async (page) => {
            await phone.turnAutomaticPlayOn(page);
            await phone.openSettings(page);
            await page.waitForSelector('#mirror [role=switch][aria-checked=true]');
            await phone.tap(page, 'Close');
            await phone.showsPlayScreen(page);
            await phone.listen(page);
            await phone.cover(await page.createCDPSession(), 1);
            await phone.sounds(page, phone.FINGERINGS[1]);
        },
        { first, says: [says] },
    );
}

// The recording of the tone with the first hole covered, three semitones above C.
const RECORDING = 'data/ocarina_4_01.ogg';
for (const [
    what,
    spoil,
] of /** @type {[string, (files: Record<string, [number, number]>, contents: Buffer) => void][]} */ ([
    [
        'does not decode',
        (files, contents) => contents.fill(0x55, files[RECORDING][0], files[RECORDING][0] + files[RECORDING][1]),
    ],
    ['ends in its middle', (files) => (files[RECORDING][1] >>= 1)],
    ['is missing', (files) => delete files[RECORDING]],
])) {
    test(`a recording that ${what} is silent, is told once, and the others sound`, phone.LIMIT, async () => {
        const archive = await readFile(join(phone.BUILT, 'package.bin'));
        const head = archive.readUInt32LE(0);
        const files = JSON.parse(archive.subarray(4, 4 + head).toString());
        assert.ok(RECORDING in files);
        const contents = archive.subarray(4 + head);
        spoil(files, contents);
        const table = Buffer.from(JSON.stringify(files));
        const length = Buffer.alloc(4);
        length.writeUInt32LE(table.length);
        const own = await serve(phone.BUILT, 0, (name, answer) => {
            if (name !== 'package.bin') return false;
            answer.writeHead(200).end(Buffer.concat([length, table, contents]));
            return true;
        });
        const context = await chromium.browser.createBrowserContext();
        try {
            const page = await phone.openOnPhone(context, own.address);
            await phone.turnAutomaticPlayOn(page);
            await phone.listen(page);
            const session = await page.createCDPSession();
            const silent = 1;
            for (const mask of [2, silent, 4, silent, 8]) {
                await phone.cover(session, mask);
                if (mask === silent) await phone.isSilent(page);
                else await phone.sounds(page, phone.FINGERINGS[mask]);
                await phone.uncover(session);
                await phone.isSilent(page);
            }
            phone.hasSaid(page, [new RegExp(RECORDING.replace('.', '\\.'))]);
        } finally {
            await context.close();
            await own.close();
        }
    });
}

test('a file that the server does not have is named', phone.LIMIT, async () => {
    const context = await chromium.browser.createBrowserContext();
    try {
        const page = await phone.openOnPhone(context, `${chromium.server.address}?performance=none.performance`);
        assert.equal(await phone.showsMessage(page), 'Brevant could not start. none.performance: the server says 404');
    } finally {
        await context.close();
    }
});

const NETWORK_ENDED = 'The network ended before Brevant was there.';
for (const part of [
    'splash.webp',
    'main.mjs',
    'texts.mjs',
    'brevant.mjs',
    'brevant.wasm',
    'package.bin',
    'mix.wasm',
    'worklet.mjs',
]) {
    test(`a network that ends within ${part} is told, and tried again`, phone.LIMIT, async () => {
        let isCut = true;
        const own = await serve(phone.BUILT, 0, (name, answer) => {
            if (!isCut || name !== part) return false;
            answer.writeHead(200, { 'Content-Length': '100000' });
            answer.write('half');
            answer.destroy();
            return true;
        });
        const context = await chromium.browser.createBrowserContext();
        try {
            const page = await phone.openOnPhone(context, own.address);
            assert.equal(await phone.showsMessage(page), NETWORK_ENDED);
            isCut = false;
            await Promise.all([page.waitForNavigation(), page.click('#message-button')]);
            await phone.showsPlayScreen(page);
        } finally {
            await context.close();
            await own.close();
        }
    });
}

for (const [what, line] of [
    ['WebAssembly', 'This browser is too old for Brevant: it has no WebAssembly.'],
    ['AudioWorkletNode', 'This browser is too old for Brevant: it has no AudioWorklet.'],
]) {
    test(`a browser without ${what} is told so`, phone.LIMIT, async () => {
        const context = await chromium.browser.createBrowserContext();
        try {
            const page = await context.newPage();
            await page.evaluateOnNewDocument((name) => Reflect.deleteProperty(globalThis, name), what);
            await page.goto(chromium.server.address);
            assert.equal(await phone.showsMessage(page), line);
        } finally {
            await context.close();
        }
    });
}
