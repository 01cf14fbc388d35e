// The change of a note with GStreamer's playbin: down to READY (which stops and closes), the other file's URI, the
// volume, up to PLAYING. Only these calls are measured; that the sound is under way is awaited out of the measurement.
// The sink is a fake one that keeps the clock's time.
//
// GStreamer's headers come with libunwind-dev, which Debian cannot install beside libc++. The handful of functions that
// are used here is therefore declared as the library's manual documents them.

#include <glib-object.h>

#include <cstdint>

#include "Measure.h"

extern "C" {
void gst_init(int* argc, char*** argv);
gpointer gst_element_factory_make(const char* factory, const char* name);
int gst_element_set_state(gpointer element, int state);
int gst_element_get_state(gpointer element, int* state, int* pending, std::uint64_t timeoutNanoseconds);
void gst_object_unref(gpointer object);
}

namespace {

constexpr int kStateNull = 1;
constexpr int kStateReady = 2;
constexpr int kStatePlaying = 4;
constexpr int kChangeSuccess = 1;
constexpr std::uint64_t kTimeout = 5'000'000'000;

void ChangeUri(benchmark::State& state) {
    gst_init(nullptr, nullptr);
    gpointer playbin = gst_element_factory_make("playbin", nullptr);
    gpointer sink = gst_element_factory_make("fakesink", nullptr);
    if (playbin == nullptr || sink == nullptr) return state.SkipWithError("GStreamer's plugins are not installed");
    g_object_set(sink, "sync", TRUE, nullptr);
    g_object_set(playbin, "audio-sink", sink, nullptr);
    NextRecording next;
    std::string uri = "file://" + next();
    MeasureEach(
        state,
        [&] {
            uri = "file://" + next();
            if (gst_element_get_state(playbin, nullptr, nullptr, kTimeout) != kChangeSuccess) {
                state.SkipWithError("playbin does not play");
            }
        },
        [&] {
            gst_element_set_state(playbin, kStateReady);
            g_object_set(playbin, "uri", uri.c_str(), "volume", 1.0, nullptr);
            gst_element_set_state(playbin, kStatePlaying);
        });
    gst_element_set_state(playbin, kStateNull);
    gst_object_unref(playbin);
}
BENCHMARK(ChangeUri)->Name("note|GStreamer playbin");

}  // namespace
