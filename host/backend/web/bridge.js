// The stubs behind Bridge.h: each hands its numbers to the object that main.mjs made for it. Emscripten's library takes
// functions, not arrows.
/* global mergeInto, LibraryManager, Module, HEAPU8, HEAPF32, HEAPF64, UTF8ToString, UTF8ArrayToString, stringToUTF8, lengthBytesUTF8 */
mergeInto(LibraryManager.library, {
    web_surface_create: function (surface, width, height) {
        return Module['host'].painter.createSurface(surface, width, height);
    },
    web_surface_destroy: function (surface) {
        return Module['host'].painter.destroySurface(surface);
    },
    web_surface_clip: function (surface, x, y, width, height) {
        return Module['host'].painter.clip(surface, x, y, width, height);
    },
    web_surface_unclip: function (surface) {
        return Module['host'].painter.unclip(surface);
    },
    web_surface_clear: function (surface, color) {
        return Module['host'].painter.clear(surface, color >>> 0);
    },
    web_surface_shape: function (surface, shape, x, y, width, height, arcWidth, arcHeight, lineWidth, color) {
        return Module['host'].painter.shape(
            surface,
            shape,
            x,
            y,
            width,
            height,
            arcWidth,
            arcHeight,
            lineWidth,
            color >>> 0,
        );
    },
    web_surface_gradient: function (surface, x, y, width, height, arcWidth, arcHeight, top, bottom) {
        return Module['host'].painter.gradient(
            surface,
            x,
            y,
            width,
            height,
            arcWidth,
            arcHeight,
            top >>> 0,
            bottom >>> 0,
        );
    },
    web_surface_picture: function (surface, picture, x, y, width, height) {
        return Module['host'].painter.drawPicture(surface, picture, x, y, width, height);
    },
    web_surface_text: function (surface, text, bytes, size, isBold, x, baseline, color, edgeWidth, edge) {
        return Module['host'].painter.drawText(
            surface,
            UTF8ArrayToString(HEAPU8, text, bytes),
            size,
            isBold !== 0,
            x,
            baseline,
            color >>> 0,
            edgeWidth,
            edge >>> 0,
        );
    },
    web_surface_compose: function (surface, source, x, y, isReplacing) {
        return Module['host'].painter.compose(surface, source, x, y, isReplacing !== 0);
    },
    web_surface_read: function (surface, x, y, width, height, pixels) {
        return HEAPU8.set(Module['host'].painter.read(surface, x, y, width, height), pixels);
    },
    web_picture_create: function (picture, width, height, pixels) {
        return Module['host'].painter.createPicture(
            picture,
            width,
            height,
            HEAPU8.slice(pixels, pixels + width * height * 4),
        );
    },
    web_picture_take: function (picture, file, bytes) {
        return Module['host'].painter.takePicture(picture, HEAPU8.subarray(file, file + bytes)) ? 1 : 0;
    },
    web_picture_destroy: function (picture) {
        return Module['host'].painter.destroyPicture(picture);
    },
    web_text_width: function (text, bytes, size, isBold) {
        return Module['host'].painter.textWidth(UTF8ArrayToString(HEAPU8, text, bytes), size, isBold !== 0);
    },
    web_text_heights: function (size, isBold, heights) {
        return HEAPF64.set(Module['host'].painter.textHeights(size, isBold !== 0), heights >> 3);
    },
    web_text_language: function (language) {
        return Module['host'].painter.setLanguage(UTF8ToString(language));
    },
    web_window_width: function () {
        return Module['host'].window.canvas.width;
    },
    web_window_height: function () {
        return Module['host'].window.canvas.height;
    },
    web_window_language: function (known, language, room) {
        const names = UTF8ToString(known).split(' ');
        const liked = (typeof navigator === 'undefined' ? [] : navigator.languages || []).map((name) =>
            name.slice(0, 2).toLowerCase(),
        );
        stringToUTF8(liked.find((name) => names.includes(name)) || '', language, room);
    },
    web_window_presented: function () {
        return Module['host'].window.presented();
    },
    web_window_ended: function (status) {
        return Module['host'].window.ended(status);
    },
    web_window_refused: function (reason) {
        return Module['host'].window.refused(UTF8ToString(reason));
    },

    web_accessible_begin: function (isDialog, isPlayedOn) {
        Module['host'].accessibility.begin(isDialog !== 0, isPlayedOn !== 0);
    },
    web_accessible_item: function (id, role, name, x, y, width, height, isOn, value, least, most) {
        Module['host'].accessibility.item(
            id, role, UTF8ToString(name), x, y, width, height, isOn !== 0, value, least, most);
    },
    web_accessible_end: function () {
        Module['host'].accessibility.end();
    },

    web_loop_schedule: function (delay) {
        return Module['host'].loop.schedule(delay, Module['_brevant_tick']);
    },
    // Copies frames into the buffer of that part of the back end, piece by piece, and tells it of each.
    $handFramesOver: function (frames, part, told) {
        const room = Module['_brevant_' + part + '_room']();
        for (let at = 0; room > 0 && at < frames.length; at += room) {
            const piece = frames.subarray(at, at + room);
            HEAPF32.set(piece, Module['_brevant_' + part + '_buffer']() >> 2);
            Module['_brevant_' + part + '_' + told](piece.length);
        }
    },
    web_speaker_open: function () {
        return Module['host'].speaker.open({
            onNews: (kind, voice, clip, number) => Module['_brevant_speaker_news'](kind, voice, clip, number),
            onNewsEnd: () => Module['_brevant_speaker_told'](),
            onPlayed: (frames) => handFramesOver(frames, 'speaker', 'played'),
            onLost: () => Module['_brevant_speaker_lost'](1),
            onRestored: () => Module['_brevant_speaker_lost'](0),
        });
    },
    web_speaker_open__deps: ['$handFramesOver'],
    web_speaker_close: function () {
        return Module['host'].speaker.close();
    },
    web_speaker_clip: function (number, length, loopStart, takes, release, period) {
        return Module['host'].speaker.clip(number, length >>> 0, loopStart >>> 0, takes >>> 0, release, period);
    },
    web_speaker_frames: function (number, from, frames, count) {
        return Module['host'].speaker.frames(number, from >>> 0, HEAPF32.slice(frames >> 2, (frames >> 2) + count));
    },
    web_speaker_send: function (commands, count) {
        return Module['host'].speaker.send(HEAPF64.slice(commands >> 3, (commands >> 3) + count * 5));
    },
    web_speaker_unlock: function () {
        return Module['host'].speaker.unlock();
    },
    web_speaker_hide: function (isHidden) {
        return Module['host'].speaker.hide(isHidden !== 0);
    },
    web_speaker_underruns: function () {
        return Module['host'].speaker.underruns();
    },
    web_microphone_start: function () {
        return Module['host'].microphone.start({
            onOpened: (rate) => Module['_brevant_microphone_opened'](rate),
            onLost: () => Module['_brevant_microphone_lost'](),
            onHeard: (frames) => handFramesOver(frames, 'microphone', 'heard'),
        });
    },
    web_microphone_start__deps: ['$handFramesOver'],
    web_microphone_stop: function () {
        return Module['host'].microphone.stop();
    },
    web_storage_size: function (path) {
        return Module['host'].storage.size(UTF8ToString(path));
    },
    web_storage_list: function (folder) {
        const names = Module['host'].storage
            .list(UTF8ToString(folder))
            .map((name) => name + '\n')
            .join('');
        const bytes = lengthBytesUTF8(names) + 1;
        const memory = _malloc(bytes);
        stringToUTF8(names, memory, bytes);
        return memory;
    },
    web_storage_list__deps: ['malloc'],
    web_storage_read: function (path, offset, to, bytes) {
        return HEAPU8.set(Module['host'].storage.read(UTF8ToString(path)).subarray(offset, offset + bytes), to);
    },
    web_storage_create: function (path) {
        return Module['host'].storage.create(UTF8ToString(path));
    },
    web_storage_write: function (path, offset, from, bytes) {
        return Module['host'].storage.write(UTF8ToString(path), offset, HEAPU8.slice(from, from + bytes)) ? 1 : 0;
    },
    web_storage_replace: function (path, from, bytes) {
        return Module['host'].storage.replace(UTF8ToString(path), HEAPU8.slice(from, from + bytes)) ? 1 : 0;
    },
});
