// Fingers, mouse and keys of the page, told to the ocarina in the canvas's device pixels.

const TOUCH = { down: 0, move: 1, up: 2, cancel: 3 };
const KEY = { down: 0, repeat: 1, up: 2 };

/**
 * What becomes of input.
 * @typedef {{
 *   touch(finger: number, kind: number, x: number, y: number): void,
 *   key(code: string, kind: number, shift: boolean): void,
 *   lost(): void,
 *   gesture(): void
 * }} InputTarget
 * `gesture` is called within the handler of a lifted finger, a click or a key: there the browser allows sound.
 */

/** Numbers fingers by the smallest number that is free, whatever the browser calls them. */
class Fingers {
    /** @type {Map<string, number>} */
    #numbers = new Map();

    /** @param {string} name */
    take(name) {
        const taken = new Set(this.#numbers.values());
        let number = 0;
        while (taken.has(number)) ++number;
        this.#numbers.set(name, number);
        return number;
    }

    /** @param {string} name */
    find(name) {
        return this.#numbers.get(name);
    }

    /** @param {string} name */
    release(name) {
        this.#numbers.delete(name);
    }

    names() {
        return [...this.#numbers.keys()];
    }

    clear() {
        this.#numbers.clear();
    }
}

/**
 * Listens from now on, as long as the page lives.
 * @param {HTMLCanvasElement} canvas
 * @param {InputTarget} target
 * @param {(code: string) => boolean} isMirrors whether the accessibility mirror keeps that key to itself
 */
export function listenForInput(canvas, target, isMirrors) {
    const fingers = new Fingers();

    /** @param {{clientX: number, clientY: number}} place */
    const toCanvas = ({ clientX, clientY }) => {
        const box = canvas.getBoundingClientRect();
        return {
            x: ((clientX - box.left) * canvas.width) / box.width,
            y: ((clientY - box.top) * canvas.height) / box.height,
        };
    };

    /** @param {string} name @param {number} kind @param {{clientX: number, clientY: number}} place */
    const tell = (name, kind, place) => {
        let number = fingers.find(name);
        if (number === undefined && kind === TOUCH.down) number = fingers.take(name);
        if (number === undefined) return;
        const { x, y } = toCanvas(place);
        if (kind === TOUCH.up || kind === TOUCH.cancel) fingers.release(name);
        target.touch(number, kind, x, y);
    };

    // Browsers without touch events tell of fingers by pointer events; the others tell by both.
    const hasTouchEvents = 'ontouchstart' in window;
    if (hasTouchEvents) listenForTouches(canvas, tell, fingers, target);
    listenForPointers(canvas, tell, target, hasTouchEvents);
    listenForKeys(target, isMirrors);

    const loseAll = () => {
        fingers.clear();
        target.lost();
    };
    window.addEventListener('blur', loseAll);
    window.addEventListener('pagehide', loseAll);
    for (const name of ['contextmenu', 'selectstart', 'dragstart', 'gesturestart', 'gesturechange', 'dblclick']) {
        document.addEventListener(name, (event) => event.preventDefault(), { passive: false });
    }
    // A wheel with the control key, or two fingers on a touch pad, would zoom.
    document.addEventListener('wheel', (event) => event.preventDefault(), { passive: false });
}

/**
 * @param {HTMLCanvasElement} canvas
 * @param {(name: string, kind: number, place: {clientX: number, clientY: number}) => void} tell
 * @param {Fingers} fingers
 * @param {InputTarget} target
 */
function listenForTouches(canvas, tell, fingers, target) {
    /** @param {TouchEvent} event @param {number} kind */
    const each = (event, kind) => {
        if (event.cancelable) event.preventDefault();
        for (const touch of event.changedTouches) tell(`touch ${touch.identifier}`, kind, touch);
        // A gesture of the system may take a finger away without a word; it is missing from the list then.
        const down = new Set([...event.touches].map((touch) => `touch ${touch.identifier}`));
        for (const name of fingers.names()) {
            if (name.startsWith('touch ') && !down.has(name)) tell(name, TOUCH.cancel, { clientX: 0, clientY: 0 });
        }
    };
    const options = { passive: false };
    canvas.addEventListener('touchstart', (event) => each(event, TOUCH.down), options);
    canvas.addEventListener('touchmove', (event) => each(event, TOUCH.move), options);
    canvas.addEventListener('touchcancel', (event) => each(event, TOUCH.cancel), options);
    canvas.addEventListener(
        'touchend',
        (event) => {
            target.gesture();
            each(event, TOUCH.up);
        },
        options,
    );
}

/**
 * @param {HTMLCanvasElement} canvas
 * @param {(name: string, kind: number, place: {clientX: number, clientY: number}) => void} tell
 * @param {InputTarget} target
 * @param {boolean} hasTouchEvents
 */
function listenForPointers(canvas, tell, target, hasTouchEvents) {
    /** @param {PointerEvent} event @param {number} kind */
    const each = (event, kind) => {
        if (hasTouchEvents && event.pointerType === 'touch') return;
        if (kind === TOUCH.down && event.button !== 0) return;
        event.preventDefault();
        if (kind === TOUCH.down) canvas.setPointerCapture(event.pointerId);
        tell(`pointer ${event.pointerId}`, kind, event);
    };
    canvas.addEventListener('pointerdown', (event) => each(event, TOUCH.down));
    canvas.addEventListener('pointermove', (event) => each(event, TOUCH.move));
    canvas.addEventListener('pointercancel', (event) => each(event, TOUCH.cancel));
    canvas.addEventListener('lostpointercapture', (event) => each(event, TOUCH.cancel));
    canvas.addEventListener('pointerup', (event) => {
        target.gesture();
        each(event, TOUCH.up);
    });
    canvas.addEventListener('click', () => target.gesture());
}

/**
 * @param {InputTarget} target
 * @param {(code: string) => boolean} isMirrors
 */
function listenForKeys(target, isMirrors) {
    /** @type {Set<string>} */
    const down = new Set();
    window.addEventListener('keydown', (event) => {
        target.gesture();
        // The browser's own shortcuts stay the browser's.
        if (event.ctrlKey || event.metaKey || event.altKey || event.code === '' || /^F\d+$/.test(event.code)) return;
        if (event.code === 'Tab' || isMirrors(event.code)) return;
        event.preventDefault();
        down.add(event.code);
        target.key(event.code, event.repeat ? KEY.repeat : KEY.down, event.shiftKey);
    });
    window.addEventListener('keyup', (event) => {
        if (!down.delete(event.code)) return;
        event.preventDefault();
        target.key(event.code, KEY.up, event.shiftKey);
    });
    window.addEventListener('blur', () => down.clear());
}
