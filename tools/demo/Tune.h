#pragma once

#include <string>
#include <vector>

#include "play/FingeringTable.h"

// A tune as it is written: no player's liberty is in it yet.

struct WrittenNote {
    Tone tone;
    double beats;
    bool endsPhrase = false;
};

struct Tune {
    std::string name;   // of its files
    std::string title;  // in its performance's first line
    double beatsAMinute;
    std::vector<WrittenNote> notes;
};

// The theme of Beethoven's Ode to Joy (Ninth Symphony, fourth movement, 1824).
Tune OdeToJoy();

// A tune of this project, through all sixteen tones.
Tune Compass();
