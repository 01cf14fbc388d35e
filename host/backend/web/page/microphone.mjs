// The microphone: asked for raw, heard by a worklet node. A lost one is looked for whenever the machine's devices change.

/**
 * @typedef {object} MicrophoneCalls
 * @property {(rate: number) => void} onOpened
 * @property {() => void} onLost
 * @property {(frames: Float32Array) => void} onHeard
 */

const RAW = { echoCancellation: false, noiseSuppression: false, autoGainControl: false, channelCount: 1 };

/** @param {import('./speaker.mjs').Speaker} speaker whose context hears, too: browsers convert between no two rates */
export function createMicrophone(speaker) {
    /** @type {MicrophoneCalls | null} */
    let calls = null;
    /** @type {MediaStream | null} */
    let stream = null;
    /** @type {AudioNode[]} */
    let nodes = [];
    let attempt = 0;

    const release = () => {
        attempt += 1;
        for (const node of nodes) {
            node.disconnect();
            if (node instanceof AudioWorkletNode) node.port.postMessage('close');
        }
        nodes = [];
        for (const track of stream?.getTracks() ?? []) track.stop();
        stream = null;
    };
    const lose = () => {
        release();
        calls?.onLost();
    };
    const open = async () => {
        release();
        const own = attempt;
        try {
            const context = await speaker.context();
            if (!context) throw new Error('there is no audio worklet');
            const got = await navigator.mediaDevices.getUserMedia({ audio: RAW });
            if (own !== attempt) {
                for (const track of got.getTracks()) track.stop();
                return;
            }
            stream = got;
            const [track] = got.getAudioTracks();
            track.onended = () => own === attempt && lose();
            const source = context.createMediaStreamSource(got);
            const hearing = new AudioWorkletNode(context, 'brevant-microphone', { numberOfOutputs: 0 });
            hearing.port.onmessage = ({ data }) => own === attempt && calls?.onHeard(data);
            source.connect(hearing);
            nodes = [source, hearing];
            calls?.onOpened(context.sampleRate);
        } catch {
            // Refused, missing or taken: the program tells it, and the next device that appears is tried.
            if (own === attempt) lose();
        }
    };
    globalThis.navigator?.mediaDevices?.addEventListener('devicechange', () => {
        if (calls && !stream) open();
    });

    return {
        /** @param {MicrophoneCalls} given */
        start(given) {
            calls = given;
            open();
        },
        stop() {
            calls = null;
            release();
        },
    };
}
