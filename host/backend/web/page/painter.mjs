// Draws on canvases for CanvasPainter. Surface 0 is the page's own canvas; every other one is a canvas that nobody sees.
// Lengths are device pixels, colours 0xRRGGBBAA.

/** @typedef {OffscreenCanvas | HTMLCanvasElement} Canvas */
/** @typedef {CanvasRenderingContext2D | OffscreenCanvasRenderingContext2D} Context */

// The desktop's font where the machine has it, else the system's own. Chinese, Japanese and Korean share characters that
// each of them writes differently, so the language's own fonts come first.
const FAMILIES = '"Noto Sans", system-ui, sans-serif';
/** @type {Record<string, string>} */
const FAMILIES_OF_LANGUAGE = {
    ja: '"Noto Sans", "Noto Sans CJK JP", "Noto Sans JP", "Hiragino Sans", "Yu Gothic", system-ui, sans-serif',
    ko: '"Noto Sans", "Noto Sans CJK KR", "Noto Sans KR", "Apple SD Gothic Neo", "Malgun Gothic", system-ui, sans-serif',
};

const FULL_CHANNEL = 255;
const MOST_WIDTHS = 2000;
const DECODED_AT_ONCE = 4;
const SHAPE_RECTANGLE = 0;
const SHAPE_ELLIPSE = 1;

/** @param {number} color */
function css(color) {
    return `rgba(${color >>> 24},${(color >>> 16) & FULL_CHANNEL},${(color >>> 8) & FULL_CHANNEL},${
        (color & FULL_CHANNEL) / FULL_CHANNEL
    })`;
}

/** @param {number} width @param {number} height @returns {Canvas} */
function makeCanvas(width, height) {
    // No browser makes a canvas without pixels into a picture.
    const size = [Math.max(1, width), Math.max(1, height)];
    if (typeof OffscreenCanvas !== 'undefined') return new OffscreenCanvas(size[0], size[1]);
    const canvas = document.createElement('canvas');
    [canvas.width, canvas.height] = size;
    return canvas;
}

/**
 * Tells one packed picture from another: its length, and bytes from all over it. Where packed bytes differ in one place they
 * differ in most. Summing all of them would make the start stand still.
 * @param {Uint8Array} bytes
 */
function keyOf(bytes) {
    const SAMPLES = 64;
    const step = Math.ceil(bytes.length / SAMPLES);
    let key = `${bytes.length}`;
    for (let at = bytes.length - 1; at >= 0; at -= step) key += ` ${bytes[at]}`;
    return key;
}

/** @param {Context} context */
function addShape(
    context,
    /** @type {number} */ shape,
    /** @type {number} */ x,
    /** @type {number} */ y,
    /** @type {number} */ width,
    /** @type {number} */ height,
    /** @type {number} */ arcWidth,
    /** @type {number} */ arcHeight,
) {
    const radiusX = Math.min(arcWidth, width) / 2;
    const radiusY = Math.min(arcHeight, height) / 2;
    context.beginPath();
    if (shape === SHAPE_ELLIPSE) {
        context.ellipse(x + width / 2, y + height / 2, width / 2, height / 2, 0, 0, 2 * Math.PI);
    } else if (shape === SHAPE_RECTANGLE || radiusX <= 0 || radiusY <= 0) {
        context.rect(x, y, width, height);
    } else {
        const right = x + width;
        const bottom = y + height;
        const quarter = Math.PI / 2;
        context.ellipse(x + radiusX, y + radiusY, radiusX, radiusY, 0, 2 * quarter, 3 * quarter);
        context.ellipse(right - radiusX, y + radiusY, radiusX, radiusY, 0, 3 * quarter, 4 * quarter);
        context.ellipse(right - radiusX, bottom - radiusY, radiusX, radiusY, 0, 0, quarter);
        context.ellipse(x + radiusX, bottom - radiusY, radiusX, radiusY, 0, quarter, 2 * quarter);
        context.closePath();
    }
}

/** @param {HTMLCanvasElement} canvas the page's own */
export function createPainter(canvas) {
    /** @type {Map<number, Context>} */
    const surfaces = new Map();
    /** @type {Map<number, Canvas | ImageBitmap>} */
    const pictures = new Map();
    /** @type {Map<string, ImageBitmap>} */
    const prepared = new Map();
    /** @type {Map<string, number>} */
    const widths = new Map();
    let families = FAMILIES;
    const measuring = /** @type {Context} */ (makeCanvas(1, 1).getContext('2d'));

    /** @param {number} surface @returns {Context} */
    const contextOf = (surface) => /** @type {Context} */ (surfaces.get(surface));
    /** @param {number} size @param {boolean} isBold */
    const fontOf = (size, isBold) => `${isBold ? 'bold ' : ''}${size}px ${families}`;

    return {
        /** @param {number} surface @param {number} width @param {number} height */
        createSurface(surface, width, height) {
            const isPage = surface === 0;
            const target = isPage ? canvas : makeCanvas(width, height);
            if (isPage && canvas.width !== width) canvas.width = width;
            if (isPage && canvas.height !== height) canvas.height = height;
            const context = /** @type {Context} */ (target.getContext('2d', { alpha: !isPage }));
            context.resetTransform();
            context.save();
            surfaces.set(surface, context);
        },
        /** @param {number} surface */
        destroySurface(surface) {
            surfaces.delete(surface);
        },
        /** @param {number} surface */
        clip(
            surface,
            /** @type {number} */ x,
            /** @type {number} */ y,
            /** @type {number} */ width,
            /** @type {number} */ height,
        ) {
            const context = contextOf(surface);
            context.restore();
            context.save();
            context.beginPath();
            context.rect(x, y, width, height);
            context.clip();
        },
        /** @param {number} surface */
        unclip(surface) {
            contextOf(surface).restore();
            contextOf(surface).save();
        },
        /** @param {number} surface @param {number} color */
        clear(surface, color) {
            const context = contextOf(surface);
            context.clearRect(0, 0, context.canvas.width, context.canvas.height);
            if ((color & FULL_CHANNEL) === 0) return;
            context.fillStyle = css(color);
            context.fillRect(0, 0, context.canvas.width, context.canvas.height);
        },
        /** @param {number} surface @param {number} shape */
        shape(
            surface,
            shape,
            /** @type {number} */ x,
            /** @type {number} */ y,
            /** @type {number} */ width,
            /** @type {number} */ height,
            /** @type {number} */ arcWidth,
            /** @type {number} */ arcHeight,
            /** @type {number} */ lineWidth,
            /** @type {number} */ color,
        ) {
            const context = contextOf(surface);
            addShape(context, shape, x, y, width, height, arcWidth, arcHeight);
            if (lineWidth > 0) {
                context.lineWidth = lineWidth;
                context.lineJoin = 'miter';
                context.strokeStyle = css(color);
                context.stroke();
            } else {
                context.fillStyle = css(color);
                context.fill();
            }
        },
        /** @param {number} surface */
        gradient(
            surface,
            /** @type {number} */ x,
            /** @type {number} */ y,
            /** @type {number} */ width,
            /** @type {number} */ height,
            /** @type {number} */ arcWidth,
            /** @type {number} */ arcHeight,
            /** @type {number} */ top,
            /** @type {number} */ bottom,
        ) {
            const context = contextOf(surface);
            const gradient = context.createLinearGradient(0, y, 0, y + height);
            gradient.addColorStop(0, css(top));
            gradient.addColorStop(1, css(bottom));
            const isRound = arcWidth > 0 && arcHeight > 0;
            addShape(context, isRound ? SHAPE_ELLIPSE + 1 : SHAPE_RECTANGLE, x, y, width, height, arcWidth, arcHeight);
            context.fillStyle = gradient;
            context.fill();
        },
        /** @param {number} surface @param {number} picture */
        drawPicture(
            surface,
            picture,
            /** @type {number} */ x,
            /** @type {number} */ y,
            /** @type {number} */ width,
            /** @type {number} */ height,
        ) {
            const context = contextOf(surface);
            context.imageSmoothingEnabled = true;
            context.imageSmoothingQuality = 'high';
            context.drawImage(/** @type {CanvasImageSource} */ (pictures.get(picture)), x, y, width, height);
        },
        /** @param {number} surface @param {string} text @param {number} size @param {boolean} isBold */
        drawText(
            surface,
            text,
            size,
            isBold,
            /** @type {number} */ x,
            /** @type {number} */ baseline,
            /** @type {number} */ color,
            /** @type {number} */ edgeWidth,
            /** @type {number} */ edge,
        ) {
            const context = contextOf(surface);
            context.font = fontOf(size, isBold);
            context.textBaseline = 'alphabetic';
            if (edgeWidth > 0) {
                context.lineWidth = edgeWidth * 2; // The inner half of the stroke lies beneath the glyphs.
                context.lineJoin = 'round';
                context.strokeStyle = css(edge);
                context.strokeText(text, x, baseline);
            }
            context.fillStyle = css(color);
            context.fillText(text, x, baseline);
        },
        /** @param {number} surface @param {number} source @param {number} x @param {number} y @param {boolean} isReplacing */
        compose(surface, source, x, y, isReplacing) {
            const context = contextOf(surface);
            const from = contextOf(source).canvas;
            // "copy" would clear what lies beside the source, too.
            if (isReplacing) context.clearRect(x, y, from.width, from.height);
            context.drawImage(from, x, y);
        },
        /** @param {number} surface */
        read(
            surface,
            /** @type {number} */ x,
            /** @type {number} */ y,
            /** @type {number} */ width,
            /** @type {number} */ height,
        ) {
            return contextOf(surface).getImageData(x, y, width, height).data;
        },

        /**
         * Decodes pictures ahead, for the program cannot wait for the browser. One that does not decode is missing.
         * @param {Uint8Array[]} files
         */
        async prepare(files) {
            const left = [...files];
            const prepareNext = async () => {
                const bytes = left.shift();
                if (bytes === undefined) return;
                const blob = new Blob([/** @type {BlobPart} */ (bytes)]);
                const bitmap = await createImageBitmap(blob).catch(() => null);
                if (bitmap) prepared.set(keyOf(bytes), bitmap);
                await prepareNext();
            };
            // The browser decodes beside the page, but each file costs the page a moment: all at once it would stand still.
            await Promise.all(Array.from({ length: DECODED_AT_ONCE }, prepareNext));
        },
        /** @param {number} picture @param {Uint8Array} bytes of a file that was prepared @returns {boolean} */
        takePicture(picture, bytes) {
            const bitmap = prepared.get(keyOf(bytes));
            if (bitmap) pictures.set(picture, bitmap);
            return bitmap !== undefined;
        },
        /** @param {number} picture @param {number} width @param {number} height @param {Uint8Array} pixels */
        createPicture(picture, width, height, pixels) {
            const target = makeCanvas(width, height);
            const context = /** @type {Context} */ (target.getContext('2d'));
            context.putImageData(new ImageData(new Uint8ClampedArray(pixels.buffer), width, height), 0, 0);
            pictures.set(picture, target);
        },
        /** @param {number} picture */
        destroyPicture(picture) {
            pictures.delete(picture);
        },

        /** @param {string} text @param {number} size @param {boolean} isBold */
        textWidth(text, size, isBold) {
            const font = fontOf(size, isBold);
            const key = font + text;
            let width = widths.get(key);
            if (width === undefined) {
                if (widths.size >= MOST_WIDTHS) widths.clear();
                measuring.font = font;
                width = measuring.measureText(text).width;
                widths.set(key, width);
            }
            return width;
        },
        /** @param {number} size @param {boolean} isBold @returns {[number, number]} */
        textHeights(size, isBold) {
            measuring.font = fontOf(size, isBold);
            const measured = measuring.measureText('Ag');
            return [measured.fontBoundingBoxAscent, measured.fontBoundingBoxDescent];
        },
        /** @param {string} language */
        setLanguage(language) {
            families = FAMILIES_OF_LANGUAGE[language] ?? FAMILIES;
            widths.clear();
        },
    };
}
