// The sound output: a context of Web Audio whose worklet runs the mix. Commands that come before the worklet is up wait
// in their order.

const LEAD_SECONDS = 0.2; // As PortSpeaker::PeriodFrames has it: half of the longest standstill.
const NUMBERS_OF_NEWS = 4;

/**
 * @typedef {object} SpeakerCalls
 * @property {(kind: number, voice: number, clip: number, number: number) => void} onNews
 * @property {() => void} onNewsEnd
 * @property {(frames: Float32Array) => void} onPlayed what the worklet has given out, if it was asked to tell
 * @property {() => void} onLost
 * @property {() => void} onRestored
 */

/**
 * Until the browser's sound is up: a first context would make the page stand still for that, in Chromium for 70 ms, where
 * a question for the devices does not. Soon in any case, since a page that nobody sees may get no answer.
 */
export async function waitForSound() {
    const LONGEST_MS = 300;
    await Promise.race([
        navigator.mediaDevices?.enumerateDevices().catch(() => []),
        new Promise((resolve) => setTimeout(resolve, LONGEST_MS)),
    ]);
}

/**
 * @param {{ mix: ArrayBuffer, workletUrl: string | URL, isHeardBack?: boolean, onFault?: (error: unknown) => void }} parts
 *     `isHeardBack`: what is played comes back, to be recorded
 */
export function createSpeaker({ mix, workletUrl, isHeardBack = false, onFault = () => {} }) {
    /** @type {AudioContext | null} */
    let context = null;
    /** @type {AudioWorkletNode | null} */
    let node = null;
    /** @type {Promise<void> | null} */
    let ready = null;
    /** @type {{ message: object, transfer: Transferable[] }[]} */
    let waiting = [];
    let isHidden = false;
    let isUnlocked = false;
    let isOpen = false;

    /** @param {object} message @param {Transferable[]} [transfer] */
    const post = (message, transfer = []) => {
        if (node) {
            node.port.postMessage(message, transfer);
        } else if (isOpen) {
            waiting.push({ message, transfer });
        }
    };
    const resume = () => {
        // A browser that refuses asks for another touch; the next one tries again.
        if (isUnlocked && !isHidden && context && context.state !== 'running') context.resume().catch(() => {});
    };
    const getContext = () => {
        if (!context && typeof AudioContext !== 'undefined') context = new AudioContext({ latencyHint: 'interactive' });
        return context;
    };
    /** @param {AudioContext} on */
    const loadWorklet = (on) => {
        ready ??= on.audioWorklet.addModule(workletUrl);
        return ready;
    };

    return {
        /** The context and its worklet's modules, which the microphone shares; null where there is no sound. */
        async context() {
            const on = getContext();
            if (on?.audioWorklet) await loadWorklet(on);
            return on?.audioWorklet ? on : null;
        },
        /** The mix's node, for measuring; null until it is up. */
        get node() {
            return node;
        },

        /** @param {SpeakerCalls} calls @returns {number} frames a second, 0 without sound */
        open(calls) {
            const on = getContext();
            if (!on?.audioWorklet) return 0;
            isOpen = true;
            loadWorklet(on)
                .then(() => {
                    if (!isOpen) return;
                    node = new AudioWorkletNode(on, 'brevant-speaker', {
                        numberOfInputs: 0,
                        outputChannelCount: [1],
                        processorOptions: { mix, isHeardBack, periodFrames: Math.floor(on.sampleRate * LEAD_SECONDS) },
                    });
                    node.onprocessorerror = () => calls.onLost();
                    node.port.onmessage = ({ data }) => {
                        if (data instanceof Float32Array) {
                            calls.onPlayed(data);
                            return;
                        }
                        for (let at = 0; at < data.length; at += NUMBERS_OF_NEWS) {
                            calls.onNews(data[at], data[at + 1], data[at + 2], data[at + 3]);
                        }
                        calls.onNewsEnd();
                    };
                    node.connect(on.destination);
                    for (const { message, transfer } of waiting) node.port.postMessage(message, transfer);
                    waiting = [];
                })
                .catch((error) => {
                    onFault(error);
                    calls.onLost();
                });
            resume();
            return on.sampleRate;
        },
        close() {
            isOpen = false;
            waiting = [];
            node?.port.postMessage({ close: true });
            node?.disconnect();
            node = null;
            context?.suspend().catch(() => {});
        },
        /** A clip's shape; its frames follow. */
        clip(
            /** @type {number} */ number,
            /** @type {number} */ length,
            /** @type {number} */ loopStart,
            /** @type {number} */ takes,
            /** @type {number} */ release,
            /** @type {number} */ period,
        ) {
            post({ clip: { number, length, loopStart, takes, release, period } });
        },
        /** @param {number} number @param {number} from the first frame's place in the clip @param {Float32Array} frames */
        frames(number, from, frames) {
            post({ number, from, frames }, [frames.buffer]);
        },
        /** @param {Float64Array} commands */
        send(commands) {
            post({ commands }, [commands.buffer]);
        },
        /** From within the handler of a lifted touch, a click or a key. */
        unlock() {
            isUnlocked = true;
            resume();
        },
        /** @param {boolean} hide nothing sounds from a hidden page */
        hide(hide) {
            isHidden = hide;
            if (hide) context?.suspend().catch(() => {});
            else resume();
        },
        /** No browser counts them. */
        underruns: () => 0,
    };
}

/** @typedef {ReturnType<typeof createSpeaker>} Speaker */
