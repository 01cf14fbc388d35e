#include "runtime/sound/OwnTones.h"

#include <algorithm>

namespace host {

namespace {

// The release of the lowest tone, 150 ms of delay in both devices and a small room's decay.
constexpr Microseconds kHeardAfterwards = 500 * kMicrosecondsPerMillisecond;

}  // namespace

void OwnTones::Begin(double hertz) {
    const auto known =
        std::find_if(tones_.begin(), tones_.end(), [&](const Tone& tone) { return tone.hertz == hertz; });
    if (known == tones_.end()) {
        tones_.push_back({hertz, 1, 0});
    } else {
        ++known->voices;
    }
}

void OwnTones::End(double hertz, Microseconds now) {
    const auto known =
        std::find_if(tones_.begin(), tones_.end(), [&](const Tone& tone) { return tone.hertz == hertz; });
    if (known == tones_.end()) return;
    --known->voices;
    known->ended = now;
}

std::span<const double> OwnTones::HeardLately(Microseconds now) {
    const auto isOver = [&](const Tone& tone) { return tone.voices <= 0 && now - tone.ended > kHeardAfterwards; };
    tones_.erase(std::remove_if(tones_.begin(), tones_.end(), isOver), tones_.end());
    heard_.clear();
    for (const Tone& tone : tones_) heard_.push_back(tone.hertz);
    return heard_;
}

}  // namespace host
