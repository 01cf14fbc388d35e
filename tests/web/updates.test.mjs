// The page's versions in Chromium. A browser takes its own time to let a new one in, so CI leaves this out.

import assert from 'node:assert/strict';
import { test } from 'node:test';
import { cp, readFile, writeFile } from 'node:fs/promises';
import { execFileSync } from 'node:child_process';
import { join } from 'node:path';
import { serve } from '../../tools/web/serve.mjs';
import * as phone from './page.mjs';

const chromium = phone.useChromium();

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
        // Two pages of one version stay what they are, and so do their next loadings.
        const other = await phone.openOnPhone(context, address);
        await phone.showsPlayScreen(other);
        await page.bringToFront();
        await page.goto(address);
        await phone.showsPlayScreen(page);
        assert.deepEqual([await page.title(), await other.title()], ['Brevant, an ocarina', 'Brevant, an ocarina']);
        await other.close();
        // The browser takes its time to forget the other page, and until then nothing changes.
        do {
            await page.goto(address);
            // Which may begin anew until then.
            await page.waitForFunction(() => 'brevant' in globalThis);
            await phone.showsPlayScreen(page);
        } while ((await page.title()) !== 'Brevant three');
        assert.equal((await page.evaluate(() => caches.keys())).length, 1, 'nothing of older versions is left');

        // A page that was on its way when its version ended: the worker that it still has keeps no version, or another.
        await page.evaluate(async () => {
            for (const name of await caches.keys()) {
                await caches.open(name.replace(/[^ ]*$/, 'another'));
                await caches.delete(name);
            }
        });
        let loadings = 0;
        page.on('load', () => (loadings += 1));
        await page.goto(address);
        await page.waitForFunction(() => 'brevant' in globalThis);
        assert.equal(loadings, 2, 'it begins anew once, and not for ever');
    } finally {
        await context.close();
        await own.close();
    }
});
