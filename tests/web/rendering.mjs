// What a page hands to the program for a performance on the virtual clock: files in memory, nothing to see or hear. Texts
// have plausible sizes. It runs in node and in a browser.

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

// What is kept for another visit is read back by nobody.
const FORGETFUL = { getItem: () => null, setItem: () => {} };

/**
 * The built program and what it needs; its package is read, never changed.
 * @typedef {{ createBrevant: (parts: object) => Promise<any>, createStorage: (parts: object) => any,
 *     archive: ArrayBuffer, splash: Uint8Array, wasm: Uint8Array }} Built
 */

/**
 * Runs a performance on the virtual clock.
 * @param {Built} built
 * @param {string[]} options of the program, "--name=value"
 * @param {Map<string, Uint8Array>} files by the names that the options give them
 * @returns {Promise<{ status: number | undefined, refusal: string | undefined, outputs: Map<string, Uint8Array> }>}
 */
export async function render({ createBrevant, createStorage, archive, splash, wasm }, options, files) {
    const storage = createStorage({ archive, settings: FORGETFUL });
    storage.addFile('package/images/intro01.png', splash);
    for (const [name, bytes] of files) storage.addFile(name, bytes);
    const result = { status: undefined, refusal: undefined, outputs: new Map() };
    const program = await createBrevant({
        wasmBinary: wasm,
        printErr: () => {},
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
    program.callMain(['--backend=headless', ...options]);
    result.outputs = storage.outputs;
    return result;
}
