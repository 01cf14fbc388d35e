#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace host {

/// A port of the system's MIDI sequencer that other programs listen to. UI thread only.
class MidiPort {
public:
    virtual ~MidiPort() = default;

    /// Opens the port under the program's name. False with the reason in `problem` when there is no sequencer.
    [[nodiscard]] virtual bool Open(std::string_view name, std::string& problem) = 0;
    /// Sends one whole channel message to whoever listens now, at once. A listener that is too slow loses it.
    virtual void Send(std::span<const std::uint8_t> message) = 0;
};

}  // namespace host
