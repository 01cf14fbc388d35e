// What the page says itself, in Chromium: before the ocarina is there, where it never comes, and what goes wrong beside it.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { mkdir, writeFile } from 'node:fs/promises';
import { join } from 'node:path';
import { serve } from '../../tools/web/serve.mjs';
import * as phone from './page.mjs';

const chromium = phone.useChromium();
const { onPhone } = chromium;

/**
 * Opens the page of a server that answers with something else in place of one part.
 * @param {string} part
 * @param {string | null} content null for an answer that breaks off
 * @param {(page: phone.PhonePage) => Promise<void>} body
 * @param {(page: import('puppeteer-core').Page) => Promise<unknown>} [prepare]
 */
async function withPart(part, content, body, prepare = async () => {}) {
    const own = await serve(phone.BUILT, 0, (name, answer) => {
        if (name !== part) return false;
        answer.writeHead(200, {
            'Content-Type': 'text/javascript',
            ...(content === null ? { 'Content-Length': '100000' } : {}),
        });
        answer.write(content ?? 'half');
        content === null ? answer.destroy() : answer.end();
        return true;
    });
    const context = await chromium.browser.createBrowserContext();
    try {
        const page = await context.newPage();
        await prepare(page);
        await page.goto(own.address);
        await body(/** @type {phone.PhonePage} */ (page));
    } finally {
        await context.close();
        await own.close();
    }
}

for (const [liked, line, retry] of /** @type {[string[], string, string][]} */ ([
    [['de-AT', 'en'], 'Das Netz brach ab, bevor Brevant geladen war.', 'Noch einmal versuchen'],
    [['fr'], 'Le réseau s’est interrompu avant la fin du chargement de Brevant.', 'Réessayer'],
    [['es-MX'], 'La red se cortó antes de que Brevant estuviera cargado.', 'Intentar de nuevo'],
    [['pt-BR'], 'A rede caiu antes de o Brevant estar carregado.', 'Tentar de novo'],
    [['ko'], 'Brevant를 다 받기 전에 네트워크가 끊겼습니다.', '다시 시도'],
    [['nl', 'ja-JP'], 'Brevantを読み込む前にネットワークが切れました。', 'もう一度試す'],
    [['nl'], 'The network ended before Brevant was there.', 'Try again'],
])) {
    test(`whoever likes ${liked} reads of a network that ended in the language of their own`, phone.LIMIT, () =>
        withPart(
            'texts.mjs',
            null,
            async (page) => {
                assert.equal(await phone.showsMessage(page), line);
                assert.equal(await page.$eval('#message-button', (button) => button.textContent), retry);
                const lang = await page.evaluate(() => document.documentElement.lang);
                assert.equal(lang, liked.map((tag) => tag.slice(0, 2)).find((tag) => tag !== 'nl') ?? 'en');
            },
            (page) =>
                page.evaluateOnNewDocument(
                    (tags) => Object.defineProperty(navigator, 'languages', { value: tags }),
                    liked,
                ),
        ),
    );
}

for (const [what, part] of [
    ['understands no modules', ''],
    ['does not understand the page’s own modules', 'input.mjs'],
    ['does not understand the program’s', 'brevant.mjs'],
]) {
    test(`a browser that ${what} is told to be too old`, phone.LIMIT, () =>
        withPart(
            part,
            'a syntax of tomorrow',
            async (page) => {
                assert.equal(await phone.showsMessage(page), 'This browser is too old for Brevant.');
                assert.ok(await page.$eval('#message-button', (button) => button.hidden), 'trying again is of no use');
            },
            (page) =>
                page.evaluateOnNewDocument((isBeforeModules) => {
                    if (isBeforeModules) Reflect.deleteProperty(HTMLScriptElement.prototype, 'noModule');
                }, part === ''),
        ),
    );
}

test('without scripts the page asks for them in seven languages, each line on the screen', phone.LIMIT, async () => {
    const page = await (await chromium.browser.createBrowserContext()).newPage();
    await page.setViewport(phone.PHONE);
    await page.setJavaScriptEnabled(false);
    await page.goto(chromium.server.address);
    const lines = await page.$$eval('noscript p', (all) =>
        all.map((line) => {
            const { top, bottom } = line.getBoundingClientRect();
            const isSeen = document.elementFromPoint(innerWidth / 2, (top + bottom) / 2) === line;
            return { lang: line.lang, isSeen };
        }),
    );
    assert.deepEqual(
        lines,
        ['', 'de', 'fr', 'es', 'pt', 'ko', 'ja'].map((lang) => ({ lang, isSeen: true })),
    );
});

/** The line over the ocarina. @param {import('puppeteer-core').Page} page @param {string} text */
const showsLine = (page, text) =>
    page.waitForFunction(
        (wanted) => {
            const hint = document.querySelector('#hint');
            return hint instanceof HTMLElement && !hint.hidden && hint.innerText === wanted;
        },
        { polling: 'mutation' },
        text,
    );

onPhone('a dropped file that cannot be played is told on the page, and the ocarina plays on', async (page) => {
    await phone.turnAutomaticPlayOn(page);
    await phone.listen(page);
    const session = await page.createCDPSession();
    const large = join(chromium.folder, 'large.performance');
    await writeFile(large, Buffer.alloc(12_000_000, '#'));
    const folder = join(chromium.folder, 'folder.performance');
    await mkdir(folder);
    for (const [path, line] of [
        [large, 'large.performance: The file is too large for this browser.'],
        [folder, 'folder.performance: The file cannot be read.'],
    ]) {
        const data = { items: [], files: [path], dragOperationsMask: 1 };
        for (const type of /** @type {const} */ (['dragEnter', 'dragOver', 'drop'])) {
            await session.send('Input.dispatchDragEvent', { type, x: 180, y: 320, data });
        }
        await showsLine(page, line);
        await phone.cover(session, 1);
        await page.waitForSelector('#hint[hidden]');
        await phone.sounds(page, phone.FINGERINGS[1]);
        await phone.uncover(session);
        await phone.isSilent(page);
    }
});

onPhone(
    'settings that find no room are told on the page, once',
    async (page) => {
        await showsLine(page, 'Settings are not kept: this browser has no room left.\nTouch to play');
        await phone.turnAutomaticPlayOn(page);
        assert.ok(await page.$eval('#hint', (hint) => hint.hidden));
    },
    {
        first: () => {
            Storage.prototype.setItem = () => {
                throw new DOMException('no room', 'QuotaExceededError');
            };
        },
        says: ['brevant: settings file data/info.ini: cannot be made; settings are not kept'],
    },
);

onPhone(
    'the browser is asked once to keep the settings, after the first change and never during a tone',
    async (page) => {
        const waiting = () => page.evaluate(() => ({ rests: window.rests.size, asked: window.asked }));
        await phone.showsPlayScreen(page);
        await page.waitForFunction(() => localStorage.length > 0);
        assert.deepEqual(await waiting(), { rests: 0, asked: 0 }, 'what the ocarina writes at its start is no change');
        await phone.listen(page);
        await page.touchscreen.tap(phone.HOLES[0].x, phone.HOLES[0].y);
        await phone.sounds(page, phone.FINGERINGS[0]);
        await page.waitForFunction(() => /FirstBlow/.test(localStorage.getItem('brevant/data/info.ini') ?? ''));
        assert.deepEqual(await waiting(), { rests: 0, asked: 0 }, 'a tone sounds');
        await page.evaluate(() => window.endBreath());
        await page.waitForFunction(() => window.rests.size === 1);
        await page.evaluate(() => window.rests.forEach((rest) => rest()));
        await page.waitForFunction(() => window.asked === 1);
        await phone.turnAutomaticPlayOn(page);
        assert.deepEqual(await waiting(), { rests: 0, asked: 1 });
    },
    {
        first: () => {
            // The player's rest lasts until the test ends it.
            const REST_MS = 3000;
            /** @type {Map<number, () => void>} */
            const rests = new Map();
            const { setTimeout, clearTimeout } = window;
            /** @type {MediaStreamTrack[]} */
            const tracks = [];
            const { mediaDevices, storage } = navigator;
            const open = mediaDevices.getUserMedia.bind(mediaDevices);
            mediaDevices.getUserMedia = async (wish) => {
                const stream = await open(wish);
                tracks.push(...stream.getTracks());
                return stream;
            };
            storage.persisted = async () => false;
            storage.persist = async () => {
                window.asked += 1;
                return true;
            };
            Object.assign(window, {
                rests,
                asked: 0,
                endBreath: () => tracks.forEach((track) => track.stop()),
                setTimeout: (/** @type {() => void} */ call, /** @type {number} */ delay) => {
                    const timer = setTimeout(call, delay);
                    if (delay !== REST_MS) return timer;
                    clearTimeout(timer);
                    rests.set(timer, () => rests.delete(timer) && call());
                    return timer;
                },
                clearTimeout: (/** @type {number} */ timer) => {
                    rests.delete(timer);
                    clearTimeout(timer);
                },
            });
        },
    },
);
