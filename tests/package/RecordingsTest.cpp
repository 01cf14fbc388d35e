// The tone recordings of the package, measured as they decode: what an ear would object to, in figures.

#include "package/SoundMeasure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

using measure::Samples;

struct Note {
    int octave;
    int semitone;
};

// The tones that the sixteen fingerings give.
constexpr Note kNotes[] = {{3, 7}, {3, 9}, {3, 11}, {4, 0}, {4, 1}, {4, 2},  {4, 3},  {4, 4},
                           {4, 5}, {4, 6}, {4, 7},  {4, 8}, {4, 9}, {4, 10}, {4, 11}, {5, 0}};

struct Recording {
    std::string path;
    double hz;
    measure::Sound sound;

    Samples All() const { return sound.samples; }
    std::size_t Frames(double seconds) const { return static_cast<std::size_t>(seconds * sound.rate); }
    double CentsOff(Samples window) const {
        return measure::Cents(measure::PitchHz(window, sound.rate).value_or(1), hz);
    }
};

Recording Open(const Note& note) {
    char name[32];
    std::snprintf(name, sizeof name, "ocarina_%d_%02d.ogg", note.octave, note.semitone);
    const std::string path = std::string(BREVANT_PACKAGE) + "data/" + name;
    return {path, measure::NoteHz(note.octave, note.semitone), measure::ReadSound(path)};
}

// A figure's name and the range that it must be in.
struct Limit {
    const char* name;
    double least;
    double most;
};

// Measures every recording, one figure for each limit, and prints them, so that a change of the tone can be judged.
void ExpectOfEach(const std::vector<Limit>& limits,
                  const std::function<std::vector<double>(const Recording&)>& measure) {
    for (const Note& note : kNotes) {
        const Recording recording = Open(note);
        const std::vector<double> figures = measure(recording);
        ASSERT_EQ(figures.size(), limits.size());
        std::printf("%d %2d", note.octave, note.semitone);
        for (std::size_t i = 0; i < limits.size(); ++i) {
            std::printf(" | %s %.2f", limits[i].name, figures[i]);
            EXPECT_GE(figures[i], limits[i].least) << recording.path << ": " << limits[i].name;
            EXPECT_LE(figures[i], limits[i].most) << recording.path << ": " << limits[i].name;
        }
        std::puts("");
    }
}

TEST(Recordings, HaveTheFormThatThePackageAllowsAndAWholeNumberOfPeriods) {
    ExpectOfEach({{"kB", 1, 100}, {"frames/s", 44100, 44100}, {"s", 4, 8}, {"frames from a whole period", 0, 0.25}},
                 [](const Recording& r) -> std::vector<double> {
                     const double frames = static_cast<double>(r.All().size());
                     const double period = r.sound.rate / r.hz;
                     return {static_cast<double>(std::filesystem::file_size(r.path)) / 1000,
                             static_cast<double>(r.sound.rate), frames / r.sound.rate,
                             std::abs(frames - period * std::round(frames / period))};
                 });
}

TEST(Recordings, StayInTuneWithASmallWanderOfTheBreath) {
    ExpectOfEach({{"cents lowest", -3, 3}, {"highest", -3, 3}, {"wander", 0.2, 5}},
                 [](const Recording& r) -> std::vector<double> {
                     std::vector<double> cents;
                     const std::size_t window = r.Frames(0.25);
                     for (std::size_t at = r.Frames(0.1); at + window <= r.All().size(); at += window / 2) {
                         cents.push_back(r.CentsOff(r.All().subspan(at, window)));
                     }
                     const auto [lowest, highest] = std::minmax_element(cents.begin(), cents.end());
                     return {*lowest, *highest, *highest - *lowest};
                 });
}

TEST(Recordings, AreEquallyLoudSoundAtOnceAndNeverClip) {
    ExpectOfEach(
        {{"LUFS", -16.5, -15.5}, {"dBTP", -20, -1}, {"dB of direct current", -300, -60}, {"dB of onset", -3, 3}},
        [](const Recording& r) -> std::vector<double> {
            double sum = 0;
            for (const float x : r.All()) {
                sum += static_cast<double>(x);
            }
            const double level = measure::RmsDb(r.All());
            const float mean = static_cast<float>(sum / static_cast<double>(r.All().size()));
            return {measure::Loudness(r.All(), r.sound.rate), measure::TruePeakDb(r.All(), r.sound.rate),
                    measure::RmsDb(Samples(&mean, 1)) - level, measure::RmsDb(r.All().first(r.Frames(0.015))) - level};
        });
}

// What is heard where the recording ends and at once begins again.
TEST(Recordings, RepeatWithoutAnAudibleSeam) {
    ExpectOfEach(
        {{"step of the largest", 0, 1.2}, {"dB between 10 ms", 0, 1}, {"cents", 0, 3}, {"gaps", 0, 0}},
        [](const Recording& r) -> std::vector<double> {
            const std::size_t tenMs = r.Frames(0.01);
            const std::size_t side = 15 * tenMs;
            const Samples end = r.All().last(side);
            const Samples begin = r.All().first(side);
            std::vector<float> joined(end.begin(), end.end());
            joined.insert(joined.end(), begin.begin(), begin.end());
            const Samples seam = joined;

            const double step = measure::LargestStep(seam.subspan(side - 1, 2)) / measure::LargestStep(r.All());
            double unevenness = 0;
            for (const std::size_t shift : {std::size_t{0}, tenMs / 2}) {  // meeting at the seam, and across it
                const std::vector<double> levels = measure::RmsDbWindows(seam.subspan(shift), tenMs);
                const auto [softest, loudest] = std::minmax_element(levels.begin(), levels.end());
                unevenness = std::max(unevenness, *loudest - *softest);
            }
            double cents = 0;
            for (const std::size_t shift : {std::size_t{0}, 5 * tenMs}) {  // before the attack, and with all of it
                cents = std::max(cents, std::abs(r.CentsOff(seam.subspan(shift, 25 * tenMs))));
            }
            const double soft = 0.1 * std::pow(10.0, measure::RmsDb(seam) / 20);
            const auto gaps = measure::FindGaps(seam, static_cast<float>(soft), tenMs / 10);
            return {step, unevenness, cents, static_cast<double>(gaps.size())};
        });
}

TEST(Recordings, HaveTheRoundToneOfAnOcarinaAndABreathThatDoesNotRepeat) {
    ExpectOfEach({{"dB 2nd", -45, -25}, {"3rd", -45, -25}, {"noise", -50, -35}, {"repetition", 0, 0.2}},
                 [](const Recording& r) -> std::vector<double> {
                     const measure::Spectrum spectrum(r.All(), r.sound.rate);
                     return {spectrum.LineDb(2 * r.hz), spectrum.LineDb(3 * r.hz), spectrum.NoiseDb(r.hz),
                             spectrum.NoiseRepetition(r.hz, 1000, 0.5)};
                 });
}

}  // namespace
