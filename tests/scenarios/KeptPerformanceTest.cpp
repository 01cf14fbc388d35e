// What --keep-performance writes gives the same tones at the same times when it is played.

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "runtime/performance/PerformanceReader.h"
#include "runtime/performance/PerformanceWriter.h"
#include "support/ProgramRun.h"

namespace {

constexpr double kBlockMs = 20;

/// Fingers, keys and breath at random, with visits to setup and changes of state in between.
std::string RandomPerformance(unsigned seed) {
    std::mt19937 random(seed);
    const auto upTo = [&random](unsigned most) { return static_cast<int>(random() % (most + 1)); };
    std::string text = "2600 breath 0.5\n";
    std::vector<bool> isDown(4);
    for (int i = 0; i < 120; ++i) {
        const std::string wait = '+' + std::to_string(upTo(90)) + '.' + std::to_string(upTo(9)) + ' ';
        const int finger = upTo(3);
        const std::string hole = std::to_string(150 + finger % 2 * 400) + ' ' + std::to_string(500 + finger / 2 * 400);
        switch (upTo(7)) {
            case 0:
                text += wait + "breath 0." + std::to_string(upTo(9)) + '\n';
                break;
            case 1:
                text += wait + "peak " + std::to_string(128 + upTo(127)) + '\n';
                break;
            case 2:
                text += wait + "key Space " + (upTo(1) == 0 ? "press\n" : "release\n");
                break;
            case 3:
                text += wait + "key KeyF " + (upTo(1) == 0 ? "press\n" : "release\n");
                break;
            case 4:
                text += wait + "ringtone " + std::to_string(upTo(15)) + '\n';
                break;
            default:
                text += wait + "touch " + std::to_string(finger) +
                        (isDown[static_cast<std::size_t>(finger)] ? " up\n" : " down " + hole + '\n');
                isDown[static_cast<std::size_t>(finger)] = !isDown[static_cast<std::size_t>(finger)];
        }
        if (i == 40) text += "+10 background\n+300 foreground\n+10 key volume-up press\n+10 key volume-up release\n";
        if (i == 80) {
            text +=
                "+10 tap IDC_BUTTON_MENU\n+300 tap IDC_BUTTON_SETUP\n+300 tap IDC_CHECK_AUTO_PLAY\n"
                "+100 tap IDC_BUTTON_CLOSE\n+300 lose microphone\n+300 restore microphone\n";
        }
    }
    return text + "+300 quit\n";
}

}  // namespace

TEST(KeptPerformance, GivesTheSameTonesAgainWithinABlock) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        ProgramRun session;
        const std::string kept = session.Folder() / "kept.performance";
        ASSERT_EQ(0, session.Play(RandomPerformance(seed), {"--keep-performance", kept})) << session.Errors();
        ProgramRun replay;
        ASSERT_EQ(0, replay.Play(session.Folder().Read("kept.performance"))) << replay.Errors();

        const auto tonesOf = [](const ProgramRun& run) {
            TraceLines tones;
            for (const auto& line : run.ReadTrace()) {
                if (line.at("what") == "player" && line.at("event") != "end") tones.push_back(line);
            }
            return tones;
        };
        const auto first = tonesOf(session);
        const auto second = tonesOf(replay);
        ASSERT_GT(first.size(), 50U);
        ASSERT_EQ(first.size(), second.size()) << seed;
        for (std::size_t i = 0; i < first.size(); ++i) {
            auto expected = first[i];
            auto actual = second[i];
            EXPECT_NEAR(expected.at("ms").get<double>(), actual.at("ms").get<double>(), kBlockMs) << seed << ' ' << i;
            expected.erase("ms");
            actual.erase("ms");
            EXPECT_EQ(expected, actual) << seed << ' ' << i;
        }
    }
}

TEST(PerformanceWriter, WritesEveryActionAsTheReaderReadsIt) {
    const std::string text =
        "0 touch 3 down 1.5 -20\n1 touch 3 move 719.125 0\n2 touch 3 up\n3 press IDC_A 0.25 1\n4 release IDC_A\n"
        "5 tap IDC_A 0.5 0.5\n6.007 key back press\n7 key KeyR release\n8 breath 0.85\n9 peak 128\n10 ringtone 15\n"
        "11 pick IDC_C #0A0B0CFF\n12 background\n13 foreground\n14 screen-off\n15 screen-on\n16 lose speaker\n"
        "17 restore microphone\n18 screenshot a.png\n86399999.999 quit\n";
    std::string problem;
    const auto performance = host::ParsePerformance(text, "all", problem);
    ASSERT_NE(nullptr, performance) << problem;
    std::string written;
    for (const auto& step : performance->Steps()) written += host::PerformanceLine(step.time, step.action);
    EXPECT_EQ(text, written);
}
