// Writes the demonstration: a performance file that fingers the theme of Beethoven's Ode to Joy (Ninth Symphony, fourth
// movement, 1824) and the breath that goes with it, as the turbulence that a microphone hears from a player's mouth.
//
//   brevant_demo DIR     writes DIR/ode-to-joy.performance and DIR/ode-to-joy.wav

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "play/FingeringTable.h"

namespace {

constexpr int kRate = 8000;
constexpr int kHoles = 4;
constexpr int kBeatMs = 480;
// The splash takes 2.5 s; a player takes a breath before the first note.
constexpr int kFirstNoteMs = 3200;
// A tongue closes the breath this long before a note that repeats the one before; two blocks of the microphone fit in.
constexpr int kTongueMs = 70;
constexpr int kPhraseBreathMs = 150;
// The breath rises and falls over this time at the start and the end of a slur.
constexpr int kEdgeMs = 12;

struct Note {
    Tone tone;
    double beats;
    bool endsPhrase;
};

constexpr Tone kLowG{3, 7};
constexpr Tone kC{4, 0};
constexpr Tone kD{4, 2};
constexpr Tone kE{4, 4};
constexpr Tone kF{4, 5};
constexpr Tone kG{4, 7};

std::vector<Note> OdeToJoy() {
    const std::vector<Note> opening = {{kE, 1, false}, {kE, 1, false}, {kF, 1, false}, {kG, 1, false},
                                       {kG, 1, false}, {kF, 1, false}, {kE, 1, false}, {kD, 1, false},
                                       {kC, 1, false}, {kC, 1, false}, {kD, 1, false}, {kE, 1, false}};
    const std::vector<Note> halfClose = {{kE, 1.5, false}, {kD, 0.5, false}, {kD, 2, true}};
    const std::vector<Note> fullClose = {{kD, 1.5, false}, {kC, 0.5, false}, {kC, 2, true}};
    const std::vector<Note> middle = {
        {kD, 1, false},   {kD, 1, false}, {kE, 1, false}, {kC, 1, false}, {kD, 1, false},   {kE, 0.5, false},
        {kF, 0.5, false}, {kE, 1, false}, {kC, 1, false}, {kD, 1, false}, {kE, 0.5, false}, {kF, 0.5, false},
        {kE, 1, false},   {kD, 1, false}, {kC, 1, false}, {kD, 1, false}, {kLowG, 2, true}};
    std::vector<Note> tune;
    for (const auto* part : {&opening, &halfClose, &opening, &fullClose, &middle, &opening, &fullClose}) {
        tune.insert(tune.end(), part->begin(), part->end());
    }
    return tune;
}

int MaskOf(const Tone& tone) {
    for (int mask = 0; mask < 1 << kHoles; ++mask) {
        const Tone& candidate = kFingeringTable[static_cast<std::size_t>(mask)];
        if (candidate.octave == tone.octave && candidate.semitone == tone.semitone) return mask;
    }
    throw std::runtime_error("the instrument has no such tone");
}

bool IsSame(const Tone& a, const Tone& b) {
    return a.octave == b.octave && a.semitone == b.semitone;
}

// The breath's strength over the time of a slur, 0..1.
struct Slur {
    int beginMs;
    int endMs;
    double level;
};

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

double Envelope(const Slur& slur, double ms) {
    if (ms < slur.beginMs || ms >= slur.endMs) return 0;
    const double edge = std::min({1.0, (ms - slur.beginMs) / kEdgeMs, (slur.endMs - ms) / kEdgeMs});
    // A slur swells a little and tapers, as a breath does.
    const double place = (ms - slur.beginMs) / (slur.endMs - slur.beginMs);
    return slur.level * edge * (0.88 + 0.12 * std::sin(place * 3.14159265358979));
}

void WriteBreath(const std::string& path, const std::vector<Slur>& slurs) {
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
    const auto frames = static_cast<std::size_t>(slurs.back().endMs) * kRate / 1000;
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const double ms = static_cast<double>(frame) * kMsPerSecond / kRate;
        while (current + 1 < slurs.size() && ms >= slurs[current].endMs) ++current;
        samples.push_back(static_cast<float>(Envelope(slurs[current], ms) * turbulence.Next()));
    }
    const auto count = static_cast<sf_count_t>(samples.size());
    if (sf_writef_float(file.get(), samples.data(), count) != count)
        throw std::runtime_error(path + " cannot be written");
}

void WritePerformance(const std::string& path, const std::vector<Note>& tune, std::vector<Slur>& slurs) {
    constexpr const char* kKeys[kHoles] = {"KeyR", "KeyU", "KeyF", "KeyJ"};
    constexpr double kQuiet = 0.75;
    constexpr double kLoud = 0.95;
    std::ofstream file(path);
    file << "# The theme of the Ode to Joy (L. van Beethoven, 1824). Made by brevant_demo together with its breath.\n"
         << "# notes: " << tune.size() << "\n"
         << "1000 screenshot splash.png\n"
         << "2900 screenshot play.png\n";
    int covered = 0;
    double beat = 0;
    bool startsSlur = true;
    bool hasPictureOfPlaying = false;
    for (std::size_t i = 0; i < tune.size(); ++i) {
        const Note& note = tune[i];
        const int begin = kFirstNoteMs + static_cast<int>(beat * kBeatMs);
        beat += note.beats;
        const int end = kFirstNoteMs + static_cast<int>(beat * kBeatMs);
        const int mask = MaskOf(note.tone);
        // Before a slur the fingers are in place a moment earlier; within one they move with the note.
        const int fingersMs = startsSlur ? begin - kTongueMs / 2 : begin;
        for (int hole = 0; hole < kHoles; ++hole) {
            if ((covered & ~mask & 1 << hole) != 0) file << fingersMs << " key " << kKeys[hole] << " release\n";
        }
        for (int hole = 0; hole < kHoles; ++hole) {
            if ((mask & ~covered & 1 << hole) != 0) file << fingersMs << " key " << kKeys[hole] << " press\n";
        }
        covered = mask;
        if (startsSlur) slurs.push_back({begin, end, note.beats > 1 ? kLoud : kQuiet});
        const bool isRepeated = i + 1 < tune.size() && IsSame(note.tone, tune[i + 1].tone);
        const bool endsSlur = note.endsPhrase || isRepeated || i + 1 == tune.size();
        slurs.back().endMs = endsSlur ? end - (note.endsPhrase ? kPhraseBreathMs : kTongueMs) : end;
        startsSlur = endsSlur;
        if (!hasPictureOfPlaying && mask == (1 << kHoles) - 1) {
            file << begin + kBeatMs / 2 << " screenshot playing.png\n";
            hasPictureOfPlaying = true;
        }
    }
    constexpr int kRestMs = 600;
    const int end = kFirstNoteMs + static_cast<int>(beat * kBeatMs) + kRestMs;
    for (int hole = 0; hole < kHoles; ++hole) {
        if ((covered & 1 << hole) != 0) file << end << " key " << kKeys[hole] << " release\n";
    }
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
        const std::string folder = argv[1];
        std::vector<Slur> slurs;
        WritePerformance(folder + "/ode-to-joy.performance", OdeToJoy(), slurs);
        WriteBreath(folder + "/ode-to-joy.wav", slurs);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "brevant_demo: %s\n", error.what());
        return 1;
    }
    return 0;
}
