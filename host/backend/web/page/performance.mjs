// What the page's address asks for, and performance files that are dropped on the page.

const DROPPED = 'brevant/dropped';
// The options of the address; those that name a file to read take one of the page's own folder.
const READ = ['performance', 'breath'];
const WRITTEN = ['trace', 'record', 'keep-performance'];
const PLAIN = ['backend', 'screen', 'language', 'ringtone-volume'];
/** @type {Record<string, string>} */
const OUTPUT_NAMES = { trace: 'trace.jsonl', record: 'recording.wav', 'keep-performance': 'kept.performance' };

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
        // A name alone: nothing is read from other folders or servers.
        const file = query.get(name)?.replace(/^.*[/\\]/, '');
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
 * The file that was dropped on the page before it was loaded anew, once.
 * @returns {{ name: string, bytes: Uint8Array } | undefined}
 */
export function takeDropped() {
    const name = new URLSearchParams(location.search).get('performance');
    try {
        const text = sessionStorage.getItem(DROPPED);
        if (text === null || name === null) return undefined;
        return { name, bytes: new TextEncoder().encode(text) };
    } catch {
        return undefined;
    }
}

document.addEventListener('dragover', (event) => event.preventDefault());
document.addEventListener('drop', async (event) => {
    event.preventDefault();
    const file = event.dataTransfer?.files[0];
    if (file === undefined) return;
    const text = await file.text();
    try {
        sessionStorage.setItem(DROPPED, text);
    } catch (error) {
        console.error(`brevant: ${file.name} is too large for this browser to keep:`, error);
        return;
    }
    // The ocarina begins anew, as the launcher would with that file.
    const query = new URLSearchParams(location.search);
    query.set('performance', file.name);
    location.search = query.toString();
});
