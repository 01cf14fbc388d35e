// compare-renderings.mjs BUILT RUNS: plays in node and in a page what the native tests have played, and compares. RUNS
// holds a folder for each run, as tests/support/ProgramRun keeps them: its performance, trace, recording, settings and
// arguments. Traces must be the same line for line, recordings within -60 dB of each other.
import { existsSync, readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';

import { openNode, openPage } from './renderers.mjs';

const LARGEST_DIFFERENCE_DB = -60;
const WAV_HEADER_BYTES = 44;
const FULL_SCALE = 32768;
const DATA_FOLDER = 'data';
const MOST_SHOWN = 5;

const [built, runs] = process.argv.slice(2);

/** Of the loudest difference against full scale, or a text that says why they cannot be compared. */
function difference(native, rendered) {
    if (native.length !== rendered.length) return `${rendered.length} bytes instead of ${native.length}`;
    let loudest = 0;
    for (let at = WAV_HEADER_BYTES; at + 1 < native.length; at += 2) {
        loudest = Math.max(loudest, Math.abs(native.readInt16LE(at) - rendered.readInt16LE(at)));
    }
    return loudest === 0 ? -Infinity : 20 * Math.log10(loudest / FULL_SCALE);
}

function firstOtherLine(native, rendered) {
    const [expected, got] = [native.split('\n'), rendered.split('\n')];
    const at = expected.findIndex((line, index) => line !== got[index]);
    if (at < 0) return expected.length === got.length ? undefined : `${got.length} lines, not ${expected.length}`;
    return `line ${at + 1}: ${got[at]}\n      instead of ${expected[at]}`;
}

/** The arguments of a native run as the page takes them, and the files that they name. */
function translate(folder) {
    const given = readFileSync(join(folder, 'arguments'), 'utf8').split('\n').filter(Boolean);
    const options = [];
    const files = new Map();
    for (let at = 0; at < given.length; at += 1) {
        const name = given[at];
        const own = ['--backend', '--data', '--screenshots'].includes(name);
        if (name === '--trace-timers' || name === '--no-microphone') {
            options.push(name);
        } else if (own) {
            at += 1;
        } else {
            at += 1;
            const value = given[at].replace(/^.*\//, '');
            if (name === '--performance' || name === '--breath') files.set(value, readFileSync(join(folder, value)));
            options.push(`${name}=${value}`);
        }
    }
    const data = join(folder, 'data-before');
    if (existsSync(data)) {
        for (const name of readdirSync(data)) files.set(`${DATA_FOLDER}/${name}`, readFileSync(join(data, name)));
    }
    return { options, files };
}

// A refused run has played nothing, and a page has no folder that could stand where the settings should.
const hasFolderForSettings = (name) =>
    existsSync(join(runs, name, 'data-before')) &&
    readdirSync(join(runs, name, 'data-before'), { withFileTypes: true }).some((entry) => !entry.isFile());
const names = readdirSync(runs)
    .filter((name) => readFileSync(join(runs, name, 'status'), 'utf8') === '0' && !hasFolderForSettings(name))
    .sort();

/** Whether all runs are the same there. */
async function compare(where, renderer) {
    let failures = 0;
    let recordings = 0;
    let worst = -Infinity;
    for (const name of names) {
        const folder = join(runs, name);
        const { options, files } = translate(folder);
        const { status, refusal, outputs } = await renderer.render(options, files);
        const problems = [];
        if (status !== 0) problems.push(refusal ? `refused: ${refusal}` : `it ends with ${status}`);
        const trace = Buffer.from(outputs.get('trace.jsonl') ?? []).toString('utf8');
        const other = firstOtherLine(readFileSync(join(folder, 'trace.jsonl'), 'utf8'), trace);
        if (other) problems.push(`trace: ${other}`);
        const recording = join(folder, 'recording.wav');
        if (existsSync(recording)) {
            recordings += 1;
            const level = difference(readFileSync(recording), Buffer.from(outputs.get('recording.wav') ?? []));
            if (typeof level === 'string') problems.push(`recording: ${level}`);
            else worst = Math.max(worst, level);
            if (level > LARGEST_DIFFERENCE_DB) problems.push(`recording: ${level.toFixed(1)} dB apart`);
        }
        if (problems.length === 0) continue;
        failures += 1;
        if (failures <= MOST_SHOWN) console.error(`${name}: ${problems.join('\n   ')}`);
    }
    const same = names.length - failures;
    console.log(
        `renderings in ${where}: ${same} of ${names.length} runs are the same; ${recordings} recordings at most ${worst.toFixed(1)} dB apart`,
    );
    return failures === 0 && recordings > 0;
}

let isSame = true;
for (const [where, open] of [
    ['node', openNode],
    ['a page', openPage],
]) {
    const renderer = await open(built);
    try {
        isSame = (await compare(where, renderer)) && isSame;
    } finally {
        await renderer.close();
    }
}
process.exit(isSame ? 0 : 1);
