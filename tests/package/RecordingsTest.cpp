// The tone recordings of the package, measured as they decode: what their comments promise, and what must hold in the
// files before any player touches them. How they are heard is measured in VoiceTest.

#include "package/SoundMeasure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "runtime/sound/ToneComments.h"
#include "runtime/soundfile/SoundReader.h"

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
    host::ToneComments tone;

    Samples All() const { return sound.samples; }
    Samples Sustained() const { return All().subspan(tone.loopStart, tone.loopLength); }
    Samples Attack(std::size_t take) const {
        return All().subspan(take == 0 ? 0 : tone.takes[take - 1], tone.loopStart);
    }
    std::size_t Frames(double seconds) const { return static_cast<std::size_t>(seconds * sound.rate); }
};

host::ToneComments ReadComments(const std::string& path, std::int64_t frames) {
    std::ifstream file(path, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    const auto* bytes = reinterpret_cast<const std::byte*>(content.data());
    std::string problem;
    const auto reader = host::SoundReader::FromMemory({bytes, bytes + content.size()}, problem);
    EXPECT_EQ("", problem) << path;
    const auto tone = host::ReadToneComments(reader->Comments(), frames, problem);
    EXPECT_EQ("", problem) << path;
    return tone;
}

Recording Open(const Note& note) {
    char name[32];
    std::snprintf(name, sizeof name, "ocarina_%d_%02d.ogg", note.octave, note.semitone);
    const std::string path = std::string(BREVANT_PACKAGE) + "data/" + name;
    measure::Sound sound = measure::ReadSound(path);
    auto tone = ReadComments(path, static_cast<std::int64_t>(sound.samples.size()));
    return {path, measure::NoteHz(note.octave, note.semitone), std::move(sound), std::move(tone)};
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

TEST(Recordings, SayWhatAPlayerMustKnowAndFitThePackage) {
    std::vector<double> lengths;
    ExpectOfEach({{"frames/s", 44100, 44100},
                  {"s of loop", 8, 12},
                  {"frames from a whole period", 0, 0.25},
                  {"takes beside the first", 2, 4},
                  {"cents of the pitch told", -0.1, 0.1}},
                 [&lengths](const Recording& r) -> std::vector<double> {
                     const double frames = r.tone.loopLength;
                     lengths.push_back(frames);
                     const double period = r.sound.rate / r.hz;
                     return {static_cast<double>(r.sound.rate), frames / r.sound.rate,
                             std::abs(frames - period * std::round(frames / period)),
                             static_cast<double>(r.tone.takes.size()),
                             measure::Cents(r.tone.pitchHz.value_or(1), r.hz)};
                 });
    std::uintmax_t bytes = 0;
    for (const auto& file : std::filesystem::directory_iterator(BREVANT_PACKAGE "data")) bytes += file.file_size();
    EXPECT_LT(bytes, 2'500'000U);
    // Two loops that fall into step would become a rhythm.
    for (const double length : lengths) {
        const auto isMultiple = [&](double other) { return std::abs(std::remainder(other, length)) < 1e-4 * length; };
        EXPECT_EQ(std::count_if(lengths.begin(), lengths.end(), isMultiple), 1) << length;
    }
}

// What is heard where the sustained part ends and begins again, and where each attack leads into it.
TEST(Recordings, LeadIntoTheSustainedPartWithoutAnAudibleSeam) {
    ExpectOfEach({{"step of the largest", 0, 1.2}, {"dB between 10 ms", 0, 1}, {"cents", 0, 1.5}, {"gaps", 0, 0}},
                 [](const Recording& r) -> std::vector<double> {
                     const std::size_t tenMs = r.Frames(0.01);
                     const std::size_t side = 10 * tenMs;
                     std::vector<double> worst(4);
                     for (std::size_t piece = 0; piece < 4; ++piece) {
                         const Samples end = (piece == 3 ? r.Sustained() : r.Attack(piece)).last(side);
                         const Samples begin = r.Sustained().first(side);
                         std::vector<float> joined(end.begin(), end.end());
                         joined.insert(joined.end(), begin.begin(), begin.end());
                         const Samples seam = joined;
                         worst[0] = std::max(worst[0], measure::LargestStep(seam.subspan(side - 1, 2)) /
                                                           measure::LargestStep(r.Sustained()));
                         const measure::Course course = measure::Follow(seam, r.sound.rate, r.hz, r.hz / 2, 30);
                         const auto from = course.levelDb.begin() + 50;
                         const auto [softest, loudest] = std::minmax_element(from, from + 100);
                         worst[1] = std::max(worst[1], *loudest - *softest);
                         for (std::size_t ms = 60; ms < 140; ++ms)
                             worst[2] = std::max(worst[2], std::abs(course.cents[ms]));
                         const double soft = 0.1 * std::pow(10.0, measure::RmsDb(seam) / 20);
                         worst[3] += static_cast<double>(
                             measure::FindGaps(seam, static_cast<float>(soft), r.Frames(0.001)).size());
                     }
                     return worst;
                 });
}

TEST(Recordings, HaveTheRoundToneOfAnOcarinaAndABreathThatDoesNotRepeat) {
    ExpectOfEach({{"dB 2nd", -38, -28},
                  {"3rd", -40, -32},
                  {"noise", -50, -31},
                  {"repetition", 0, 0.2},
                  {"dB of direct current", -300, -60},
                  // As strong as the noise that the encoder adds to it there: louder, and the encoder is heard.
                  {"dB below 170 Hz", -200, -45}},
                 [](const Recording& r) -> std::vector<double> {
                     const measure::Spectrum spectrum(r.Sustained(), r.sound.rate);
                     double sum = 0;
                     for (const float x : r.Sustained()) sum += static_cast<double>(x);
                     const auto mean = static_cast<float>(sum / static_cast<double>(r.Sustained().size()));
                     const double level = measure::RmsDb(r.Sustained());
                     return {spectrum.LineDb(2 * r.hz),
                             spectrum.LineDb(3 * r.hz),
                             spectrum.NoiseDb(r.hz),
                             spectrum.NoiseRepetition(r.hz, 1000, 0.5),
                             measure::RmsDb(Samples(&mean, 1)) - level,
                             spectrum.BandDb(20, 170)};
                 });
}

}  // namespace
