#pragma once

#include <cstdint>
#include <span>

namespace host {

/// Takes channel messages as they come. UI thread.
class MidiSink {
public:
    virtual ~MidiSink() = default;

    virtual void Take(std::span<const std::uint8_t> message) = 0;
    /// There will be no further message.
    virtual void Finish() {}
};

}  // namespace host
