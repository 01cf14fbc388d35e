// The breath through wind and through the instrument's own tone, from the microphone's frames to what the instrument
// plays: false stops of a held breath, and tones that would keep themselves alive.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "runtime/sound/BreathFrontEnd.h"
#include "sound/SoundRig.h"

namespace sound_test {

namespace {

constexpr int kPhoneRate = 8000;
constexpr std::size_t kBlock = host::kBlockFrames;
constexpr std::uint8_t kBlown = 153;  // the instrument's threshold
constexpr float kThreshold = 0.2F;

// Normal numbers, the same on every run.
class Noise {
public:
    double Next() {
        double sum = -6;
        for (int i = 0; i < 12; ++i) {
            state_ = state_ * 6364136223846793005U + 1442695040888963407U;  // D. Knuth, MMIX
            sum += static_cast<double>(state_ >> 11U) / 9007199254740992.0;
        }
        return sum;
    }

private:
    std::uint64_t state_ = 1;
};

// Noise through one-pole low-passes, with the RMS 1.
std::vector<double> LowNoise(Noise& noise, std::size_t frames, std::initializer_list<double> hertz, double above) {
    std::vector<double> x(frames);
    for (double& each : x) each = noise.Next();
    for (const double corner : hertz) {
        double low = 0;
        for (double& each : x) each = low += (1 - std::exp(-2 * M_PI * corner / kPhoneRate)) * (each - low);
    }
    double drift = 0;
    double power = 0;
    for (double& each : x) {
        drift += (1 - std::exp(-2 * M_PI * above / kPhoneRate)) * (each - drift);
        each -= drift;
        power += each * each;
    }
    for (double& each : x) each /= std::sqrt(power / static_cast<double>(frames));
    return x;
}

// A breath with wind on the capsule: together -12 dBFS, 4.5 dB more of it below 60 Hz than above.
std::vector<float> WindyBreath(std::size_t frames, double gusts) {
    constexpr double kLevel = 0.2512;
    constexpr double kRumble = 1.68;
    Noise noise;
    const auto breath = LowNoise(noise, frames, {300}, 35);
    const auto rumble = LowNoise(noise, frames, {45, 45, 60}, 8);
    const auto gust = LowNoise(noise, frames, {1.5, 1.5}, 0.05);
    std::vector<double> windy(frames);
    double power = 0;
    for (std::size_t i = 0; i < frames; ++i) {
        windy[i] = (breath[i] + kRumble * rumble[i]) * std::exp(gusts * gust[i]);
        power += windy[i] * windy[i];
    }
    std::vector<float> frames32;
    for (const double each : windy) {
        frames32.push_back(static_cast<float>(kLevel * each / std::sqrt(power / static_cast<double>(frames))));
    }
    return frames32;
}

// Blocks that follow a blown one and are not.
int Stops(std::span<const float> frames) {
    int stops = 0;
    bool isBlown = false;
    for (std::size_t at = 0; at + kBlock <= frames.size(); at += kBlock) {
        const float peak = *std::max_element(frames.begin() + static_cast<std::ptrdiff_t>(at),
                                             frames.begin() + static_cast<std::ptrdiff_t>(at + kBlock));
        const bool wasBlown = isBlown;
        isBlown = 128 + std::lrint(peak * 127) >= kBlown;
        stops += wasBlown && !isBlown ? 1 : 0;
    }
    return stops;
}

}  // namespace

TEST(BreathFrontEnd, HoldsABreathThroughWindAndGusts) {
    constexpr std::size_t kMinute = std::size_t{60} * kPhoneRate;
    struct Row {
        double gusts;
        int least;  // what the phone alone makes of it, lest the wind be none
    };
    for (const Row& row : {Row{0, 40}, Row{0.25, 80}}) {
        auto frames = WindyBreath(kMinute, row.gusts);
        const int before = Stops(frames);
        host::BreathFrontEnd(1).Process(frames);
        const int after = Stops(frames);
        std::printf("%d false stops a minute without the front end, %d with it\n", before, after);
        EXPECT_GE(before, row.least);
        EXPECT_LE(after, 5);
    }
}

TEST(BreathFrontEnd, HearsABeginningAndAnEndWithinTheirOwnBlocks) {
    const auto breath = WindyBreath(std::size_t{2} * kPhoneRate, 0);
    for (const std::size_t length : {10 * kBlock, 50 * kBlock}) {
        for (const float room : {0.0F, 0.003F, 0.03F}) {
            // Silence, breath, and the room again.
            Noise noise;
            std::vector<float> frames(length + 40 * kBlock);
            for (std::size_t i = 0; i < frames.size(); ++i) {
                const bool isBlown = i >= 20 * kBlock && i < 20 * kBlock + length;
                frames[i] = room * static_cast<float>(noise.Next()) / 3 + (isBlown ? 2 * breath[i - 20 * kBlock] : 0);
            }
            host::BreathFrontEnd frontEnd(1);
            frontEnd.Process(frames);
            const std::span<const float> all = frames;
            const auto peak = [&](std::size_t block, std::size_t count) {
                const auto part = all.subspan(block * kBlock, count * kBlock);
                return *std::max_element(part.begin(), part.end());
            };
            EXPECT_LT(peak(0, 20), kThreshold);
            EXPECT_GT(peak(20, 2), kThreshold);
            // The high-pass rings on for half a block.
            EXPECT_LT(peak(21 + length / kBlock, 18), kThreshold) << room;
        }
    }
}

TEST(BreathFrontEnd, KeepsASteadyBreathAsStrongAsItIs) {
    constexpr double kHertz[] = {110, 300, 700};
    for (const double hertz : kHertz) {
        auto frames = Sine(kPhoneRate, hertz, 0.6);
        host::BreathFrontEnd(1).Process(frames);
        EXPECT_NEAR(*std::max_element(frames.begin() + 4000, frames.end()), 0.6, 0.03) << hertz;
    }
}

namespace {

// A speaker and a microphone in one room, at one rate: what was played comes back later, with a decay and the
// distortion of a small loudspeaker.
class Room {
public:
    Room(double level, int delayMs, double distortion)
        : level_(level), delay_(static_cast<std::size_t>(delayMs * kRate / 1000)), distortion_(distortion) {}

    void Play(std::span<const float> frames) { played_.insert(played_.end(), frames.begin(), frames.end()); }
    /// The next frame at the microphone.
    double Hear() {
        const std::size_t at = heard_++;
        const double direct = at < delay_ ? 0 : Bent(static_cast<double>(played_[at - delay_]));
        // Walls: -15 dB after 23 ms, half of it again each time, and duller.
        constexpr std::size_t kWall = 23 * kRate / 1000;
        constexpr double kReflected = 0.18;
        constexpr double kAgain = 0.5;
        const double wall = at < kWall ? 0 : kReflected * direct_[at - kWall] + kAgain * walls_[at - kWall];
        direct_.push_back(direct);
        walls_.push_back(wall);
        return level_ * (direct + wall);
    }

    static constexpr std::size_t kRate = 44100;

private:
    // Second and third order in equal parts.
    double Bent(double x) const { return x + distortion_ * (x * x + x * x * x); }

    double level_;
    std::size_t delay_;
    double distortion_;
    std::vector<float> played_;
    std::vector<double> direct_;
    std::vector<double> walls_;
    std::size_t heard_ = 0;
};

struct Outcome {
    double stoppedAfterMs = 1e9;
    bool startedAgain = false;
    double blownPart = 0;  // of the second in which a soft breath lasts
};

// A second of breath, then silence for a second; the breath's level is its peak, and the softer one of `soft` comes
// before the end.
Outcome Blow(const std::string& file, double level, int delayMs, double distortion, double soft) {
    constexpr std::size_t kPeriod = 256;
    Rig rig;
    rig.microphone.rate = Room::kRate;
    // Sounds its tone while the microphone's blocks reach the threshold, as the instrument does.
    TestPlayer player;
    bool isSounding = false;
    TestListener instrument([&](std::span<const std::uint8_t> block) {
        const bool isBlown = *std::max_element(block.begin(), block.end()) >= kBlown;
        if (isBlown && !isSounding) player.Change(BREVANT_PACKAGE "data/" + file);
        if (!isBlown && isSounding) player.Silence();
        isSounding = isBlown;
    });
    EXPECT_EQ(instrument.audioIn->Start(), E_SUCCESS);
    Room room(level, delayMs, distortion);
    Noise noise;
    const auto breath = LowNoise(noise, 3 * Room::kRate, {300.0 * kPhoneRate / Room::kRate}, 0.01);
    Outcome outcome;
    int blown = 0;
    int counted = 0;
    constexpr double kCrest = 3;  // the peak of such a breath, in 20 ms
    for (std::size_t at = 0; at + kPeriod < 3 * Room::kRate; at += kPeriod) {
        room.Play(rig.Hear(1));
        const double seconds = static_cast<double>(at) / Room::kRate;
        const double strength = seconds < 1 ? 0.6 : seconds < 2 ? soft : 0;
        std::vector<float> heard;
        for (std::size_t i = 0; i < kPeriod; ++i) {
            const double blow = strength * std::clamp(breath[at + i] / kCrest, -1.0, 1.0);
            heard.push_back(static_cast<float>(std::clamp(room.Hear() + blow, -1.0, 1.0)));
        }
        rig.microphone.client->OnFramesHeard(heard);
        rig.RunDue();
        if (seconds > 1.2 && seconds < 2) {
            ++counted;
            blown += isSounding ? 1 : 0;
        }
        if (seconds >= 2 && isSounding && outcome.stoppedAfterMs < 1e9) outcome.startedAgain = true;
        if (seconds >= 2 && !isSounding) {
            outcome.stoppedAfterMs = std::min(outcome.stoppedAfterMs, (seconds - 2) * 1000);
        }
    }
    outcome.blownPart = static_cast<double>(blown) / counted;
    return outcome;
}

}  // namespace

TEST(BreathFrontEnd, DoesNotTakeTheInstrumentsOwnToneForABreath) {
    double latest = 0;
    for (const char* file : {"ocarina_3_07.ogg", "ocarina_4_05.ogg", "ocarina_5_00.ogg"}) {
        for (const double decibels : {-40, -20, -10, 0}) {
            for (const int delayMs : {5, 50, 150}) {
                for (const double distortion : {0.01, 0.05}) {
                    // The level is that of full scale; the tones reach some 0.5 to 0.8 of it.
                    const double level = 2 * std::pow(10, decibels / 20);
                    const Outcome outcome = Blow(file, level, delayMs, distortion, 0.6);
                    SCOPED_TRACE(testing::Message() << file << ' ' << decibels << ' ' << delayMs << ' ' << distortion);
                    EXPECT_LE(outcome.stoppedAfterMs, 60);
                    EXPECT_FALSE(outcome.startedAgain);
                    EXPECT_EQ(outcome.blownPart, 1);
                    latest = std::max(latest, outcome.stoppedAfterMs);
                }
            }
        }
    }
    std::printf("at the latest %.0f ms after the breath\n", latest);
}

TEST(BreathFrontEnd, HearsASoftBreathWhileAToneSounds) {
    for (const double decibels : {-60, -20, -10}) {
        const Outcome outcome = Blow("ocarina_4_05.ogg", 2 * std::pow(10, decibels / 20), 20, 0.01, 0.26);
        EXPECT_GT(outcome.blownPart, 0.97) << decibels;
    }
}

}  // namespace sound_test
