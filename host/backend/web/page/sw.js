// Serves the whole page without a network. One cache holds one version: all of its files or none of them.

// tools/web/stamp.mjs puts the files with their SHA-256 sums here, and the version that follows from them.
const VERSION = '@VERSION@';
/** @type {Record<string, string>} */
const FILES = {};

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
    await cache.put(name, answer);
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
});

self.addEventListener('activate', (event) => {
    event.waitUntil(
        (async () => {
            for (const name of await caches.keys()) {
                if (name.startsWith(PREFIX) && name !== CACHE) await caches.delete(name);
            }
            await self.clients.claim();
        })(),
    );
});

self.addEventListener('message', (event) => {
    if (event.data === 'take over') self.skipWaiting();
});

self.addEventListener('fetch', (event) => {
    const { request } = event;
    if (request.method !== 'GET' || !request.url.startsWith(self.registration.scope)) return;
    event.respondWith(
        (async () => {
            const cache = await caches.open(CACHE);
            // The address's options lead to the same page.
            const kept = await cache.match(request.mode === 'navigate' ? 'index.html' : request, {
                ignoreSearch: true,
            });
            return kept ?? fetch(request);
        })(),
    );
});
