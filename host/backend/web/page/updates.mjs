// The page's versions: the service worker keeps one whole version, and a newer one takes its place as a whole.

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
    try {
        const registration = await navigator.serviceWorker.register(new URL('sw.js', import.meta.url));
        if (registration.waiting === null || isUsed) return;
        navigator.serviceWorker.addEventListener('controllerchange', () => {
            if (!isUsed) location.reload();
        });
        registration.waiting.postMessage('take over');
    } catch (error) {
        // Private windows of some browsers have none. The page then works with the network alone.
        console.info('brevant: nothing is kept for later without a network:', error);
    }
}
