// The canvas in real elements, for screen readers and keyboards: one for each thing that the ocarina says it shows.

/**
 * @typedef {{
 *   id: number, role: 'text' | 'heading' | 'button' | 'switch' | 'slider', name: string,
 *   x: number, y: number, width: number, height: number, isOn: boolean, value: number, least: number, most: number
 * }} Item
 * @typedef {{ kind: 'form' | 'dialog', isPlayedOn: boolean, items: Item[] }} Screen
 * @typedef {{ activate(id: number): void, setValue(id: number, value: number): void }} Actions
 */

/** In the order of the ocarina's own roles. */
export const ROLES = /** @type {const} */ (['text', 'heading', 'button', 'switch', 'slider']);

const ELEMENTS = { text: 'p', heading: 'h2', button: 'button', switch: 'button', slider: 'input' };

export class Mirror {
    #root;
    #canvas;
    /** @type {Actions | null} */
    #actions = null;
    /** @type {Map<number, HTMLElement>} */
    #elements = new Map();
    /** @type {Screen} */
    #screen = { kind: 'form', isPlayedOn: false, items: [] };
    #told = this.#screen;

    /** @param {HTMLElement} root @param {HTMLCanvasElement} canvas */
    constructor(root, canvas) {
        this.#root = root;
        this.#canvas = canvas;
        new ResizeObserver(() => this.#place()).observe(canvas);
    }

    /** @param {Actions} actions */
    connect(actions) {
        this.#actions = actions;
    }

    /**
     * The first call of three that tell what is shown now: begin, item for each thing in its order, end.
     * @param {boolean} isDialog
     * @param {boolean} isPlayedOn
     */
    begin(isDialog, isPlayedOn) {
        this.#told = { kind: isDialog ? 'dialog' : 'form', isPlayedOn, items: [] };
    }

    /** @param {Item} item its place in device pixels of the canvas */
    item(item) {
        this.#told.items.push(item);
    }

    end() {
        const before = this.#screen;
        this.#screen = this.#told;
        const ids = new Set(this.#screen.items.map((item) => item.id));
        const hadFocus = this.#root.contains(document.activeElement);
        for (const [id, element] of this.#elements) {
            if (ids.has(id)) continue;
            element.remove();
            this.#elements.delete(id);
        }
        /** @type {Element | null} */
        let previous = null;
        for (const item of this.#screen.items) {
            const element = this.#elementOf(item);
            /** @type {Element | null} */
            const next = previous === null ? this.#root.firstElementChild : previous.nextElementSibling;
            // Moving an element would take its focus away, so only what is out of place moves.
            if (next !== element) this.#root.insertBefore(element, next);
            previous = element;
        }
        this.#showKind();
        this.#place();
        const isAnother = before.kind !== this.#screen.kind || !before.items.some((item) => ids.has(item.id));
        if (isAnother && hadFocus && !this.#root.contains(document.activeElement)) this.#focusFirst();
    }

    /**
     * Whether the focused element uses that key, so that the ocarina must not get it.
     * @param {string} code
     */
    keeps(code) {
        const focused = document.activeElement;
        if (focused === null || !this.#root.contains(focused)) return false;
        if (focused instanceof HTMLInputElement) return /^(Arrow|Page|Home|End)/.test(code);
        return code === 'Enter' || code === 'NumpadEnter' || (code === 'Space' && !this.#screen.isPlayedOn);
    }

    /** @param {Item} item */
    #elementOf(item) {
        const element = this.#elements.get(item.id) ?? this.#make(item);
        if (element instanceof HTMLInputElement) {
            element.min = String(item.least);
            element.max = String(item.most);
            element.value = String(item.value);
            element.setAttribute('aria-label', item.name);
        } else if (element.textContent !== item.name) {
            element.textContent = item.name;
        }
        if (item.role === 'switch') element.setAttribute('aria-checked', String(item.isOn));
        return element;
    }

    /** @param {Item} item */
    #make(item) {
        const element = document.createElement(ELEMENTS[item.role]);
        if (element instanceof HTMLInputElement) {
            element.type = 'range';
            element.addEventListener('input', () => this.#actions?.setValue(item.id, Number(element.value)));
        } else if (element instanceof HTMLButtonElement) {
            element.type = 'button';
            element.addEventListener('click', () => this.#actions?.activate(item.id));
        }
        if (item.role === 'switch') element.setAttribute('role', 'switch');
        this.#elements.set(item.id, element);
        return element;
    }

    #showKind() {
        if (this.#screen.kind !== 'dialog') {
            for (const name of ['role', 'aria-modal', 'aria-label']) this.#root.removeAttribute(name);
            return;
        }
        const heading = this.#screen.items.find((item) => item.role === 'heading');
        this.#root.setAttribute('role', 'dialog');
        this.#root.setAttribute('aria-modal', 'true');
        this.#root.setAttribute('aria-label', heading?.name ?? this.#screen.items[0]?.name ?? '');
    }

    #place() {
        const scale = this.#canvas.width === 0 ? 0 : this.#canvas.clientWidth / this.#canvas.width;
        for (const item of this.#screen.items) {
            const style = this.#elements.get(item.id)?.style;
            if (style === undefined) continue;
            style.left = `${item.x * scale}px`;
            style.top = `${item.y * scale}px`;
            style.width = `${item.width * scale}px`;
            style.height = `${item.height * scale}px`;
        }
    }

    #focusFirst() {
        const first = [...this.#elements.values()].find((element) => /^(BUTTON|INPUT)$/.test(element.tagName));
        const inOrder = [...this.#root.children].find((element) => /^(BUTTON|INPUT)$/.test(element.tagName));
        (inOrder instanceof HTMLElement ? inOrder : first)?.focus();
    }
}
