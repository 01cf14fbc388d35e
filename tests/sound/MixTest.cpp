// What the mix makes of recordings that say where their sustained part begins, how they fall silent and what they
// sound.

#include "backend/mix/Mix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "runtime/sound/ToneComments.h"

namespace {

using Kind = host::MixCommand::Kind;

constexpr int kRate = 44100;
constexpr int kPeriod = 64;
constexpr std::uint32_t kAttack = 2000;
constexpr std::uint32_t kLoop = 40000;
constexpr float kReleaseFrames = 1764;  // 40 ms

class Band final : public host::MixReporter {
public:
    Band() { mix_.Prepare(kRate, kPeriod); }

    bool Report(const host::MixNews& news) noexcept override {
        done += news.kind == host::MixNews::Kind::kDone ? 1 : 0;
        return true;
    }

    /// Hands a clip over whose frames are all there.
    void Keep(host::ClipNumber number, const host::ClipShape& shape, std::vector<float> frames) {
        ASSERT_EQ(frames.size(), shape.Frames());
        clips_[number] = std::move(frames);
        mix_.SetClip(number, shape, clips_[number].data());
        mix_.Obey({Kind::kClipReady, host::kNoVoice, number, shape.Frames()}, *this);
    }
    void Start(host::VoiceNumber voice, host::ClipNumber clip) { mix_.Obey({Kind::kStart, voice, clip, 0, 1}, *this); }
    void Tell(Kind kind, host::VoiceNumber voice) { mix_.Obey({kind, voice}, *this); }
    std::vector<float> Hear(std::size_t periods) {
        std::vector<float> heard(periods * kPeriod);
        for (std::size_t i = 0; i < periods; ++i) mix_.Render(std::span(heard).subspan(i * kPeriod, kPeriod), *this);
        return heard;
    }

    int done = 0;

private:
    host::Mix mix_;
    std::vector<float> clips_[4];
};

host::ClipShape Shape(float periodFrames, std::uint32_t takes = 1) {
    return {kAttack + kLoop, kAttack, takes, kReleaseFrames, periodFrames};
}

std::vector<float> Tone(double periodFrames, double phase, std::size_t frames) {
    std::vector<float> tone(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        tone[i] = static_cast<float>(0.5 * std::sin(2 * M_PI * static_cast<double>(i) / periodFrames + phase));
    }
    return tone;
}

float Peak(std::span<const float> frames) {
    float peak = 0;
    for (const float frame : frames) peak = std::max(peak, std::abs(frame));
    return peak;
}

}  // namespace

TEST(Mix, FallsAsItsRecordingSaysAndRingsOnInTheSustainedPart) {
    // Stopped at once, at the end of the sustained part, or without an answer to the end.
    for (const std::size_t periods : {20U, 656U, 0U}) {
        Band band;
        band.Keep(0, Shape(0), std::vector<float>(kAttack + kLoop, 0.5F));
        band.Start(1, 0);
        band.Tell(periods == 0 ? Kind::kFinish : Kind::kStop, periods == 0 ? 1 : 2);
        const std::size_t held = periods == 0 ? (kAttack + kLoop) / kPeriod : periods;
        EXPECT_NEAR(band.Hear(held).back(), 0.5, 1e-6);
        band.Tell(Kind::kStop, 1);
        const auto falling = band.Hear(200);
        const auto below = [&](double level) {
            return std::find_if(falling.begin(), falling.end(), [&](float each) { return each < level; }) -
                   falling.begin();
        };
        EXPECT_LT(falling[kPeriod], 0.5F) << "it begins at once";
        EXPECT_NEAR(static_cast<double>(below(0.05) - below(0.45)), kReleaseFrames, 0.02 * kReleaseFrames);
        EXPECT_LT(static_cast<double>(below(0.0005)), 3 * kReleaseFrames);
        constexpr float kRounding = 1e-6F;
        for (std::size_t i = 1; i < falling.size(); ++i) ASSERT_LE(falling[i], falling[i - 1] + kRounding);
        EXPECT_EQ(falling.back(), 0);
        EXPECT_EQ(band.done, 1);
    }
}

TEST(Mix, LetsAToneTakeTheSoundingOnesPlaceInPhaseWithoutADip) {
    constexpr double kPeriods[] = {225.0, 84.28, 150.1, 159.02};
    for (const double first : kPeriods) {
        for (const double second : kPeriods) {
            for (const double phase : {0.0, 1.0, 3.0, 5.0}) {
                Band band;
                // The attack is silent: whoever plays it is caught.
                auto next = Tone(second, phase, kAttack + kLoop);
                std::fill_n(next.begin(), kAttack - static_cast<std::size_t>(3 * second), 0.0F);
                band.Keep(0, Shape(static_cast<float>(first)), Tone(first, 0, kAttack + kLoop));
                band.Keep(1, Shape(static_cast<float>(second)), next);
                band.Start(1, 0);
                band.Hear(47);
                band.Tell(Kind::kStop, 1);
                band.Start(2, 1);
                auto heard = band.Hear(5);
                // A third tone comes while the second one is still entering.
                band.Tell(Kind::kStop, 2);
                band.Start(3, 0);
                const auto more = band.Hear(40);
                heard.insert(heard.end(), more.begin(), more.end());
                const auto window = static_cast<std::size_t>(std::max(first, second));
                for (std::size_t at = 0; at + window <= heard.size(); at += 20) {
                    const float peak = Peak(std::span(heard).subspan(at, window));
                    ASSERT_NEAR(peak, 0.5, 0.01) << first << " to " << second << ' ' << phase << " at " << at;
                }
                EXPECT_EQ(band.done, 2);
            }
        }
    }
}

TEST(Mix, BeginsAnewOnceTheOldToneHasFallen) {
    const auto frames = [] {
        auto tone = Tone(150, 0, kAttack + kLoop);
        std::fill_n(tone.begin(), kAttack / 2, 0.0F);
        return tone;
    }();
    struct Row {
        std::size_t pause;  // periods
        bool isNewBeginning;
    };
    for (const Row& row : {Row{0, false}, Row{14, false}, Row{60, true}}) {
        Band band;
        band.Keep(0, Shape(150), frames);
        band.Start(1, 0);
        band.Hear(100);
        band.Tell(Kind::kStop, 1);
        band.Hear(row.pause);
        band.Start(2, 0);
        band.Hear(kAttack / 4 / kPeriod);
        EXPECT_EQ(Peak(band.Hear(kAttack / 4 / kPeriod)) < 0.1F, row.isNewBeginning) << row.pause;
    }
}

TEST(ToneComments, AreTakenWhenAllOfThemCanBeTrue) {
    struct Row {
        std::vector<std::string> comments;
        const char* fault;
    };
    const std::string misfit = "its comments LOOPSTART, LOOPLENGTH and TAKES do not fit its length";
    const Row rows[] = {
        {{"ENCODER=x", "no name"}, ""},
        {{"LOOPSTART=100", "LOOPLENGTH=500", "TAKES=700,900", "RELEASE=0.05", "PITCH=440.25"}, ""},
        {{"LOOPSTART=1000"}, "its comment LOOPSTART=1000 makes no sense"},
        {{"LOOPSTART=1.5"}, "its comment LOOPSTART=1.5 makes no sense"},
        {{"LOOPLENGTH=0"}, "its comment LOOPLENGTH=0 makes no sense"},
        {{"TAKES="}, "its comment TAKES= makes no sense"},
        {{"TAKES=700,-1"}, "its comment TAKES=700,-1 makes no sense"},
        {{"RELEASE=6"}, "its comment RELEASE=6 makes no sense"},
        {{"RELEASE"}, "its comment RELEASE makes no sense"},
        {{"PITCH=A4"}, "its comment PITCH=A4 makes no sense"},
        {{"LOOPSTART=600", "LOOPLENGTH=500"}, misfit.c_str()},
        {{"LOOPSTART=100", "LOOPLENGTH=500", "TAKES=599"}, misfit.c_str()},
        {{"LOOPSTART=100", "LOOPLENGTH=500", "TAKES=901"}, misfit.c_str()},
        {{"LOOPLENGTH=500", "TAKES=600"}, misfit.c_str()},
    };
    for (const Row& row : rows) {
        std::string fault;
        const host::ToneComments tone = host::ReadToneComments(row.comments, 1000, fault);
        EXPECT_EQ(fault, row.fault);
        const bool isTold = row.comments.size() == 5;
        EXPECT_EQ(tone.loopStart, isTold ? 100U : 0U);
        EXPECT_EQ(tone.loopLength, isTold ? 500U : 1000U);
        EXPECT_EQ(tone.takes, isTold ? (std::vector<std::uint32_t>{700, 900}) : std::vector<std::uint32_t>{});
        EXPECT_EQ(tone.releaseSeconds.value_or(-1), isTold ? 0.05 : -1);
        EXPECT_EQ(tone.pitchHz.value_or(-1), isTold ? 440.25 : -1);
    }
}
