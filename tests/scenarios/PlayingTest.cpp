// Whole performances through the launcher, judged by what the recording and the trace say.

#include <gtest/gtest.h>
#include <sndfile.h>

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
#include "scenarios/Performing.h"
#include "sound/SoundRig.h"
#include "support/ProgramRun.h"

namespace {

constexpr float kSilent = 1e-4F;
// Some four times the release of the lowest tone: nothing of any tone is left after it.
constexpr double kRingMs = 260;

std::size_t FrameAt(double ms) {
    return static_cast<std::size_t>(ms * kRate / 1000);
}

double LevelBetween(const std::vector<float>& sound, double beginMs, double endMs) {
    return measure::RmsDb(Between(sound, beginMs, endMs));
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
    std::vector<float> breath(FrameAt(lengthMs));
    std::uint32_t random = 1;
    float smooth = 0;
    for (std::size_t i = FrameAt(beginMs); i < FrameAt(endMs); ++i) {
        random = random * 1664525U + 1013904223U;  // Numerical Recipes' quick generator, 2nd ed., 7.1
        smooth += (static_cast<float>(random) / 4294967296.0F - 0.5F - smooth) * 0.1F;
        breath[i] = std::clamp(smooth * 5, -0.9F, 0.9F);
    }
    sound_test::WriteSound(path, kRate, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_16, breath);
}

}  // namespace

TEST(Playing, SoundsTheNoteOfEachFingeringWhileABreathFileBlows) {
    // In the order of the masks: the top left hole counts 1, the top right one 2, the bottom right one 8.
    constexpr Tone kTones[kMasks] = {{5, 0},  {4, 1}, {4, 11}, {4, 3},  {4, 9}, {4, 5}, {4, 8}, {4, 4},
                                     {4, 10}, {3, 9}, {3, 7},  {3, 11}, {4, 7}, {4, 2}, {4, 6}, {4, 0}};
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
        ExpectTone(sound, begin + 150, begin + kNoteMs - 20, kTones[mask]);
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
    EXPECT_EQ(
        (std::vector<std::string>{"ocarina_5_00.ogg", "ocarina_4_01.ogg", "ocarina_4_03.ogg", "ocarina_4_04.ogg"}),
        run.Told("player", "open", "file"));
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
    const auto volumes = run.Told<int>("player", "volume", "value");
    EXPECT_EQ((std::set<int>{0, 72, 99}), std::set<int>(volumes.begin(), volumes.end()));
    const auto sound = run.ReadRecording();
    EXPECT_NEAR(LevelBetween(sound, 3100, 3480), LevelBetween(sound, 3520, 3950), 1.5) << "a tone keeps its volume";
    EXPECT_LT(LevelBetween(sound, 6000, 6400), measure::kSilenceDb + 1);
    EXPECT_LT(*std::max_element(sound.begin(), sound.end()), 0.999F) << "the loudest volume does not clip";
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
