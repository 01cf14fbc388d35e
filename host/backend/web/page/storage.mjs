// The files of WebStorage: the package's from one archive, the settings in the browser's own storage, all others in
// memory.

const LENGTH_BYTES = 4;
const SETTINGS_FOLDER = 'data/';
const PACKAGE_FOLDER = 'package/';
const PICTURES_FOLDER = 'package/images/';
const KEY = 'brevant/';

/** @param {ArrayBuffer} archive as tools/web/make-archive.mjs makes it */
function readArchive(archive) {
    const head = new DataView(archive).getUint32(0, true);
    const table = JSON.parse(new TextDecoder().decode(new Uint8Array(archive, LENGTH_BYTES, head)));
    /** @type {Map<string, Uint8Array>} */
    const files = new Map();
    for (const [path, [place, length]] of Object.entries(table)) {
        files.set(PACKAGE_FOLDER + path, new Uint8Array(archive, LENGTH_BYTES + head + place, length));
    }
    return files;
}

/**
 * @param {{ archive: ArrayBuffer, settings: Storage | null, onKept?: () => void, onFull?: () => void }} parts `settings` is
 *     null where the browser keeps nothing: what is written then lasts as long as the page. `onKept`: settings have been
 *     written. `onFull`: the browser has no room for them, told once.
 */
export function createStorage({ archive, settings, onKept = () => {}, onFull = () => {} }) {
    const files = readArchive(archive);
    /** @type {Map<string, { bytes: Uint8Array, length: number }>} */
    const written = new Map();
    let isLossTold = false;

    // The bytes as characters of the same number, for the browser's storage holds texts.
    /** @param {string} path @returns {Uint8Array | undefined} */
    const readSettings = (path) => {
        let text = null;
        try {
            text = settings?.getItem(KEY + path) ?? null;
        } catch {
            // A browser that has taken the storage away: as if there were none.
        }
        return text === null ? undefined : Uint8Array.from(text, (character) => character.charCodeAt(0));
    };
    /** @param {string} path */
    const find = (path) => {
        const output = written.get(path);
        if (output) return output.bytes.subarray(0, output.length);
        const kept = path.startsWith(SETTINGS_FOLDER) ? readSettings(path) : undefined;
        return kept ?? files.get(path);
    };

    return {
        /** @param {string} path @returns {number} negative when there is no such file */
        size: (path) => find(path)?.length ?? -1,
        /** @param {string} path @returns {Uint8Array} */
        read: (path) => find(path) ?? new Uint8Array(),
        /** @param {string} folder with a separator at its end or not @returns {string[]} the files directly in it */
        list(folder) {
            const start = folder.endsWith('/') ? folder : `${folder}/`;
            return [...files.keys()]
                .filter((path) => path.startsWith(start))
                .map((path) => path.slice(start.length))
                .filter((name) => !name.includes('/'));
        },
        /** The package's pictures, as painter.mjs prepares them. @returns {Uint8Array[]} */
        pictures: () => [...files].filter(([path]) => path.startsWith(PICTURES_FOLDER)).map(([, bytes]) => bytes),
        /** Makes the file empty, for write() to fill. @param {string} path */
        create(path) {
            written.set(path, { bytes: new Uint8Array(), length: 0 });
        },
        /** @param {string} path of a file that create() made @param {number} offset @param {Uint8Array} bytes @returns {boolean} */
        write(path, offset, bytes) {
            const output = written.get(path);
            if (!output) return false;
            const end = offset + bytes.length;
            if (end > output.bytes.length) {
                const larger = new Uint8Array(Math.max(end, output.bytes.length * 2));
                larger.set(output.bytes.subarray(0, output.length));
                output.bytes = larger;
            }
            output.bytes.set(bytes, offset);
            output.length = Math.max(output.length, end);
            return true;
        },
        /** @param {string} path @param {Uint8Array} bytes @returns {boolean} false when the browser has no room for it */
        replace(path, bytes) {
            if (settings === null && !isLossTold) {
                isLossTold = true;
                console.warn('brevant: this browser keeps nothing for the page; settings last until it is closed');
            }
            let text = '';
            for (const byte of bytes) text += String.fromCharCode(byte);
            try {
                settings?.setItem(KEY + path, text);
            } catch {
                if (!isLossTold) onFull();
                isLossTold = true;
                return false;
            }
            files.set(path, bytes);
            if (settings !== null) onKept();
            return true;
        },

        /** @param {string} path @param {Uint8Array} bytes a file that the user gives */
        addFile(path, bytes) {
            files.set(path, bytes);
        },
        /** What the program has written, by name. @returns {Map<string, Uint8Array>} */
        get outputs() {
            return new Map([...written].map(([path, output]) => [path, output.bytes.subarray(0, output.length)]));
        },
    };
}
