// Calls the program again when it asked to be called. One wish at a time: a new one takes the place of the one before.

export function createLoop() {
    let wish = 0;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    let timer;
    /** @type {() => void} */
    let tick = () => {};
    // A message comes at once, where a browser puts a timeout off for 4 ms when it was set by a timeout.
    const channel = new MessageChannel();
    channel.port1.onmessage = (event) => {
        if (event.data === wish) tick();
    };

    return {
        /** @param {number} delay milliseconds; negative: never @param {() => void} call */
        schedule(delay, call) {
            tick = call;
            wish += 1;
            clearTimeout(timer);
            if (delay < 0) return;
            if (delay === 0) {
                channel.port2.postMessage(wish);
            } else {
                timer = setTimeout(tick, delay);
            }
        },
    };
}
