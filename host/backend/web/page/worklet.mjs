// What runs where the browser asks for frames. The speaker's processor runs the mix, a WebAssembly module of its own; the
// microphone's hands on what it hears. Neither makes anything new in process(), which would bring the collector of garbage
// into the sound: what a port sends is copied by the browser, outside of the script's own memory.
/* global AudioWorkletProcessor, registerProcessor, sampleRate */

const NUMBERS_OF_COMMAND = 5;
const NUMBERS_OF_NEWS = 4;
const MOST_NEWS = 256;

// Frames that a port hands on together: what the ocarina hears at once, so that the page wakes seldom, and never in vain.
const TOGETHER_SECONDS = 0.02;

class Gathering {
    constructor(port) {
        this.port = port;
        this.frames = new Float32Array(Math.round(sampleRate * TOGETHER_SECONDS));
        this.count = 0;
    }

    add(channel) {
        for (let at = 0; at < channel.length; ++at) {
            this.frames[this.count++] = channel[at];
            if (this.count === this.frames.length) {
                this.port.postMessage(this.frames);
                this.count = 0;
            }
        }
    }
}

class SpeakerProcessor extends AudioWorkletProcessor {
    constructor(options) {
        super();
        const { mix, isHeardBack, periodFrames } = options.processorOptions;
        this.played = isHeardBack ? new Gathering(this.port) : null;
        const nothing = () => 0;
        const imports = {
            env: { emscripten_notify_memory_growth: nothing },
            wasi_snapshot_preview1: { proc_exit: nothing, fd_write: nothing, fd_close: nothing, fd_seek: nothing },
        };
        this.mix = new WebAssembly.Instance(new WebAssembly.Module(mix), imports).exports;
        this.mix._initialize?.();
        this.mix.mix_prepare(sampleRate, periodFrames);
        this.rooms = new Map();
        // Not a view of the module's memory, of which the port would copy all.
        this.piece = new Float64Array(NUMBERS_OF_NEWS);
        this.isOver = false;
        this.quantum = 128; // frames that the browser asks for at once: of today's browsers
        this.seeMemory();
        this.port.onmessage = (event) => this.take(event.data);
    }

    // Views of the module's memory, which are void once it has grown; it grows in messages alone.
    seeMemory() {
        const { memory } = this.mix;
        this.frames = new Float32Array(memory.buffer, this.mix.mix_frames(), this.quantum);
        this.news = new Float64Array(memory.buffer, this.mix.mix_news(), MOST_NEWS * NUMBERS_OF_NEWS);
        this.memory = memory.buffer;
    }

    take(message) {
        if (message.commands) {
            const { commands } = message;
            for (let at = 0; at < commands.length; at += NUMBERS_OF_COMMAND) {
                this.mix.mix_obey(commands[at], commands[at + 1], commands[at + 2], commands[at + 3], commands[at + 4]);
            }
        } else if (message.clip) {
            const { number, length, loopStart, takes, release, period } = message.clip;
            this.rooms.set(number, this.mix.mix_room(number, length, loopStart, takes, release, period));
        } else if (message.frames) {
            const place = this.rooms.get(message.number) / Float32Array.BYTES_PER_ELEMENT + message.from;
            new Float32Array(this.mix.memory.buffer).set(message.frames, place);
        } else if (message.close) {
            this.isOver = true;
        }
        if (this.memory !== this.mix.memory.buffer) this.seeMemory();
    }

    process(inputs, outputs) {
        const channel = outputs[0][0];
        if (channel.length !== this.quantum) {
            this.quantum = channel.length;
            this.seeMemory();
        }
        this.mix.mix_render(channel.length);
        channel.set(this.frames);
        this.played?.add(channel);
        const count = this.mix.mix_take_news();
        for (let at = 0; at < count * NUMBERS_OF_NEWS; ++at) {
            this.piece[at % NUMBERS_OF_NEWS] = this.news[at];
            if (at % NUMBERS_OF_NEWS === NUMBERS_OF_NEWS - 1) this.port.postMessage(this.piece);
        }
        return !this.isOver;
    }
}

class MicrophoneProcessor extends AudioWorkletProcessor {
    constructor() {
        super();
        this.heard = new Gathering(this.port);
        this.isOver = false;
        this.port.onmessage = () => {
            this.isOver = true;
        };
    }

    process(inputs) {
        const channel = inputs[0][0];
        if (channel !== undefined) this.heard.add(channel);
        return !this.isOver;
    }
}

registerProcessor('brevant-speaker', SpeakerProcessor);
registerProcessor('brevant-microphone', MicrophoneProcessor);
