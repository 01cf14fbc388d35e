#pragma once

#include "Loop.h"
#include "Note.h"

namespace synth {

// How one beginning of a tone differs from its sustained part, by the time since it was blown on. Each take is another
// player's mood: a little sooner or later, flatter, with a brighter or duller breath.
class Attack {
public:
    // `ringSeconds` is the time constant with which the chamber answers.
    Attack(const Note& note, int take, double ringSeconds);

    // Of the tone, 0 to 1.
    double Level(double seconds) const;

    // Of the breath's steady noise, 0 to 1: it is there before the tone.
    double Air(double seconds) const;

    // Of the chiff, 0 to 1: turbulence of a jet that does not lock yet.
    double Chiff(double seconds) const;

    // How far the jet's phase is ahead of the sustained tone's, in cents times seconds: the jet is slow at first, and
    // the pitch is flat while it hurries. Before 0 it is flat throughout.
    double Lead(double seconds) const;

    // The middle of the chiff's band, as a part of what is usual for the note.
    double ChiffColour() const { return chiffColour_; }
    // Decibels more than usual.
    double ChiffDecibels() const { return chiffDecibels_; }

    // By then nothing of the attack is left.
    static constexpr double kSeconds = 0.2;
    static constexpr int kTakes = 3;

private:
    double Cents(double seconds) const;

    double riseSeconds_;
    double ringSeconds_;
    double cents_;
    double chiffSeconds_;
    double chiffColour_;
    double chiffDecibels_;
};

}  // namespace synth
