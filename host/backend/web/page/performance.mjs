// What the page's address asks for, and performance files that are dropped on the page.

const DROPPED = 'brevant/dropped';
/** No browser keeps more for a page and session; what is larger need not be read. */
const LARGEST_BYTES = 16 << 20;
// The options of the address; those that name a file to read take one of the page's own folder.
const READ = ['performance', 'breath'];
const WRITTEN = ['trace', 'record', 'keep-performance'];
const PLAIN = ['backend', 'screen', 'language', 'ringtone-volume'];
/** @type {Record<string, string>} */
const OUTPUT_NAMES = { trace: 'trace.jsonl', record: 'recording.wav', 'keep-performance': 'kept.performance' };

/** A name alone: nothing is read from other folders or servers. @param {string} path */
const withoutFolder = (path) => path.replace(/^.*[/\\]/, '');

/**
 * What the address asks for. A performance leaves its trace and its recording to be downloaded.
 * @param {URLSearchParams} query
 * @returns {{ options: string[], files: string[], language: string | null }} `files` are to be fetched
 */
export function readRequest(query) {
    /** @type {string[]} */
    const options = [];
    /** @type {string[]} */
    const files = [];
    for (const name of PLAIN) {
        const value = query.get(name);
        if (value !== null) options.push(`--${name}=${value}`);
    }
    for (const name of READ) {
        const file = withoutFolder(query.get(name) ?? '');
        if (!file) continue;
        files.push(file);
        options.push(`--${name}=${file}`);
    }
    for (const name of WRITTEN) {
        const isImplied = query.has('performance') && name !== 'keep-performance';
        if (query.has(name) || isImplied) options.push(`--${name}=${query.get(name) || OUTPUT_NAMES[name]}`);
    }
    return { options, files, language: query.get('language') };
}

/**
 * The file that was dropped on the page before it was loaded anew, as often as the address still names it.
 * @returns {{ name: string, bytes: Uint8Array } | undefined}
 */
export function findDropped() {
    const wanted = withoutFolder(new URLSearchParams(location.search).get('performance') ?? '');
    try {
        const kept = sessionStorage.getItem(DROPPED);
        if (kept === null) return undefined;
        /** @type {{ name: string, characters: string }} */
        const { name, characters } = JSON.parse(kept);
        if (name === wanted) {
            return { name, bytes: Uint8Array.from(characters, (character) => character.charCodeAt(0)) };
        }
        // Another file is asked for: this one is not mistaken for it.
        sessionStorage.removeItem(DROPPED);
    } catch {
        // A browser that keeps nothing has nothing from before.
    }
    return undefined;
}

/** @param {File} file @returns {Promise<string>} its bytes as characters of the same number: the storage holds texts alone */
async function readCharacters(file) {
    let characters = '';
    for (const byte of new Uint8Array(await file.arrayBuffer())) characters += String.fromCharCode(byte);
    return characters;
}

/**
 * Files that are dropped on the page from now on begin the ocarina anew, as the launcher would with that file.
 * @param {(name: string, problem: 'tooLarge' | 'unreadable') => void} onProblem for a file that cannot be played
 */
export function listenForDrops(onProblem) {
    document.addEventListener('dragover', (event) => event.preventDefault());
    document.addEventListener('drop', async (event) => {
        event.preventDefault();
        const file = event.dataTransfer?.files[0];
        if (file === undefined) return;
        const name = withoutFolder(file.name);
        if (file.size > LARGEST_BYTES) {
            onProblem(name, 'tooLarge');
            return;
        }
        let characters;
        try {
            characters = await readCharacters(file);
        } catch {
            // A folder, or a file that has gone.
            onProblem(name, 'unreadable');
            return;
        }
        try {
            sessionStorage.setItem(DROPPED, JSON.stringify({ name, characters }));
        } catch {
            onProblem(name, 'tooLarge');
            return;
        }
        const query = new URLSearchParams(location.search);
        query.set('performance', name);
        location.search = query.toString();
    });
}
