// The built page as Lighthouse sees it, with its own phone: a slow network and a slow processor, both simulated from what
// it finds here. `./dev web --bench` runs it. The status is 1 when a category is below what it must reach.

import { mkdtemp, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import lighthouse from 'lighthouse';
import puppeteer from 'puppeteer-core';
import { serve } from '../../tools/web/serve.mjs';

/** What else the machine does counts against the page, so the middle one of so many runs is taken. */
const RUNS = 5;
const LEAST = 95;
/** Told of the run in the middle. */
const METRICS = [
    'first-contentful-paint',
    'largest-contentful-paint',
    'total-blocking-time',
    'speed-index',
    'cumulative-layout-shift',
];

const server = await serve(new URL('../../build/web', import.meta.url).pathname);
/** @type {import('lighthouse').Result[]} */
const results = [];
for (let run = 0; run < RUNS; ++run) {
    const profile = await mkdtemp(join(tmpdir(), 'brevant-lighthouse-'));
    const browser = await puppeteer.launch({
        executablePath: '/usr/bin/chromium',
        userDataDir: profile,
        // A container has no user namespaces for Chromium's sandbox; the page is our own.
        args: ['--no-sandbox', '--lang=en'],
    });
    try {
        const { port } = new URL(browser.wsEndpoint());
        const result = await lighthouse(server.address, { port: Number(port), logLevel: 'error' });
        if (result === undefined) throw new Error('Lighthouse gives no result');
        if (result.lhr.runtimeError) throw new Error(result.lhr.runtimeError.message);
        results.push(result.lhr);
    } finally {
        await browser.close();
        await rm(profile, { recursive: true, force: true });
    }
}
await server.close();

/** @param {import('lighthouse').Result} result @param {string} category */
const scoreOf = (result, category) => Math.round(100 * (result.categories[category].score ?? 0));
for (const [category, { title }] of Object.entries(results[0].categories)) {
    results.sort((a, b) => scoreOf(a, category) - scoreOf(b, category));
    const scores = results.map((result) => scoreOf(result, category));
    const middle = results[RUNS >> 1];
    console.log(
        `${`Lighthouse: ${title}`.padEnd(58)} ${scoreOf(middle, category)} of 100; of ${RUNS} runs ${scores.join(' ')}`,
    );
    if (scoreOf(middle, category) < LEAST) process.exitCode = 1;
    if (category !== 'performance') continue;
    for (const metric of METRICS) {
        const { title: name, displayValue } = middle.audits[metric];
        console.log(`${`    ${name}`.padEnd(58)} ${displayValue}`);
    }
}
