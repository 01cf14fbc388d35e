#pragma once

#include "Loop.h"
#include "Note.h"

#include <vector>

namespace synth {

// One note of the ocarina: its sustained part as a loop, and beginnings that each lead into that loop's first frame.
struct Tone {
    Loop sustained;
    std::vector<Loop> attacks;    // of equal length
    double frequency = 0.0;       // hertz, of the sustained part
    double releaseSeconds = 0.0;  // from 90 to 10 %, by what the chamber holds
};

// An air jet, moved across the edge of the mouth by the chamber's own oscillation, drives the chamber. It is worked out
// forwards, with the pitch given, and does not have to start to oscillate by itself: so it is in tune to a fraction of
// a cent.
class ToneModel {
public:
    explicit ToneModel(Note note);

    // In arbitrary units; the caller sets the level.
    Tone Render() const;

private:
    // A number of whole periods and a number of frames in which they fit.
    void ChooseLength();

    Note note_;
    double cycles_ = 0.0;
    std::size_t frames_ = 0;
};

}  // namespace synth
