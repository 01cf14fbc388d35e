#pragma once

#include <cstdint>

// What this back end asks of the page, which bridge.js passes on to the objects that the page has handed over. All of
// it is plain numbers and places in memory. Colours are 0xRRGGBBAA with straight alpha; lengths are device pixels.

extern "C" {

// painter.mjs. Surface 0 is the page's canvas; the others are numbered by who makes them.
void web_surface_create(int surface, int width, int height);
void web_surface_destroy(int surface);
void web_surface_clip(int surface, int x, int y, int width, int height);
void web_surface_unclip(int surface);
void web_surface_clear(int surface, std::uint32_t color);
/// `shape` is a Shape of CanvasSurface.cpp. A line width of 0 fills.
void web_surface_shape(int surface, int shape, double x, double y, double width, double height, double arcWidth,
                       double arcHeight, double lineWidth, std::uint32_t color);
void web_surface_gradient(int surface, double x, double y, double width, double height, double arcWidth,
                          double arcHeight, std::uint32_t top, std::uint32_t bottom);
void web_surface_picture(int surface, int picture, double x, double y, double width, double height);
void web_surface_text(int surface, const char* text, int bytes, double size, int isBold, double x, double baseline,
                      std::uint32_t color, double edgeWidth, std::uint32_t edge);
void web_surface_compose(int surface, int source, int x, int y, int isReplacing);
/// Fills width * height pixels of four bytes: red, green, blue, alpha.
void web_surface_read(int surface, int x, int y, int width, int height, void* pixels);
void web_picture_create(int picture, int width, int height, const void* pixels);
/// Makes the picture of a file that the page has decoded ahead; 0 when it has not.
int web_picture_take(int picture, const void* file, int bytes);
void web_picture_destroy(int picture);
double web_text_width(const char* text, int bytes, double size, int isBold);
/// From the baseline up and down, in this order.
void web_text_heights(double size, int isBold, double* heights);
void web_text_language(const char* language);

// The page's own window.
int web_window_width();
int web_window_height();
/// The texts' language that the user likes best, two letters, of those in `known`, which blanks part; empty for none.
void web_window_language(const char* known, char* language, int room);
/// After each picture on the canvas.
void web_window_presented();
void web_window_ended(int status);
void web_window_refused(const char* reason);

// accessibility.mjs: begin, an item for each thing in its order, end. `role` is an AccessibleRole.
void web_accessible_begin(int isDialog, int isPlayedOn);
void web_accessible_item(double id, int role, const char* name, int x, int y, int width, int height, int isOn,
                         int value, int least, int most);
void web_accessible_end();

// loop.mjs. Asks for brevant_tick so many milliseconds from now, in place of what was asked for before; negative:
// never.
void web_loop_schedule(double delay);

// speaker.mjs
/// The rate, or 0 where the browser has no sound.
int web_speaker_open();
void web_speaker_close();
void web_speaker_clip(int number, std::uint32_t length, std::uint32_t loopStart, std::uint32_t takes, float release,
                      float period);
void web_speaker_frames(int number, std::uint32_t from, const float* frames, std::uint32_t count);
/// Commands of five numbers each: kind, voice, clip, number, gain.
void web_speaker_send(const double* commands, int count);
void web_speaker_unlock();
void web_speaker_hide(int isHidden);
double web_speaker_underruns();

// microphone.mjs
void web_microphone_start();
void web_microphone_stop();

// storage.mjs
/// Of a file; negative when there is none.
double web_storage_size(const char* path);
/// Names with a line end behind each, in memory that the caller frees.
char* web_storage_list(const char* folder);
void web_storage_read(const char* path, double offset, void* to, int bytes);
/// Makes the file empty, for web_storage_write to fill.
void web_storage_create(const char* path);
/// These two are 0 when the browser does not take it.
int web_storage_write(const char* path, double offset, const void* from, int bytes);
int web_storage_replace(const char* path, const void* from, int bytes);

}  // extern "C"
