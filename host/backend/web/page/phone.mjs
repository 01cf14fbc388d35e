// What a phone is beside its screen: the Back key, the foreground and the background, a screen that stays awake.

/**
 * The browser's Back becomes the phone's Back key. An entry of the page's own lies over the one that it was opened with;
 * going back takes that entry away, and a new one takes its place as long as the ocarina runs.
 * Browsers pass over entries that were added before the user did something, so the first is added at a gesture.
 */
export class BackKey {
    #isArmed = false;
    #hasEnded = false;

    /** @param {() => void} onBack may end the ocarina, which then calls end() */
    constructor(onBack) {
        window.addEventListener('popstate', () => {
            if (!this.#isArmed || this.#hasEnded) return;
            this.#isArmed = false;
            onBack();
            this.arm();
        });
    }

    /** Any number of times. */
    arm() {
        if (this.#isArmed || this.#hasEnded) return;
        this.#isArmed = true;
        history.pushState({ brevant: 'open' }, '');
    }

    /** From here on Back leaves the page. */
    end() {
        this.#hasEnded = true;
    }
}

/**
 * Tells of every change between the foreground and the background: of tabs, of other applications, of pages that the
 * browser freezes or keeps for Back and Forward.
 * @param {(isVisible: boolean) => void} onChange
 */
export function watchVisibility(onChange) {
    const tell = () => onChange(document.visibilityState === 'visible');
    document.addEventListener('visibilitychange', tell);
    document.addEventListener('freeze', () => onChange(false));
    document.addEventListener('resume', tell);
    window.addEventListener('pagehide', () => onChange(false));
    window.addEventListener('pageshow', tell);
    tell();
}

/** So long after the last sign of use the screen may sleep again. */
const STAYS_AWAKE_MS = 10_000;

/** Keeps the screen awake while somebody plays. Where the browser cannot, nothing happens. */
export class ScreenLock {
    /** @type {WakeLockSentinel | null} */
    #lock = null;
    #isWanted = false;
    #isAsking = false;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    #timer;

    constructor() {
        // The browser takes the lock away when the page is hidden.
        document.addEventListener('visibilitychange', () => this.#apply());
    }

    /** @param {boolean} isPlaying whether a tone sounds or breath comes */
    setPlaying(isPlaying) {
        clearTimeout(this.#timer);
        if (isPlaying) {
            this.#isWanted = true;
            this.#apply();
        } else if (this.#isWanted) {
            this.#timer = setTimeout(() => {
                this.#isWanted = false;
                this.#apply();
            }, STAYS_AWAKE_MS);
        }
    }

    async #apply() {
        if (!('wakeLock' in navigator) || this.#isAsking) return;
        if (!this.#isWanted) {
            const lock = this.#lock;
            // Before anything is awaited: a tone that begins meanwhile asks for a lock of its own.
            this.#lock = null;
            await lock?.release();
        } else if ((this.#lock === null || this.#lock.released) && document.visibilityState === 'visible') {
            this.#isAsking = true;
            // Refused where the battery is low, which is the user's own choice.
            this.#lock = await navigator.wakeLock.request('screen').catch(() => null);
            this.#isAsking = false;
            if (!this.#isWanted) this.#apply();
        }
    }
}

/** A player for whom nothing has sounded for so long rests. */
const RESTS_AFTER_MS = 3000;

/**
 * Asks the browser once a visit to keep the page's settings when it clears up. Local storage goes with all else that a site
 * keeps: WHATWG, "Storage", section "Persistence". Firefox puts the question to its user, so it comes after the user has
 * changed something, and never between two tones.
 */
export class KeptForGood {
    #isWanted = false;
    #isPlaying = false;
    #isAsked = false;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    #timer;

    /** What the user does has changed the settings. */
    written() {
        this.#isWanted = true;
        this.#wait();
    }

    /** @param {boolean} isPlaying whether a tone sounds */
    setPlaying(isPlaying) {
        this.#isPlaying = isPlaying;
        this.#wait();
    }

    #wait() {
        clearTimeout(this.#timer);
        if (!this.#isWanted || this.#isPlaying || this.#isAsked) return;
        this.#timer = setTimeout(() => this.#ask(), RESTS_AFTER_MS);
    }

    async #ask() {
        this.#isAsked = true;
        try {
            if (!(await navigator.storage.persisted())) await navigator.storage.persist();
        } catch {
            // A browser that offers nothing better than what it does.
        }
    }
}

// The kinds of MixMessages that begin and end a voice, and the numbers of one command.
const COMMAND_START = 0;
const NEWS_DONE = 1;
const NUMBERS_OF_COMMAND = 5;

/**
 * Tells when the first tone begins and when the last one has ended. To be called before the program opens the speaker.
 * @param {import('./speaker.mjs').Speaker} speaker
 * @param {(isPlaying: boolean) => void} onChange
 */
export function watchTones(speaker, onChange) {
    /** @type {Set<number>} */
    const voices = new Set();
    const { open, send } = speaker;
    speaker.send = (commands) => {
        const wereNone = voices.size === 0;
        for (let at = 0; at < commands.length; at += NUMBERS_OF_COMMAND) {
            if (commands[at] === COMMAND_START) voices.add(commands[at + 1]);
        }
        send.call(speaker, commands);
        if (wereNone && voices.size > 0) onChange(true);
    };
    speaker.open = (calls) =>
        open.call(speaker, {
            ...calls,
            onNews: (kind, voice, clip, number) => {
                if (kind === NEWS_DONE && voices.delete(voice) && voices.size === 0) onChange(false);
                calls.onNews(kind, voice, clip, number);
            },
        });
}
