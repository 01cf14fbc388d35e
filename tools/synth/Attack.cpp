#include "Attack.h"

#include <algorithm>
#include <cmath>

namespace synth {
namespace {

// From 10 to 90 % of the level. Low tones of recorders and ocarinas take several tens of milliseconds, high ones less
// than 20 (M. Castellengo, "Acoustical analysis of initial transients in flute like instruments", Acta Acustica 85,
// 1999; N. Fletcher, T. Rossing, "The Physics of Musical Instruments", 2nd ed., ch. 16).
constexpr double kShortestSeconds = 0.015;
constexpr double kLowestNotesFurtherSeconds = 0.0185;
constexpr double kFasterAnOctave = -3.2;  // octaves of the further time
// The level is sin^2(pi/2 x^kSooner), which is at 10 and 90 % of its way at these x. The exponent lets it begin
// steeply, as the breath's answer must not be late, and end without a corner.
constexpr double kSooner = 0.7;
constexpr double kTenPercentAt = 0.1038;
constexpr double kNinetyPercentAt = 0.7204;

// The pitch stays flat for a moment and is right at the end.
constexpr double kFlatSeconds = 0.012;
constexpr double kInTuneSeconds = 0.055;

constexpr double kAirSeconds = 0.004;  // time constant

struct Mood {
    double speed;
    double cents;
    double chiffSeconds;  // to its peak
    double chiffColour;
    double chiffDecibels;  // more than usual: a dull one hides behind the breath
};

constexpr Mood kMoods[Attack::kTakes] = {
    {1.0, -17.0, 0.009, 1.4, 0.0}, {1.03, -18.0, 0.007, 2.5, 0.0}, {0.98, -16.5, 0.010, 0.75, 1.8}};

}  // namespace

Attack::Attack(const Note& note, int take, double ringSeconds) : ringSeconds_(ringSeconds) {
    const Mood& mood = kMoods[take];
    const double octaves = std::log2(note.Frequency() / kFingeredNotes[0].Frequency());
    const double rise = kShortestSeconds + kLowestNotesFurtherSeconds * std::exp2(kFasterAnOctave * octaves);
    riseSeconds_ = rise / (kNinetyPercentAt - kTenPercentAt) / mood.speed;
    cents_ = mood.cents;
    chiffSeconds_ = mood.chiffSeconds;
    chiffColour_ = mood.chiffColour;
    chiffDecibels_ = mood.chiffDecibels;
}

double Attack::Level(double seconds) const {
    const double x = std::clamp(seconds / riseSeconds_, 0.0, 1.0);
    const double sine = std::sin(kPi / 2.0 * std::pow(x, kSooner));
    return sine * sine;
}

double Attack::Air(double seconds) const {
    return 1.0 - std::exp(-std::max(0.0, seconds) / kAirSeconds);
}

double Attack::Chiff(double seconds) const {
    // x^2 exp(2 - 2x) is 1 at its peak, x = 1.
    const double x = std::max(0.0, seconds) / chiffSeconds_;
    return x * x * std::exp(2.0 - 2.0 * x);
}

// Of the tone: flat for a while, then right by half a period of a cosine.
double Attack::Cents(double seconds) const {
    const double place = std::clamp((seconds - kFlatSeconds) / (kInTuneSeconds - kFlatSeconds), 0.0, 1.0);
    return cents_ * (0.5 + 0.5 * std::cos(kPi * place));
}

double Attack::Lead(double seconds) const {
    // The integral of Cents from here to the end, turned round.
    const double way = kInTuneSeconds - kFlatSeconds;
    const double place = std::clamp((seconds - kFlatSeconds) / way, 0.0, 1.0);
    const double left = way * (0.5 * (1.0 - place) - std::sin(kPi * place) / (2.0 * kPi));
    const double lead = -cents_ * (left + std::max(0.0, kFlatSeconds - seconds));
    // The chamber's tone comes behind the jet's by the time that it rings: the jet is on its way to the right pitch
    // that much earlier.
    return lead + ringSeconds_ * Cents(seconds);
}

}  // namespace synth
