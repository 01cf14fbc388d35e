#pragma once

#include <span>
#include <vector>

#include "backend/Clock.h"

namespace host {

/// The tones that the speaker sounds or sounded a moment ago, which a microphone beside it hears. UI thread.
class OwnTones {
public:
    /// A voice sounds this tone from now on, until it is ended as often.
    void Begin(double hertz);
    void End(double hertz, Microseconds now);

    /// Those that can still be heard: a tone rings on, devices are late, and a room answers. Valid until the next call.
    [[nodiscard]] std::span<const double> HeardLately(Microseconds now);

private:
    struct Tone {
        double hertz;
        int voices;
        Microseconds ended;
    };

    std::vector<Tone> tones_;
    std::vector<double> heard_;
};

}  // namespace host
