#pragma once

#include <vector>

#include "Tune.h"

// How a player plays a tune: when each note begins to the millisecond, which ones the tongue or a new breath begins and
// which ones only the fingers, and how loud it all is.

struct PlayedNote {
    Tone tone;
    double beginMs;
    bool isTongued;  // it begins with a new breath; the others are slurred to
    bool endsPhrase;
    int ringtone;  // the volume of the phone, the instrument's only dynamics
};

// One breath between two closings of the tongue.
struct Breath {
    int beginMs;
    int endMs;
    double level;  // 0..1
};

struct Interpretation {
    std::vector<PlayedNote> notes;
    std::vector<Breath> breaths;
    double endMs;

    // The player's liberties come from a generator with a fixed seed: the same each time.
    explicit Interpretation(const Tune& tune);
};

// The microphone delivers blocks of this length from the program's start on. A breath is heard when its first block is
// over, so it begins a block before its note.
inline constexpr int kBlockMs = 20;

// A tone begins with the next of the speaker's periods, 0 to 5.8 ms after it was asked for; it is asked for this much
// before it is meant.
inline constexpr double kSpeakerMs = 2.9;
