// The page's versions: the service worker keeps one whole version, and a newer one takes its place as a whole.

const RELOADED = 'brevant/reloaded';

/**
 * Whether another version than this page's is kept: it has taken over while this page was on its way. Once a version and
 * session, so that no fault can reload a page for ever.
 */
async function isOfAnotherVersion() {
    const own = document.querySelector('meta[name=version]')?.getAttribute('content');
    if (!own || !navigator.serviceWorker.controller) return false;
    const names = await caches.keys();
    if (names.length === 0 || names.some((name) => name.endsWith(` ${own}`))) return false;
    if (sessionStorage.getItem(RELOADED) === own) return false;
    sessionStorage.setItem(RELOADED, own);
    return true;
}

/**
 * Registers the service worker. A version that was fetched while an earlier page was open takes over now, before the user
 * has done anything, and the page begins anew with it.
 */
export async function useNewestVersion() {
    if (!('serviceWorker' in navigator)) return;
    let isUsed = false;
    for (const name of ['pointerdown', 'keydown']) {
        window.addEventListener(name, () => (isUsed = true), { capture: true, once: true });
    }
    // Also when the earlier page's end lets it take over by itself. A first visit's worker changes nothing on its page.
    if (navigator.serviceWorker.controller !== null) {
        navigator.serviceWorker.addEventListener('controllerchange', () => {
            if (!isUsed) location.reload();
        });
    }
    try {
        if (await isOfAnotherVersion()) {
            if (!isUsed) location.reload();
            return;
        }
        const registration = await navigator.serviceWorker.register(new URL('sw.js', import.meta.url));
        if (!isUsed) registration.waiting?.postMessage('take over');
    } catch (error) {
        // Private windows of some browsers have none. The page then works with the network alone.
        console.info('brevant: nothing is kept for later without a network:', error);
    }
}
