// The built page in Chromium, as on a phone: what a player does. What goes wrong is in faults.test.mjs.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { cp, readFile, writeFile } from 'node:fs/promises';
import { execFileSync } from 'node:child_process';
import { join } from 'node:path';
import { serve } from '../../tools/web/serve.mjs';
import * as phone from './page.mjs';

const chromium = phone.useChromium();
const { onPhone } = chromium;

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
    const axe = await readFile(new URL('../../node_modules/axe-core/axe.min.js', import.meta.url), 'utf8');
    const findsNothing = async () => {
        await page.evaluate(axe);
        const violations = await page.evaluate(
            async () => (await /** @type {any} */ (globalThis).axe.run()).violations,
        );
        assert.deepEqual(
            violations.map((/** @type {any} */ each) => `${each.id}: ${each.nodes[0].html}`),
            [],
        );
    };
    await phone.showsPlayScreen(page);
    await findsNothing();
    await page.focus('#mirror button');
    await page.keyboard.press('Enter');
    await phone.showsButtons(page, ['Menu', 'Help', 'Settings']);
    await page.keyboard.press('Tab');
    await page.keyboard.press('Enter');
    await page.waitForSelector('#mirror[role=dialog][aria-label=Help]');
    await findsNothing();
    await page.keyboard.press('Escape');
    await phone.showsPlayScreen(page);
    await page.focus('#mirror button');
    await page.keyboard.press('Enter');
    await phone.showsButtons(page, ['Menu', 'Help', 'Settings']);
    await page.keyboard.press('Tab');
    await page.keyboard.press('Tab');
    await page.keyboard.press('Enter');
    await page.waitForSelector('#mirror [role=switch]');
    await findsNothing();
    await page.focus('#mirror [role=switch]');
    await page.keyboard.press('Space');
    await page.waitForSelector('#mirror [role=switch][aria-checked=true]');
    await page.$$eval('#mirror button', (all) => all.find((button) => button.textContent === 'Hole colour')?.click());
    await page.waitForSelector('#mirror input[aria-label=Red]');
    await findsNothing();
    const red = () => page.$eval('#mirror input[aria-label=Red]', (input) => Number(input.value));
    const before = await red();
    await page.focus('#mirror input[aria-label=Red]');
    await page.keyboard.press('ArrowLeft');
    assert.equal(await red(), before - 1);
});

onPhone('without a network everything is there after the first visit', async (page) => {
    await phone.showsPlayScreen(page);
    await page.evaluate(async () => (await navigator.serviceWorker.ready).scope);
    await page.setOfflineMode(true);
    await page.goto(`${chromium.server.address}?language=de`);
    await page.waitForFunction(() => document.querySelector('#mirror button')?.textContent === 'Menü');
    await phone.listen(page);
    await page.keyboard.down('KeyR');
    await page.keyboard.down('Space');
    await phone.sounds(page, phone.FINGERINGS[1]);
});

test('a new version comes as a whole or not at all', phone.LIMIT, async () => {
    const site = join(chromium.folder, 'site');
    await cp(phone.BUILT, site, { recursive: true });
    let broken = '';
    const own = await serve(site, 0, (name, answer) => {
        if (name !== broken) return false;
        answer.writeHead(503).end();
        return true;
    });
    const context = await chromium.browser.createBrowserContext();
    const address = `${own.address}in/a/folder/`;
    const publish = async (/** @type {string} */ title) => {
        const index = join(site, 'index.html');
        await writeFile(
            index,
            (await readFile(index, 'utf8')).replace(/<title>.*<\/title>/, `<title>${title}</title>`),
        );
        execFileSync('node', ['tools/web/stamp.mjs', site]);
    };
    try {
        const page = await phone.openOnPhone(context, address);
        const active = () => page.evaluate(async () => (await navigator.serviceWorker.ready).active?.state);
        await phone.showsPlayScreen(page);
        assert.ok(['activating', 'activated'].includes(`${await active()}`));

        const update = () =>
            page.evaluate(async () => {
                const registration = await navigator.serviceWorker.ready;
                await registration.update();
                const coming = registration.installing;
                if (coming === null) return 'none';
                return new Promise((resolve) => {
                    coming.addEventListener('statechange', () => resolve(coming.state));
                });
            });
        broken = 'brevant.wasm';
        await publish('Brevant two');
        assert.equal(await update(), 'redundant', 'a version of which a file is missing is not taken');
        await page.goto(address);
        await phone.showsPlayScreen(page);
        assert.equal(await page.title(), 'Brevant, an ocarina', 'the old one stays whole');
        broken = '';
        await publish('Brevant three');
        assert.equal(await update(), 'installed');
        await page.goto(address);
        await page.waitForFunction(() => document.title === 'Brevant three');
        await phone.showsPlayScreen(page);
        assert.equal((await page.evaluate(() => caches.keys())).length, 1, 'nothing of older versions is left');
    } finally {
        await context.close();
        await own.close();
    }
});
