#pragma once

#include <cmath>
#include <cstdio>
#include <string>

namespace synth {

// A tone of the ocarina by octave and semitone as the ocarina counts them: semitone 0 is C, octave 4 holds A4 = 440 Hz.
struct Note {
    int octave;
    int semitone;

    // In hertz, in equal temperament.
    double Frequency() const {
        constexpr double kA4Hz = 440.0;
        constexpr int kA4Index = 4 * kSemitones + 9;
        return kA4Hz * std::exp2((Index() - kA4Index) / static_cast<double>(kSemitones));
    }

    // Counts semitones from C0.
    int Index() const { return octave * kSemitones + semitone; }

    // The recording's name, by which the ocarina's player asks for it.
    std::string FileName() const {
        char name[32];
        std::snprintf(name, sizeof name, "ocarina_%d_%02d.ogg", octave, semitone);
        return name;
    }

    static constexpr int kSemitones = 12;
};

// Every tone that some fingering of the four holes gives, from the lowest up.
inline constexpr Note kFingeredNotes[] = {{3, 7}, {3, 9}, {3, 11}, {4, 0}, {4, 1}, {4, 2},  {4, 3},  {4, 4},
                                          {4, 5}, {4, 6}, {4, 7},  {4, 8}, {4, 9}, {4, 10}, {4, 11}, {5, 0}};

}  // namespace synth
