// Calls the program again when it asked to be called. One wish at a time: a new one takes the place of the one before.

/** Less than this makes no other time of it. */
const SAME_MS = 0.5;

export function createLoop() {
    let wish = 0;
    /** When the timer comes, in ms of the page. */
    let due = 0;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    let timer;
    /** @type {() => void} */
    let tick = () => {};
    // A message comes at once, where a browser puts a timeout off for 4 ms when it was set by a timeout.
    const channel = new MessageChannel();
    channel.port1.onmessage = (event) => {
        if (event.data === wish) tick();
    };
    const onTimer = () => {
        timer = undefined;
        tick();
    };

    return {
        /** @param {number} delay milliseconds; negative: never @param {() => void} call */
        schedule(delay, call) {
            tick = call;
            wish += 1;
            const time = performance.now() + delay;
            // Most steps are for what comes between two ticks, and ask for the same tick again.
            if (delay > 0 && timer !== undefined && Math.abs(time - due) < SAME_MS) return;
            clearTimeout(timer);
            timer = undefined;
            if (delay < 0) return;
            if (delay === 0) {
                channel.port2.postMessage(wish);
            } else {
                due = time;
                // Browsers cut the fraction off, and the call would come before there is anything to do.
                timer = setTimeout(onTimer, Math.ceil(delay));
            }
        },
    };
}
