// Writes the demonstrations: performance files that finger tunes, and the breath that goes with each, as the turbulence
// that a microphone hears from a player's mouth.
//
//   brevant_demo DIR     writes DIR/NAME.performance and DIR/NAME.wav for each tune

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iomanip>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Interpretation.h"
#include "Tune.h"

namespace {

constexpr int kRate = 8000;
constexpr int kHoles = 4;
// The breath rises and falls over this time at the start and the end of a slur.
constexpr int kEdgeMs = 6;
// Before a new breath the fingers are in place this much earlier.
constexpr double kFingersMs = 30;
// The volume is set this much before the note that has it.
constexpr double kVolumeMs = 8;
constexpr double kRestMs = 600;

int MaskOf(const Tone& tone) {
    for (int mask = 0; mask < 1 << kHoles; ++mask) {
        const Tone& candidate = kFingeringTable[static_cast<std::size_t>(mask)];
        if (candidate.octave == tone.octave && candidate.semitone == tone.semitone) return mask;
    }
    throw std::runtime_error("the instrument has no such tone");
}

// Breath noise: low-passed turbulence. A fixed generator keeps the file the same wherever it is made.
class Turbulence {
public:
    double Next() {
        // xorshift32, G. Marsaglia, "Xorshift RNGs", Journal of Statistical Software 8 (2003).
        state_ ^= state_ << 13U;
        state_ ^= state_ >> 17U;
        state_ ^= state_ << 5U;
        const double white = static_cast<double>(state_) / 2147483648.0 - 1.0;
        constexpr double kSmoothing = 0.75;
        filtered_ += (white - filtered_) * (1.0 - kSmoothing);
        constexpr double kLevelAfterFilter = 2.6;
        return std::clamp(filtered_ * kLevelAfterFilter, -1.0, 1.0);
    }

private:
    std::uint32_t state_ = 0x0CA21A4U;
    double filtered_ = 0;
};

double Envelope(const Breath& breath, double ms) {
    if (ms < breath.beginMs || ms >= breath.endMs) return 0;
    const double edge = std::min({1.0, (ms - breath.beginMs) / kEdgeMs, (breath.endMs - ms) / kEdgeMs});
    // A breath swells a little and tapers.
    const double place = (ms - breath.beginMs) / (breath.endMs - breath.beginMs);
    return breath.level * edge * (0.88 + 0.12 * std::sin(place * 3.14159265358979));
}

void WriteBreath(const std::string& path, const std::vector<Breath>& breaths) {
    SF_INFO info{};
    info.samplerate = kRate;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_U8;
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_WRITE, &info), sf_close);
    if (!file) throw std::runtime_error(path + " cannot be written");
    constexpr double kMsPerSecond = 1000.0;
    std::vector<float> samples;
    Turbulence turbulence;
    std::size_t current = 0;
    const auto frames = static_cast<std::size_t>(breaths.back().endMs) * kRate / 1000;
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const double ms = static_cast<double>(frame) * kMsPerSecond / kRate;
        while (current + 1 < breaths.size() && ms >= breaths[current].endMs) ++current;
        samples.push_back(static_cast<float>(Envelope(breaths[current], ms) * turbulence.Next()));
    }
    const auto count = static_cast<sf_count_t>(samples.size());
    if (sf_writef_float(file.get(), samples.data(), count) != count)
        throw std::runtime_error(path + " cannot be written");
}

void WriteFingers(std::ostream& file, double ms, int covered, int mask) {
    constexpr const char* kKeys[kHoles] = {"KeyR", "KeyU", "KeyF", "KeyJ"};
    for (int hole = 0; hole < kHoles; ++hole) {
        if ((covered & ~mask & 1 << hole) != 0) file << ms << " key " << kKeys[hole] << " release\n";
    }
    for (int hole = 0; hole < kHoles; ++hole) {
        if ((mask & ~covered & 1 << hole) != 0) file << ms << " key " << kKeys[hole] << " press\n";
    }
}

// `hasPictures` for the one that shows the program, too. There the volume stays until the last picture, which shows no
// notice of it.
void WritePerformance(const std::string& path, const Tune& tune, const Interpretation& played, bool hasPictures) {
    std::ofstream file(path);
    file << "# " << tune.title << " Made by brevant_demo together with its breath.\n"
         << "# notes: " << tune.notes.size() << "\n"
         << std::fixed << std::setprecision(1);
    if (hasPictures) file << "1000 screenshot splash.png\n2900 screenshot play.png\n";
    int covered = 0;
    int ringtone = 0;
    bool isPictureDue = hasPictures;
    for (const PlayedNote& note : played.notes) {
        const int mask = MaskOf(note.tone);
        if (!isPictureDue && note.ringtone != ringtone) {
            file << note.beginMs - (note.isTongued ? kFingersMs : 0) - kVolumeMs << " ringtone " << note.ringtone
                 << "\n";
            ringtone = note.ringtone;
        }
        WriteFingers(file, note.beginMs - (note.isTongued ? kFingersMs : kSpeakerMs), covered, mask);
        file << "# meant at " << note.beginMs << ": ocarina_" << note.tone.octave << '_' << std::setw(2)
             << std::setfill('0') << note.tone.semitone << ".ogg\n";
        covered = mask;
        if (isPictureDue && mask == (1 << kHoles) - 1) {
            constexpr double kIntoTheNoteMs = 240;
            file << note.beginMs + kIntoTheNoteMs << " screenshot playing.png\n";
            isPictureDue = false;
        }
    }
    const double end = played.endMs + kRestMs;
    WriteFingers(file, end, covered, 0);
    file << end << " quit\n";
    if (!file) throw std::runtime_error(path + " cannot be written");
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: brevant_demo DIR\n");
        return 2;
    }
    try {
        const std::string folder = std::string(argv[1]) + "/";
        bool hasPictures = true;
        for (const Tune& tune : {OdeToJoy(), Compass()}) {
            const Interpretation played(tune);
            WritePerformance(folder + tune.name + ".performance", tune, played, hasPictures);
            WriteBreath(folder + tune.name + ".wav", played.breaths);
            hasPictures = false;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "brevant_demo: %s\n", error.what());
        return 1;
    }
    return 0;
}
