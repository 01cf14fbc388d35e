#pragma once

#include "backend/MidiPort.h"
#include "runtime/midi/MidiSink.h"

namespace host {

/// Sends every message to a port of the system's, which must outlive it.
class MidiPortSink final : public MidiSink {
public:
    explicit MidiPortSink(MidiPort& port) : port_(port) {}

    void Take(std::span<const std::uint8_t> message) override { port_.Send(message); }

private:
    MidiPort& port_;
};

}  // namespace host
