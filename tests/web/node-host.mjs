// What a page hands to the program, for node: files in memory, nothing to see or hear. Texts have plausible sizes.
import { readFileSync } from 'node:fs';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';

// Of Noto Sans, in parts of the em square: from its table hhea, and the mean width of English letters.
const ASCENT = 1.069;
const DESCENT = 0.293;
const MEAN_WIDTH = 0.55;

function createBlindPainter() {
    const nothing = () => {};
    return {
        createSurface: nothing,
        destroySurface: nothing,
        clip: nothing,
        unclip: nothing,
        clear: nothing,
        shape: nothing,
        gradient: nothing,
        drawPicture: nothing,
        drawText: nothing,
        compose: nothing,
        read: (surface, x, y, width, height) => new Uint8Array(width * height * 4),
        createPicture: nothing,
        takePicture: () => true,
        destroyPicture: nothing,
        textWidth: (text, size) => [...text].length * size * MEAN_WIDTH,
        textHeights: (size) => [size * ASCENT, size * DESCENT],
        setLanguage: nothing,
    };
}

/**
 * Runs a performance on the virtual clock.
 * @param {string} built the folder build/web
 * @param {string[]} options of the program, "--name=value"
 * @param {Map<string, Uint8Array>} files by the names that the options give them
 * @returns {Promise<{ status: number | undefined, refusal: string | undefined, errors: string[], outputs: Map<string, Uint8Array> }>}
 */
export async function render(built, options, files) {
    const { createStorage } = await import(pathToFileURL(join(built, 'storage.mjs')).href);
    const { default: createBrevant } = await import(pathToFileURL(join(built, 'brevant.mjs')).href);
    const archive = readFileSync(join(built, 'package.bin'));
    const storage = createStorage({
        archive: archive.buffer.slice(archive.byteOffset, archive.byteOffset + archive.length),
        settings: null,
    });
    storage.addFile('package/images/intro01.png', readFileSync(join(built, 'splash.webp')));
    for (const [name, bytes] of files) storage.addFile(name, bytes);
    const result = { status: undefined, refusal: undefined, errors: [], outputs: new Map() };
    await createBrevant({
        wasmBinary: readFileSync(join(built, 'brevant.wasm')),
        arguments: ['--backend=headless', ...options],
        printErr: (line) => result.errors.push(line),
        host: {
            window: {
                canvas: { width: 0, height: 0 },
                ended: (status) => {
                    result.status = status;
                },
                refused: (reason) => {
                    result.refusal = reason;
                },
            },
            painter: createBlindPainter(),
            storage,
        },
    });
    result.outputs = storage.outputs;
    return result;
}
