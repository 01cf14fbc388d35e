// Whole performances through the launcher, judged by what the recording and the trace say.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <set>
#include <span>
#include <sstream>
#include <string>
#include <string_view>

#include "package/SoundMeasure.h"
#include "play/FingeringTable.h"
#include "support/ProgramRun.h"

namespace {

constexpr int kRate = 44100;
constexpr int kHoles = 4;
constexpr int kMasks = 16;
constexpr int kPlayMs = 3000;  // The splash is over by then.
constexpr float kSilent = 1e-4F;
// Some four times the release of the lowest tone: nothing of any tone is left after it.
constexpr double kRingMs = 260;
constexpr std::array<const char*, kHoles> kKeys = {"KeyR", "KeyU", "KeyF", "KeyJ"};

std::size_t FrameAt(double ms) {
    return static_cast<std::size_t>(ms * kRate / 1000);
}

std::span<const float> Between(const std::vector<float>& sound, double beginMs, double endMs) {
    return std::span(sound).subspan(FrameAt(beginMs), FrameAt(endMs) - FrameAt(beginMs));
}

double LevelBetween(const std::vector<float>& sound, double beginMs, double endMs) {
    return measure::RmsDb(Between(sound, beginMs, endMs));
}

// Covers the holes of `mask` and lifts the others, at a time.
std::string Finger(int ms, int mask) {
    std::string lines;
    for (int hole = 0; hole < kHoles; ++hole) {
        const char* what = (mask & 1 << hole) != 0 ? " press\n" : " release\n";
        lines += std::to_string(ms) + " key " + kKeys[static_cast<std::size_t>(hole)] + what;
    }
    return lines;
}

std::string FileOf(const Tone& tone) {
    std::array<char, 32> name{};
    std::snprintf(name.data(), name.size(), "ocarina_%d_%02d.ogg", tone.octave, tone.semitone);
    return name.data();
}

void ExpectTone(const std::vector<float>& sound, double beginMs, double endMs, const Tone& tone) {
    constexpr double kMostCents = 5;
    const auto pitch = measure::PitchHz(Between(sound, beginMs, endMs), kRate);
    ASSERT_TRUE(pitch) << FileOf(tone) << " does not sound at " << beginMs << " ms";
    EXPECT_NEAR(0, measure::Cents(*pitch, measure::NoteHz(tone.octave, tone.semitone)), kMostCents) << FileOf(tone);
}

// A breath as a sound card's microphone gives it: 16 bits, mono, 44100 Hz; loud between two times, else silent.
void WriteBreath(const std::string& path, int beginMs, int endMs, int lengthMs) {
    constexpr int kBytes = 2;
    std::ofstream file(path, std::ios::binary);
    const auto put = [&file](std::uint32_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) file.put(static_cast<char>(value >> (8 * i) & 0xFF));
    };
    const auto frames = static_cast<std::uint32_t>(FrameAt(lengthMs));
    file << "RIFF";
    put(36 + frames * kBytes, 4);
    file << "WAVEfmt ";
    put(16, 4);
    put(1, 2);
    put(1, 2);
    put(kRate, 4);
    put(kRate * kBytes, 4);
    put(kBytes, 2);
    put(16, 2);
    file << "data";
    put(frames * kBytes, 4);
    std::uint32_t random = 1;
    double smooth = 0;
    for (std::uint32_t i = 0; i < frames; ++i) {
        random = random * 1664525U + 1013904223U;  // Numerical Recipes' quick generator, 2nd ed., 7.1
        smooth += (static_cast<double>(random) / 4294967296.0 - 0.5 - smooth) * 0.1;
        const bool isBlown = i >= FrameAt(beginMs) && i < FrameAt(endMs);
        put(static_cast<std::uint16_t>(
                static_cast<std::int16_t>(isBlown ? std::clamp(smooth * 160000, -30000.0, 30000.0) : 0)),
            2);
    }
}

}  // namespace

TEST(Playing, SoundsTheNoteOfEachFingeringWhileABreathFileBlows) {
    constexpr int kNoteMs = 500;
    constexpr int kEndMs = kPlayMs + kMasks * kNoteMs;
    ProgramRun run;
    WriteBreath(run.Folder() / "breath.wav", kPlayMs, kEndMs, kEndMs + 1000);
    std::string performance;
    for (int mask = 0; mask < kMasks; ++mask) performance += Finger(kPlayMs + mask * kNoteMs, mask);
    performance += std::to_string(kEndMs + 600) + " quit\n";
    ASSERT_EQ(0, run.Play(performance, {"--breath", run.Folder() / "breath.wav"})) << run.Errors();

    const auto sound = run.ReadRecording();
    EXPECT_LT(LevelBetween(sound, 0, kPlayMs), measure::kSilenceDb + 1) << "nothing sounds before the breath";
    for (int mask = 0; mask < kMasks; ++mask) {
        const double begin = kPlayMs + mask * kNoteMs;
        ExpectTone(sound, begin + 150, begin + kNoteMs - 20, kFingeringTable[static_cast<std::size_t>(mask)]);
    }
    EXPECT_TRUE(measure::FindGaps(Between(sound, kPlayMs + 40, kEndMs - 20), kSilent, 50).empty());
    // One block may hold the end of the breath; the one after it ends the tone.
    EXPECT_LT(LevelBetween(sound, kEndMs + 20 + 20 + 6 + kRingMs, kEndMs + 600), measure::kSilenceDb + 1);
    EXPECT_EQ("", run.Errors());
}

TEST(Playing, IsTheSameToTheByteOnEveryRun) {
    const std::string performance = "1500 screenshot a.png\n" + Finger(kPlayMs, 5) + "3000 breath 0.5\n" +
                                    "3100.25 key KeyJ press\n" +
                                    "3200 screenshot b.png\n4000 breath 0\n4100 key back press\n+10 key back release\n";
    ProgramRun first;
    ProgramRun second;
    ASSERT_EQ(0, first.Play(performance, {"--trace-timers"}));
    ASSERT_EQ(0, second.Play(performance, {"--trace-timers"}));
    for (const char* file : {"recording.wav", "trace.jsonl", "a.png", "b.png", "data/info.ini"}) {
        const std::string content = first.Folder().Read(file);
        EXPECT_FALSE(content.empty()) << file;
        EXPECT_TRUE(content == second.Folder().Read(file)) << file;
    }
}

TEST(Playing, ChangesTheToneAtOnceAndOnlyWhenFingersOrBreathChange) {
    ProgramRun run;
    ASSERT_EQ(0, run.Play("3000 breath 0.6\n" + Finger(3500, 3) + "4000 key KeyF press\n5000 breath 0\n6000 quit\n"));
    const auto sound = run.ReadRecording();
    ExpectTone(sound, 3200, 3480, {5, 0});
    ExpectTone(sound, 3700, 3980, {4, 3});
    ExpectTone(sound, 4200, 4900, {4, 4});
    // Blowing, two fingers that go down one after the other and two keys lifted that were not down, then the third
    // hole.
    std::vector<std::string> files;
    for (const auto& line : run.ReadTrace("player", "open")) files.push_back(line["file"]);
    EXPECT_EQ(
        (std::vector<std::string>{"ocarina_5_00.ogg", "ocarina_4_01.ogg", "ocarina_4_03.ogg", "ocarina_4_04.ogg"}),
        files);
    // The last voice before 4000 ms ends and the new one begins within one period of 256 frames.
    const auto change = Between(sound, 3990, 4020);
    EXPECT_TRUE(measure::FindGaps(change, kSilent, 20).empty());
}

TEST(Playing, SoundsWithoutBreathWhenAutomaticPlayIsOn) {
    struct Case {
        const char* stored;
        bool sounds;
    };
    for (const Case& each : {Case{"1", true}, Case{"0", false}, Case{"2", false}, Case{"yes", false}}) {
        ProgramRun run;
        std::filesystem::create_directory(run.Folder() / "data");
        run.Folder().Write("data/info.ini", std::string("[Setup]\nAutoPlay=") + each.stored + "\n");
        ASSERT_EQ(0, run.Play(Finger(3000, 8) + "4000 key KeyJ release\n4500 quit\n"));
        const auto sound = run.ReadRecording();
        EXPECT_EQ(each.sounds, LevelBetween(sound, 3100, 3900) > -40) << each.stored;
        if (each.sounds) ExpectTone(sound, 3200, 3950, {4, 10});
        EXPECT_LT(LevelBetween(sound, 4020 + kRingMs, 4500), measure::kSilenceDb + 1) << each.stored;
        const auto starts = run.ReadTrace("microphone", "start");
        EXPECT_EQ(each.sounds, starts.empty()) << each.stored;
    }
}

TEST(Playing, FollowsTheRingtoneVolumeFromTheNextToneOn) {
    ProgramRun run;
    ASSERT_EQ(0, run.Play("3000 breath 0.6\n3500 ringtone 15\n" + Finger(4000, 15) + "5000 ringtone 0\n" +
                          Finger(5500, 0) + "6500 quit\n"));
    std::set<int> volumes;
    for (const auto& line : run.ReadTrace("player", "volume")) volumes.insert(line["value"].get<int>());
    EXPECT_EQ((std::set<int>{0, 72, 99}), volumes);
    const auto sound = run.ReadRecording();
    EXPECT_NEAR(LevelBetween(sound, 3100, 3480), LevelBetween(sound, 3520, 3950), 1.5) << "a tone keeps its volume";
    EXPECT_LT(LevelBetween(sound, 6000, 6400), measure::kSilenceDb + 1);
    EXPECT_LT(*std::max_element(sound.begin(), sound.end()), 0.999F) << "the loudest volume does not clip";
}

TEST(Playing, RepeatsTheRecordingWithoutAGapForAMinute) {
    ProgramRun run;
    ASSERT_EQ(0, run.Play(Finger(3000, 15) + "3000 breath 0.9\n63000 breath 0\n63500 quit\n"));
    EXPECT_GE(run.ReadTrace("player", "end").size(), 6U);
    EXPECT_EQ(1U, run.ReadTrace("player", "open").size()) << "the fingers are down before the breath comes";
    const auto sound = run.ReadRecording();
    const auto held = Between(sound, 3100, 63000);
    EXPECT_TRUE(measure::FindGaps(held, kSilent, 50).empty());
    const auto levels = measure::RmsDbWindows(held, kRate / 20);
    const auto [softest, loudest] = std::minmax_element(levels.begin(), levels.end());
    EXPECT_LT(*loudest - *softest, 2.0) << "dB between windows of 50 ms";
}

TEST(Playing, RunsOnWhenADeviceIsLostAndPicksItUpAgain) {
    ProgramRun run;
    ASSERT_EQ(0, run.Play(Finger(2900, 15) +
                          "3000 breath 0.8\n4000 lose speaker\n5000 restore speaker\n6000 lose microphone\n"
                          "7000 restore microphone\n8000 lose speaker\n8100 restore speaker\n9000 quit\n"));
    const auto sound = run.ReadRecording();
    EXPECT_LT(LevelBetween(sound, 4020, 5000), measure::kSilenceDb + 1);
    ExpectTone(sound, 5100, 5900, {4, 0});
    EXPECT_LT(LevelBetween(sound, 6060 + kRingMs, 7000), measure::kSilenceDb + 1)
        << "no tone sticks without a microphone";
    ExpectTone(sound, 7200, 7900, {4, 0});
    EXPECT_EQ(1U, run.ReadTrace("microphone", "lost").size());
    const std::string errors = run.Errors();
    const auto lines = std::count(errors.begin(), errors.end(), '\n');
    EXPECT_EQ(4, lines) << "each loss and each return is said once:\n" << errors;
}

TEST(Playing, GoesOnWithSilenceForARecordingThatIsSpoilt) {
    ProgramRun run;
    run.Install();
    const std::string data = "installed/share/brevant/data/";
    const std::string whole = run.Folder().Read(data + "ocarina_4_00.ogg");
    std::filesystem::remove(run.Folder() / (data + "ocarina_5_00.ogg"));
    run.Folder().Write(data + "ocarina_4_01.ogg", "");
    run.Folder().Write(data + "ocarina_4_11.ogg", whole.substr(0, whole.size() / 2));
    run.Folder().Write(data + "ocarina_4_03.ogg", "This is no sound at all.");
    std::string performance = "3000 breath 0.8\n";
    for (int mask = 0; mask < 5; ++mask) performance += Finger(4000 + mask * 1000, mask);
    ASSERT_EQ(0, run.Play(performance + "9000 quit\n")) << run.Errors();
    const auto sound = run.ReadRecording();
    for (const int silentMask : {0, 1, 2, 3}) {
        EXPECT_LT(LevelBetween(sound, 4020 + silentMask * 1000, 4900 + silentMask * 1000), measure::kSilenceDb + 1)
            << silentMask;
    }
    ExpectTone(sound, 8200, 8900, {4, 9});
}

// A demonstration tells in comments when each of its notes is meant to begin.
TEST(Playing, PlaysItsDemonstrationsAsTheyAreMeant) {
    constexpr double kPeriodMs = 256 * 1000.0 / kRate;
    for (const std::string name : {"ode-to-joy", "compass"}) {
        const std::string demo = std::string(BREVANT_PACKAGE) + "../demo/" + name;
        std::ifstream file(demo + ".performance");
        std::string performance;
        std::vector<std::pair<double, std::string>> meant;
        for (std::string line; std::getline(file, line); performance += line + '\n') {
            constexpr std::string_view kMeant = "# meant at ";
            if (line.compare(0, kMeant.size(), kMeant) != 0) continue;
            std::istringstream words(line.substr(kMeant.size()));
            double ms = 0;
            char colon = 0;
            std::string tone;
            if (words >> ms >> colon >> tone) meant.emplace_back(ms, tone);
        }
        EXPECT_GT(meant.size(), 40U) << name;
        ProgramRun run;
        ASSERT_EQ(0, run.Play(performance, {"--breath", demo + ".wav"})) << run.Errors();

        // A tone begins with the next of the speaker's periods.
        std::vector<std::pair<double, std::string>> begun;
        std::string opened;
        for (const auto& line : run.ReadTrace()) {
            if (line["what"] != "player") continue;
            if (line["event"] == "open") opened = line["file"];
            const double ms = std::ceil(line["ms"].get<double>() / kPeriodMs) * kPeriodMs;
            if (line["event"] == "play") begun.emplace_back(ms, opened);
        }
        for (const auto& [ms, tone] : meant) {
            EXPECT_TRUE(std::any_of(begun.begin(), begun.end(),
                                    [&, at = ms, &wanted = tone](const auto& each) {
                                        return each.second == wanted && std::abs(each.first - at) <= 3;
                                    }))
                << name << ' ' << ms << ' ' << tone;
        }
    }
}

TEST(Playing, ClicksAtNoChangeOfFingeringAndAtNoStartOrStop) {
    constexpr int kHoldMs = 60;
    constexpr double kMostOfATonesOwnStep = 1.5;
    // Each tone by itself first, for its own largest step; then every change from each to each, at offsets in the wave
    // that differ from change to change; then breath that comes and goes.
    std::string performance = "2990 breath 0.9\n";
    std::vector<std::pair<int, int>> changes;
    int ms = kPlayMs;
    for (int mask = 0; mask < kMasks; ++mask, ms += 1000) performance += Finger(ms, mask);
    const int changesMs = ms;
    for (int from = 0; from < kMasks; ++from) {
        for (int to = 0; to < kMasks; ++to) {
            if (from == to) continue;
            performance += Finger(ms, from) + Finger(ms + kHoldMs + (from * 7 + to * 3) % 11, to);
            changes.emplace_back(from, to);
            ms += 2 * kHoldMs + 11;
        }
    }
    const int tonguingMs = ms;
    performance += Finger(ms, 15);
    for (int i = 0; i < 40; ++i, ms += 157) {
        performance += std::to_string(ms) + " breath 0.9\n" + std::to_string(ms + 90) + " breath 0\n";
    }
    ProgramRun run;
    ASSERT_EQ(0, run.Play(performance + std::to_string(ms + 100) + " quit\n", {"--ringtone-volume", "15"}));
    const auto sound = run.ReadRecording();

    std::array<double, kMasks> own{};
    for (int mask = 0; mask < kMasks; ++mask) {
        own[static_cast<std::size_t>(mask)] =
            measure::LargestStep(Between(sound, kPlayMs + mask * 1000 + 50, kPlayMs + mask * 1000 + 990));
    }
    const double largest = *std::max_element(own.begin(), own.end());
    int before = kMasks - 1;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const auto [from, to] = changes[i];
        const double begin = changesMs + static_cast<double>(i) * (2 * kHoldMs + 11);
        const double allowed =
            kMostOfATonesOwnStep * std::max({own[static_cast<std::size_t>(from)], own[static_cast<std::size_t>(to)],
                                             own[static_cast<std::size_t>(before)]});
        EXPECT_LE(measure::LargestStep(Between(sound, begin, begin + 2 * kHoldMs + 11)), allowed)
            << from << " to " << to;
        before = to;
    }
    EXPECT_LE(measure::LargestStep(Between(sound, tonguingMs, ms)), kMostOfATonesOwnStep * own[kMasks - 1]);
    EXPECT_LT(largest, 0.2) << "full scale is far away";
}
