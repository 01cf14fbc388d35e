#include "support/MidiReader.h"

#include <memory>
#include <stdexcept>

// libsmf's header includes this one where no C++ is allowed.
#include <glib.h>
#include <smf.h>

namespace {

/// Gathers what libsmf says of a file, which goes to stderr otherwise.
class Warnings {
public:
    Warnings() {
        const auto take = [](const gchar*, GLogLevelFlags, const gchar* message, gpointer text) {
            *static_cast<std::string*>(text) += message;
        };
        handler_ = g_log_set_handler(kDomain, G_LOG_LEVEL_MASK, take, &text_);
    }
    ~Warnings() { g_log_remove_handler(kDomain, handler_); }
    Warnings(const Warnings&) = delete;
    Warnings& operator=(const Warnings&) = delete;

    [[nodiscard]] const std::string& Text() const { return text_; }

private:
    static constexpr const char* kDomain = "libsmf";
    std::string text_;
    guint handler_ = 0;
};

}  // namespace

std::vector<MidiEvent> ReadMidiFile(const std::string& content) {
    constexpr double kMillisecondsOfSecond = 1000;
    const Warnings warnings;
    const std::unique_ptr<smf_t, decltype(&smf_delete)> file(
        smf_load_from_memory(content.data(), static_cast<int>(content.size())), smf_delete);
    if (file == nullptr || !warnings.Text().empty()) throw std::runtime_error("no MIDI file: " + warnings.Text());
    if (file->format != 0 || file->number_of_tracks != 1) throw std::runtime_error("not one track of format 0");
    std::vector<MidiEvent> events;
    while (const smf_event_t* const event = smf_get_next_event(file.get())) {
        if (smf_event_is_metadata(event) != 0) continue;
        const unsigned char* const bytes = event->midi_buffer;
        events.push_back({event->time_seconds * kMillisecondsOfSecond, bytes[0],
                          std::vector<int>(bytes + 1, bytes + event->midi_buffer_length)});
    }
    return events;
}
