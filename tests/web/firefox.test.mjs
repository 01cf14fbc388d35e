// The built page in Firefox: its keys, mouse and microphone.

import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { mkdtemp, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import puppeteer from 'puppeteer-core';
import { serve } from '../../tools/web/serve.mjs';
import * as phone from './page.mjs';

const BREATH = ' ';

/** @type {string} */ let folder;
/** @type {Awaited<ReturnType<typeof phone.startSound>>} */ let sound;

before(async () => {
    folder = await mkdtemp(join(tmpdir(), 'brevant-firefox-'));
    sound = await phone.startSound(folder);
});
after(async () => {
    sound?.end();
    await rm(folder, { recursive: true, force: true, maxRetries: 10 });
});

/** What Firefox hears in place of a microphone is a quiet tone; ten times as loud it is a breath. Runs in the page. */
function hearLouder() {
    const { mediaDevices } = navigator;
    const ask = mediaDevices.getUserMedia.bind(mediaDevices);
    mediaDevices.getUserMedia = async (wish) => {
        const mediaStream = await ask(wish);
        const context = new AudioContext();
        const heard = new MediaStreamAudioDestinationNode(context);
        new MediaStreamAudioSourceNode(context, { mediaStream })
            .connect(new GainNode(context, { gain: 10 }))
            .connect(heard);
        return heard.stream;
    };
}

/**
 * Runs on a page in a Firefox of its own, with a server of its own.
 * @param {string} name
 * @param {'accept' | 'deny'} microphone
 * @param {(page: import('puppeteer-core').Page, server: Awaited<ReturnType<typeof serve>>) => Promise<void>} body
 */
function inFirefox(name, microphone, body) {
    test(name, phone.LIMIT, async (context) => {
        const server = await serve(phone.BUILT);
        const browser = await puppeteer.launch({
            browser: 'firefox',
            executablePath: '/usr/bin/firefox-esr',
            env: { ...process.env, ...sound.env },
            extraPrefsFirefox: {
                'media.navigator.streams.fake': true,
                'media.navigator.permission.disabled': microphone === 'accept',
                'permissions.default.microphone': microphone === 'accept' ? 1 : 2,
            },
        });
        try {
            const page = await browser.newPage();
            await page.evaluateOnNewDocument(hearLouder);
            await page.setViewport({ width: phone.PHONE.width, height: phone.PHONE.height });
            await page.goto(`${server.address}?language=en&trace`);
            await phone.showsPlayScreen(page);
            await body(page, server);
            context.diagnostic('not tried in Firefox: several fingers, which its driver puts down in no page');
        } finally {
            await browser.close();
            await server.close();
        }
    });
}

inFirefox('the sixteen fingerings sound in tune by keys', 'deny', async (page) => {
    await phone.listen(page);
    await page.keyboard.down(BREATH);
    await phone.sounds(page, phone.FINGERINGS[0]);
    for (let mask = 1; mask < phone.FINGERINGS.length; ++mask) {
        const held = phone.KEYS.filter((_, hole) => (mask & (1 << hole)) !== 0);
        for (const key of held) await page.keyboard.down(key);
        await phone.sounds(page, phone.FINGERINGS[mask]);
        for (const key of held) await page.keyboard.up(key);
    }
    await page.keyboard.up(BREATH);
    await phone.isSilent(page);
    const lost = (await phone.readTrace(page)).filter(({ what, event }) => what === 'microphone' && event === 'lost');
    assert.equal(lost.length, 1);
});

inFirefox(
    'a microphone is heard, the mouse covers holes, settings last, and no network is needed',
    'accept',
    async (page, server) => {
        await phone.listen(page);
        await page.mouse.click(phone.HOLES[0].x, phone.HOLES[0].y);
        await phone.sounds(page, phone.FINGERINGS[0]);
        await phone.turnAutomaticPlayOn(page, phone.click);
        await page.mouse.move(phone.HOLES[0].x, phone.HOLES[0].y);
        await page.mouse.down();
        await phone.sounds(page, phone.FINGERINGS[1]);
        await page.mouse.up();
        await phone.isSilent(page);
        await page.evaluate(async () => (await navigator.serviceWorker.ready).scope);
        await server.close();
        await page.reload();
        await phone.openSettings(page, phone.click);
        await page.waitForSelector('#mirror [role=switch][aria-checked=true]');
    },
);
