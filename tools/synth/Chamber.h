#pragma once

namespace synth {

// The clay body and the jet that sounds it, at one fingering: a Helmholtz resonator, whose pitch depends only on how
// much the holes are open together and not on where they are. Everything is derived from the tone's frequency.
//
// Sources: H. Helmholtz, "On the Sensations of Tone", and Lord Rayleigh, "The Theory of Sound" II, ch. XVI, for the
// resonator; N. Fletcher, T. Rossing, "The Physics of Musical Instruments", 2nd ed. (F&R), ch. 7, 8 and 16 for losses
// and the jet; J. Coltman, "Jet drive mechanisms in edge tones and organ pipes", JASA 60 (1976), for the jet's travel.
class Chamber {
public:
    explicit Chamber(double frequency) : frequency_(frequency) {}

    double Frequency() const { return frequency_; }

    // The conductance (area over effective length, in metres) of mouth and open holes together that gives this pitch:
    // w^2 = c^2 S / V.
    double Conductance() const;

    // Quality of the resonance while it is played: radiation, friction and the jet's own losses side by side.
    double Quality() const;

    // Seconds in which the resonance, left alone, falls to 1/e.
    double RingSeconds() const;

    // Metres a second of the player's jet for this pitch.
    double JetSpeed() const;

    // Hertz above which the jet's turbulence falls off.
    double TurbulenceCorner() const;

    // Hertz of the first standing wave along the body, the only other resonance low enough to colour tone and breath;
    // its quality; and how much of what sounds there it adds.
    static double StandingWave();
    static constexpr double kStandingWaveQuality = 3.0;
    static constexpr double kStandingWaveShare = 0.8;

private:
    double frequency_;
};

}  // namespace synth
