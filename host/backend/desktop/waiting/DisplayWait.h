#pragma once

#include "backend/Clock.h"

namespace host {

/// How the UI thread gets the display's events into SDL's queue and sleeps while there are none. One for a loop driver;
/// UI thread only, but for Wake.
class DisplayWait {
public:
    virtual ~DisplayWait() = default;

    /// Ends the current sleep at once, or the next one. Any thread, and signal handlers: neither blocks nor allocates.
    virtual void Wake() noexcept = 0;

    /// Moves what the display has sent into SDL's queue.
    virtual void Collect() = 0;

    /// Returns at `due`, and earlier when SDL's queue has got something or somebody wakes. It may also return for
    /// nothing.
    virtual void SleepUntil(Microseconds due) = 0;
};

}  // namespace host
