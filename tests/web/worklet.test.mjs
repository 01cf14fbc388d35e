// What runs in the browser's audio thread, run in node: it takes no memory of the script's where frames are asked for.

import assert from 'node:assert/strict';
import { before, test } from 'node:test';
import { readFile } from 'node:fs/promises';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';
import { setFlagsFromString } from 'node:v8';
import { runInNewContext } from 'node:vm';
import { BUILT } from './page.mjs';

const QUANTUM = 128;
const CALLS = 4000;

/** @typedef {{ port: { onmessage?: (event: { data: object }) => void, posted: number[][] }, process: Function }} Processor */
/** @type {Map<string, new (options?: object) => Processor>} */
const kinds = new Map();
/** Whether what is posted is kept, which takes memory itself. */
let isKept = true;

before(async () => {
    const port = () => ({
        /** @type {number[][]} */
        posted: [],
        /** @param {Float32Array} message */
        postMessage(message) {
            if (isKept) this.posted.push([...message]);
        },
    });
    Object.assign(globalThis, {
        sampleRate: 48000,
        AudioWorkletProcessor: class {
            port = port();
        },
        registerProcessor: kinds.set.bind(kinds),
    });
    await import(pathToFileURL(join(BUILT, 'worklet.mjs')).href);
});

/** @param {string} name @param {object} [options] */
function make(name, options) {
    const Kind = kinds.get(name);
    assert.ok(Kind, `${name} is registered`);
    return new Kind(options);
}

/**
 * The bytes that so many calls take: the least of some measurements, since the engine compiles meanwhile.
 * @param {() => void} call
 */
function bytesTaken(call) {
    setFlagsFromString('--expose_gc');
    const collect = runInNewContext('gc');
    isKept = false;
    let least = Infinity;
    for (let measurement = 0; measurement < 10; ++measurement) {
        collect();
        const begin = process.memoryUsage().heapUsed;
        for (let count = 0; count < CALLS; ++count) call();
        least = Math.min(least, process.memoryUsage().heapUsed - begin);
    }
    isKept = true;
    return least;
}

test('the microphone hands its frames on in order, together, and takes no memory', () => {
    const microphone = make('brevant-microphone');
    const channel = new Float32Array(QUANTUM);
    const inputs = [[channel]];
    for (let quantum = 0; quantum < 60; ++quantum) {
        for (let at = 0; at < QUANTUM; ++at) channel[at] = quantum * QUANTUM + at;
        assert.equal(microphone.process(inputs), true);
    }
    assert.deepEqual(
        microphone.port.posted.flat(),
        Array.from({ length: 60 * QUANTUM }, (_, at) => at),
    );
    assert.equal(microphone.port.posted.length, 8, '20 ms at once');
    assert.equal(microphone.process([[]]), true, 'without a source it goes on');
    assert.ok(bytesTaken(() => microphone.process(inputs)) < CALLS);
});

test('the speaker plays a clip, tells of its end, and takes no memory', async () => {
    const file = await readFile(join(BUILT, 'mix.wasm'));
    const mix = file.buffer.slice(file.byteOffset, file.byteOffset + file.length);
    const speaker = make('brevant-speaker', { processorOptions: { mix, periodFrames: QUANTUM } });
    /** @param {object} data */
    const send = (data) => speaker.port.onmessage?.({ data });
    const outputs = [[new Float32Array(QUANTUM)]];
    const LENGTH = 4800;
    send({ clip: { number: 0, length: LENGTH, loopStart: 0, takes: 1, release: 0, period: 0 } });
    send({ number: 0, from: 0, frames: new Float32Array(LENGTH).fill(0.25) });
    // Commands of MixMessages.h, each a kind, voice, clip, number and gain.
    const [START, GRANT_REPEAT, CLIP_READY] = [0, 3, 5];
    send({ commands: Float64Array.of(CLIP_READY, 0, 0, LENGTH, 0) });
    send({ commands: Float64Array.of(START, 7, 0, 0, 1) });
    for (let quantum = 0; quantum < 3; ++quantum) speaker.process([], outputs);
    assert.ok(Math.abs(outputs[0][0][QUANTUM - 1] - 0.25) < 0.001, `it plays: ${outputs[0][0][QUANTUM - 1]}`);
    for (let quantum = 0; quantum < 100; ++quantum) speaker.process([], outputs);
    const told = speaker.port.posted;
    assert.ok(told.length > 0 && told.every((piece) => piece.length === 4 && piece[1] === 7), JSON.stringify(told));
    assert.equal(outputs[0][0][QUANTUM - 1], 0, 'and has ended');
    // A clip as long as a call has an end in each, of which there is news.
    send({ clip: { number: 1, length: QUANTUM, loopStart: 0, takes: 1, release: 0, period: 0 } });
    send({ number: 1, from: 0, frames: new Float32Array(QUANTUM).fill(0.25) });
    send({ commands: Float64Array.of(CLIP_READY, 0, 1, QUANTUM, 0, START, 8, 1, 0, 1) });
    const grants = new Float64Array(20 * CALLS * 5);
    for (let at = 0; at < grants.length; at += 5) grants.set([GRANT_REPEAT, 8, 1], at);
    send({ commands: grants });
    told.length = 0;
    for (let quantum = 0; quantum < 100; ++quantum) speaker.process([], outputs);
    assert.ok(told.length >= 99, `there is news: ${told.length}`);
    assert.ok(bytesTaken(() => speaker.process([], outputs)) < CALLS);
    for (let quantum = 0; quantum < 100; ++quantum) speaker.process([], outputs);
    assert.ok(told.length >= 199, 'up to the end');
});
