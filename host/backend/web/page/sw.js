// Serves the whole page without a network. One cache holds one version: all of its files or none of them. A page asks for
// nothing before it and this worker agree on the version (start.js), and from then on no other version can take over.

// tools/web/stamp.mjs puts the files with their SHA-256 sums here, and the version that follows from them.
const VERSION = '@VERSION@';
/** @type {Record<string, string>} */
const FILES = {};

const INDEX = 'index.html';
const PREFIX = `brevant ${self.registration.scope} `;
const CACHE = PREFIX + VERSION;

/** @param {ArrayBuffer} bytes */
async function sumOf(bytes) {
    const sum = await crypto.subtle.digest('SHA-256', bytes);
    return [...new Uint8Array(sum)].map((byte) => byte.toString(16).padStart(2, '0')).join('');
}

/** @param {Cache} cache @param {string} name */
async function keep(cache, name) {
    const answer = await fetch(new Request(name, { cache: 'no-cache' }));
    if (!answer.ok) throw new Error(`${name}: the server says ${answer.status}`);
    // A server in the middle of an update has files of two versions.
    const sum = await sumOf(await answer.clone().arrayBuffer());
    if (sum !== FILES[name]) throw new Error(`${name} is of another version`);
    // A page must not come from an answer that was redirected, as a server may do that leaves "index.html" out.
    const file = answer.redirected ? new Response(await answer.blob(), { headers: answer.headers }) : answer;
    if (name === INDEX) await cache.put('./', file.clone());
    await cache.put(name, file);
}

self.addEventListener('install', (event) => {
    event.waitUntil(
        (async () => {
            const cache = await caches.open(CACHE);
            try {
                await Promise.all(Object.keys(FILES).map((name) => keep(cache, name)));
            } catch (error) {
                await caches.delete(CACHE);
                throw error;
            }
        })(),
    );
    // A browser that can takes the files out of the cache by itself, and no page waits until this worker is up. Addresses
    // with options come to the worker as before. What is not in the cache comes from the network.
    event.addRoutes?.({ condition: { urlPattern: new URLPattern({ search: '' }) }, source: { cacheName: CACHE } });
});

self.addEventListener('activate', (event) => {
    event.waitUntil(
        (async () => {
            for (const name of await caches.keys()) {
                if (name.startsWith(PREFIX) && name !== CACHE) await caches.delete(name);
            }
        })(),
    );
});

/** What a page that this worker serves gets: this version, unless another one, or the browser for lack of room, has ended it. */
async function keptVersion() {
    const kept = (await caches.keys()).filter((name) => name.startsWith(PREFIX));
    return kept.includes(CACHE) ? VERSION : (kept[0]?.slice(PREFIX.length) ?? null);
}

/** No other page of the ocarina's is open, which could be on its way and get files of two versions. */
async function hasOnePage() {
    const WAITS = 5;
    const WAIT_MS = 100;
    // A page that has just been left is counted for a moment.
    for (let wait = 0; wait <= WAITS; ++wait) {
        if (wait > 0) await new Promise((resolve) => setTimeout(resolve, WAIT_MS));
        const pages = await self.clients.matchAll({ type: 'window', includeUncontrolled: true });
        if (pages.filter(({ url }) => url.startsWith(self.registration.scope)).length <= 1) return true;
    }
    return false;
}

self.addEventListener('message', (event) => {
    const [port] = event.ports;
    event.waitUntil(
        (async () => {
            if (event.data === 'version') port.postMessage(await keptVersion());
            if (event.data !== 'take over') return;
            const isTaking = await hasOnePage();
            port.postMessage(isTaking);
            if (isTaking) await self.skipWaiting();
        })(),
    );
});

/** @type {Cache | null} */
let opened = null;
/** The cache stays open from the first request on: it answers all of them, even when its name has gone meanwhile. */
async function openKept() {
    // Opening one that is not there would make an empty one.
    if (opened === null && (await caches.has(CACHE))) opened = await caches.open(CACHE);
    return opened;
}

self.addEventListener('fetch', (event) => {
    const { request } = event;
    if (request.method !== 'GET' || !request.url.startsWith(self.registration.scope)) return;
    event.respondWith(
        (async () => {
            const cache = await openKept();
            // The address's options lead to the same page.
            const kept = await cache?.match(request.mode === 'navigate' ? INDEX : request, {
                ignoreSearch: true,
            });
            return kept ?? fetch(request);
        })(),
    );
});
