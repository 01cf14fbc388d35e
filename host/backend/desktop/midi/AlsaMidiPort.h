#pragma once

#include <alsa/asoundlib.h>

#include <memory>
#include <string>

#include "backend/MidiPort.h"

namespace host {

/// A port of ALSA's sequencer, which PipeWire and JACK show as theirs. UI thread only.
class AlsaMidiPort final : public MidiPort {
public:
    /// The library, with the version that is loaded.
    [[nodiscard]] static std::string Library();

    [[nodiscard]] bool Open(std::string_view name, std::string& problem) override;
    void Send(std::span<const std::uint8_t> message) override;

private:
    struct Releaser {
        void operator()(snd_seq_t* sequencer) const noexcept { snd_seq_close(sequencer); }
        void operator()(snd_midi_event_t* parser) const noexcept { snd_midi_event_free(parser); }
    };

    std::unique_ptr<snd_seq_t, Releaser> sequencer_;      ///< null while it is closed
    std::unique_ptr<snd_midi_event_t, Releaser> parser_;  ///< likewise
    int port_ = 0;
};

}  // namespace host
