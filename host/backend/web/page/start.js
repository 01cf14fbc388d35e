// Asks for the page's modules. The build puts this into the page's end: nothing else of the page has been asked for by
// then but the splash's picture, which all else would hold up.

{
    const PARTS = [
        ['link', { rel: 'modulepreload', href: 'brevant.mjs' }],
        ['link', { rel: 'preload', href: 'brevant.wasm', as: 'fetch', crossOrigin: '' }],
        ['link', { rel: 'preload', href: 'package.bin', as: 'fetch', crossOrigin: '' }],
        ['script', { type: 'module', src: 'main.mjs' }],
    ];
    const RELOADED = 'brevant/reloaded';
    const LONGEST_ANSWER_MS = 1000;
    const LONGEST_PAINTING_MS = 300;

    /** @param {ServiceWorker} worker @param {string} question @returns {Promise<unknown>} undefined without an answer */
    const ask = (worker, question) =>
        new Promise((resolve) => {
            const { port1, port2 } = new MessageChannel();
            port1.onmessage = ({ data }) => resolve(data);
            worker.postMessage(question, [port2]);
            setTimeout(resolve, LONGEST_ANSWER_MS);
        });

    /**
     * Whether all that the page asks for from now on is of the version that the page itself is of. If not, the next
     * loading of the page is.
     */
    const isOfOneVersion = async () => {
        const worker = navigator.serviceWorker?.controller;
        // On a first visit the page comes from the network.
        if (!worker) return true;
        const isTakenOver = new Promise((resolve) => {
            navigator.serviceWorker.addEventListener('controllerchange', resolve, { once: true });
        });
        const waiting = (await navigator.serviceWorker.getRegistration())?.waiting;
        if (waiting && (await ask(waiting, 'take over')) === true) {
            await Promise.race([isTakenOver, new Promise((resolve) => setTimeout(resolve, LONGEST_ANSWER_MS))]);
            return false;
        }
        const own = document.querySelector('meta[name=version]')?.getAttribute('content') ?? '';
        const kept = await ask(worker, 'version');
        // A worker of which nothing is kept any more hands all to the network.
        if (kept == null || kept === own) return true;
        // Once a version and session, so that no fault can reload a page for ever.
        if (sessionStorage.getItem(RELOADED) === own) return true;
        sessionStorage.setItem(RELOADED, own);
        return false;
    };

    const splash = /** @type {HTMLImageElement} */ (document.getElementById('splash'));
    const isPainted = new Promise((resolve) => {
        const paint = () => {
            requestAnimationFrame(() => setTimeout(resolve));
            // A page that nobody sees paints nothing.
            setTimeout(resolve, document.hidden ? 0 : LONGEST_PAINTING_MS);
        };
        if (splash.complete) {
            paint();
        } else {
            splash.addEventListener('load', paint);
            splash.addEventListener('error', paint);
        }
    });
    const isWhole = isOfOneVersion().catch(() => true); // Some private windows have no session to keep anything in.
    Promise.all([isWhole, isPainted]).then(([isWholeNow]) => {
        if (!isWholeNow) {
            location.reload();
            return;
        }
        for (const [tag, is] of PARTS) document.head.append(Object.assign(document.createElement(`${tag}`), is));
    });
}
