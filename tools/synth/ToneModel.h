#pragma once

#include "Loop.h"
#include "Note.h"

namespace synth {

// One note of the ocarina as a loop that begins with its attack: an air jet, moved across the edge of the mouth by the
// chamber's own oscillation, drives the chamber. It is worked out forwards, with the pitch given, and does not have to
// start to oscillate by itself: so it is in tune to a fraction of a cent and sounds from its first frame.
class ToneModel {
public:
    // Takes differ in everything that is left to chance, as a player's do.
    ToneModel(Note note, int take);

    // In arbitrary units; the caller sets the level.
    Loop Render() const;

private:
    // A number of whole periods and a number of frames in which they fit.
    void ChooseLength();

    Note note_;
    int take_;
    double cycles_ = 0.0;
    std::size_t frames_ = 0;
};

}  // namespace synth
