// What runs where the browser asks for frames. The speaker's processor runs the mix, a WebAssembly module of its own. It
// makes nothing new while it plays; only news of ends and of voices that are done are copied by the port. The
// microphone's processor hands on what it hears.
/* global AudioWorkletProcessor, registerProcessor, sampleRate */

const NUMBERS_OF_COMMAND = 5;
const NUMBERS_OF_NEWS = 4;
const MOST_NEWS = 256;

class SpeakerProcessor extends AudioWorkletProcessor {
    constructor(options) {
        super();
        const { mix, periodFrames } = options.processorOptions;
        const nothing = () => 0;
        const imports = {
            env: { emscripten_notify_memory_growth: nothing },
            wasi_snapshot_preview1: { proc_exit: nothing, fd_write: nothing, fd_close: nothing, fd_seek: nothing },
        };
        this.mix = new WebAssembly.Instance(new WebAssembly.Module(mix), imports).exports;
        this.mix._initialize?.();
        this.mix.mix_prepare(sampleRate, periodFrames);
        this.rooms = new Map();
        this.isOver = false;
        this.seeMemory();
        this.port.onmessage = (event) => this.take(event.data);
    }

    // Views of the module's memory, which are void once it has grown; it grows in messages alone.
    seeMemory() {
        const { memory } = this.mix;
        this.frames = new Float32Array(memory.buffer, this.mix.mix_frames(), 128);
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
        this.mix.mix_render(channel.length);
        channel.set(this.frames);
        const count = this.mix.mix_take_news();
        if (count > 0) this.port.postMessage(this.news.slice(0, count * NUMBERS_OF_NEWS));
        return !this.isOver;
    }
}

class MicrophoneProcessor extends AudioWorkletProcessor {
    constructor() {
        super();
        this.isOver = false;
        this.port.onmessage = () => {
            this.isOver = true;
        };
    }

    process(inputs) {
        const [channel] = inputs[0];
        if (channel) this.port.postMessage(channel);
        return !this.isOver;
    }
}

registerProcessor('brevant-speaker', SpeakerProcessor);
registerProcessor('brevant-microphone', MicrophoneProcessor);
