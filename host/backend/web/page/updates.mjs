// The page's versions: the service worker keeps one whole version. A newer one is fetched meanwhile and takes its place
// when the page is next loaded (start.js).

/** Registers the service worker, which keeps the page for visits without a network. */
export async function keepForLater() {
    if (!('serviceWorker' in navigator)) return;
    try {
        await navigator.serviceWorker.register(new URL('sw.js', import.meta.url));
    } catch (error) {
        // Private windows of some browsers have none. The page then works with the network alone.
        console.info('brevant: nothing is kept for later without a network:', error);
    }
}
