#include "backend/desktop/midi/AlsaMidiPort.h"

namespace host {

namespace {

constexpr std::size_t kLongestMessage = 3;

// The library says on stderr what it also returns.
void SaySilently(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/, const char* /*format*/,
                 ...) {}

}  // namespace

std::string AlsaMidiPort::Library() {
    return std::string("alsa-lib ") + snd_asoundlib_version();
}

bool AlsaMidiPort::Open(std::string_view name, std::string& problem) {
    const std::string text(name);
    snd_lib_error_set_handler(SaySilently);
    snd_seq_t* sequencer = nullptr;
    int error = snd_seq_open(&sequencer, "default", SND_SEQ_OPEN_OUTPUT, SND_SEQ_NONBLOCK);
    sequencer_.reset(error < 0 ? nullptr : sequencer);
    if (error >= 0) error = snd_seq_set_client_name(sequencer, text.c_str());
    if (error >= 0) {
        error = port_ =
            snd_seq_create_simple_port(sequencer, text.c_str(), SND_SEQ_PORT_CAP_READ | SND_SEQ_PORT_CAP_SUBS_READ,
                                       SND_SEQ_PORT_TYPE_MIDI_GENERIC | SND_SEQ_PORT_TYPE_APPLICATION);
    }
    if (error >= 0) {
        snd_midi_event_t* parser = nullptr;
        error = snd_midi_event_new(kLongestMessage, &parser);
        parser_.reset(parser);
    }
    snd_lib_error_set_handler(nullptr);
    if (error >= 0) return true;
    problem = snd_strerror(error);
    parser_.reset();
    sequencer_.reset();
    return false;
}

void AlsaMidiPort::Send(std::span<const std::uint8_t> message) {
    if (!sequencer_) return;
    snd_seq_event_t event;
    snd_seq_ev_clear(&event);
    snd_midi_event_reset_encode(parser_.get());
    if (snd_midi_event_encode(parser_.get(), message.data(), static_cast<long>(message.size()), &event) < 0) return;
    snd_seq_ev_set_source(&event, static_cast<unsigned char>(port_));
    snd_seq_ev_set_subs(&event);
    snd_seq_ev_set_direct(&event);
    snd_seq_event_output_direct(sequencer_.get(), &event);
}

}  // namespace host
