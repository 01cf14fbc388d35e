#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "measure/SoundFile.h"

// What can be heard, in figures, for tests of recordings: files of the package and what the speaker played. All
// functions are pure; samples are mono with full scale at 1, levels are in decibels of full scale (a silent window has
// kSilenceDb).
namespace measure {

using Samples = std::span<const float>;

inline constexpr double kSilenceDb = -200.0;

// Equal temperament with A4 = 440 Hz; semitone 0 is C.
double NoteHz(int octave, int semitone);
double Cents(double hz, double reference);

// The fundamental of a steady window of at least 40 ms, between 100 Hz and 2 kHz, to a tenth of a cent in 250 ms;
// nothing if the window has no pitch.
std::optional<double> PitchHz(Samples window, int rate);

double RmsDb(Samples window);

// The levels of windows one after the other; a remainder that fills no window is left out.
std::vector<double> RmsDbWindows(Samples samples, std::size_t windowFrames);

// The largest difference between neighbouring samples.
double LargestStep(Samples samples);

// The first sample beyond the level, if any.
std::optional<std::size_t> Onset(Samples samples, float level);

struct Gap {
    std::size_t begin;
    std::size_t frames;
};

// The stretches of at least `leastFrames` in which no sample goes beyond the level, also at the ends.
std::vector<Gap> FindGaps(Samples samples, float level, std::size_t leastFrames);

// One partial of a sound over its time.
struct Course {
    std::vector<double> levelDb;  // of a sine of that amplitude, full scale at 0
    std::vector<double> cents;    // from the frequency that was followed

    static constexpr double kStepMs = 1.0;
};

// Follows the partial at about `hz` within that bandwidth, both ways through a low-pass, so that nothing comes late.
// The pitch is that of the phase's way over `pitchMs`.
Course Follow(Samples samples, int rate, double hz, double bandwidthHz, double pitchMs);

// A sound without what lies below a frequency, or above one: fourth order, both ways.
std::vector<float> Above(Samples samples, int rate, double hz);
std::vector<float> Below(Samples samples, int rate, double hz);

// ITU-R BS.1770: integrated loudness in LUFS, and the true peak in dBTP.
double Loudness(Samples samples, int rate);
double TruePeakDb(Samples samples, int rate);

// The power of a sound by frequency, and what follows from it.
class Spectrum {
public:
    Spectrum(Samples samples, int rate);

    // Within a few hertz of a frequency, in decibels of the whole.
    double LineDb(double hz) const;

    // Between two frequencies, in decibels of the whole.
    double BandDb(double fromHz, double toHz) const;

    // What is left beside a fundamental and its harmonics, in decibels of the whole.
    double NoiseDb(double fundamental) const;

    // The largest correlation, 0 to 1, of that noise above `lowestHz` with itself at any delay from `leastSeconds` to
    // the sound's length less `leastSeconds`.
    double NoiseRepetition(double fundamental, double lowestHz, double leastSeconds) const;

private:
    bool IsLine(std::size_t bin, double fundamental) const;

    std::size_t frames_;
    int rate_;
    double binHz_;
    std::vector<double> power_;  // of every bin of the transform, the negative frequencies in its second half
    double whole_ = 0.0;
};

}  // namespace measure
