#include <SDL.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <mutex>
#include <string>
#include <vector>

#include "DesktopFixture.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace host;

constexpr std::uint32_t kClipFrames = 1U << 20U;  // some 20 s
constexpr float kStep = 1.0F / kClipFrames;

class PlayingClient final : public SpeakerClient {
public:
    void OnSpeakerNews() noexcept override {}
    void OnSpeakerLost() noexcept override { ++losses; }
    void OnSpeakerRestored() noexcept override { ++restorations; }
    void OnFramesPlayed(std::span<const float> frames) noexcept override {
        framesPlayed += static_cast<std::int64_t>(frames.size());
    }

    std::atomic<std::int64_t> framesPlayed{0};
    int losses = 0;
    int restorations = 0;
};

class HearingClient final : public MicrophoneClient {
public:
    void OnMicrophoneOpened(int openedRate) noexcept override { rate = openedRate; }
    void OnMicrophoneLost() noexcept override { ++losses; }
    void OnFramesHeard(std::span<const float> frames) noexcept override {
        const std::lock_guard lock(mutex_);
        heard_.insert(heard_.end(), frames.begin(), frames.end());
    }

    [[nodiscard]] std::vector<float> Heard() {
        const std::lock_guard lock(mutex_);
        return heard_;
    }

    int rate = 0;
    int losses = 0;

private:
    std::mutex mutex_;
    std::vector<float> heard_;
};

class SoundProof : public DesktopFixture {
protected:
    ~SoundProof() override {
        backend_.reset();
        for (const char* name : {"SDL_AUDIODRIVER", "SDL_DISKAUDIOFILE", "SDL_DISKAUDIOFILEIN"}) unsetenv(name);
    }

    static void Set(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }

    /// What SDL's disk driver, a sound device that writes a file, has got.
    [[nodiscard]] std::vector<float> Played() const {
        const std::string bytes = folder_.Read("played");
        std::vector<float> frames(bytes.size() / sizeof(float));
        std::memcpy(frames.data(), bytes.data(), frames.size() * sizeof(float));
        return frames;
    }

    /// Plays a clip whose frames count upwards, so that a missing or a doubled one shows.
    void PlayCounting(Speaker& speaker) {
        for (std::size_t i = 0; i < counting_.size(); ++i) counting_[i] = kStep * static_cast<float>(i + 1);
        speaker.HandOver(0, {kClipFrames}, counting_.data());
        const MixCommand commands[] = {{MixCommand::Kind::kClipReady, kNoVoice, 0, kClipFrames},
                                       {MixCommand::Kind::kStart, 1, 0, 0, 1}};
        EXPECT_EQ(speaker.Send(commands), std::size(commands));
    }

    TemporaryFolder folder_;
    std::vector<float> counting_ = std::vector<float>(kClipFrames);
    PlayingClient speakerClient_;
    HearingClient microphoneClient_;
};

TEST_F(SoundProof, PlaysEveryFrameOnceAndNoneAfterTheClose) {
    Set("SDL_AUDIODRIVER", "disk");
    Set("SDL_DISKAUDIOFILE", folder_ / "played");
    Speaker& speaker = parts_.speaker;
    speaker.Open(speakerClient_);
    PlayCounting(speaker);
    EXPECT_EQ(speaker.PeriodFrames(), 256);
    EXPECT_GT(speaker.Rate(), 0);
    const std::int64_t wanted = 20 * speaker.PeriodFrames();
    ASSERT_TRUE(RunUntil([&] { return speakerClient_.framesPlayed >= wanted; }));
    speaker.Close();
    const std::int64_t framesPlayed = speakerClient_.framesPlayed;
    int rounds = 0;
    ASSERT_TRUE(RunUntil([&] { return ++rounds > 10; }));
    EXPECT_EQ(speakerClient_.framesPlayed, framesPlayed);
    EXPECT_EQ(speakerClient_.losses, 0);

    // The device begins with silence, until it is told to run, and the tone with its ramp.
    const std::vector<float> played = Played();
    const auto last = static_cast<std::int64_t>(std::lround(played.back() / kStep));
    ASSERT_GE(last, wanted - 2 * speaker.PeriodFrames());
    const auto risen = last - speaker.Rate() / 100;
    for (std::int64_t i = 0; i < risen; ++i) {
        ASSERT_EQ(played[played.size() - 1 - static_cast<std::size_t>(i)], kStep * static_cast<float>(last - i)) << i;
    }
}

TEST_F(SoundProof, GoesOnPullingWhenTheDeviceIsLostAndPlaysOnTheNextOne) {
    Set("SDL_AUDIODRIVER", "disk");
    Set("SDL_DISKAUDIOFILE", "/dev/full");  // A device that fails as soon as something is written.
    Speaker& speaker = parts_.speaker;
    speaker.Open(speakerClient_);
    PlayCounting(speaker);
    const int rate = speaker.Rate();
    ASSERT_TRUE(RunUntil([&] { return speakerClient_.losses == 1; }));
    const std::int64_t atLoss = speakerClient_.framesPlayed;
    Set("SDL_DISKAUDIOFILE", folder_ / "played");
    EXPECT_TRUE(RunUntil([&] { return speakerClient_.framesPlayed > atLoss + 4 * speaker.PeriodFrames(); }));
    ASSERT_TRUE(RunUntil([&] { return speakerClient_.restorations == 1; }));
    EXPECT_EQ(speaker.Rate(), rate);
    const std::int64_t atRestoration = speakerClient_.framesPlayed;
    EXPECT_TRUE(RunUntil([&] { return speakerClient_.framesPlayed > atRestoration + 4 * speaker.PeriodFrames(); }));
    speaker.Close();
    // The tone has gone on in time meanwhile.
    EXPECT_GE(Played().back(), kStep * static_cast<float>(atRestoration - atLoss));
}

TEST_F(SoundProof, PullsInTimeWithoutAnyDevice) {
    Set("SDL_AUDIODRIVER", "there is no such driver");
    Speaker& speaker = parts_.speaker;
    const Microseconds start = parts_.clock.Now();
    speaker.Open(speakerClient_);
    EXPECT_EQ(speakerClient_.losses, 1);
    const int periods = 20;
    ASSERT_TRUE(RunUntil([&] { return speakerClient_.framesPlayed >= periods * speaker.PeriodFrames(); }));
    const Microseconds least = (periods - 2) * kMicrosecondsPerSecond * speaker.PeriodFrames() / speaker.Rate();
    EXPECT_GE(parts_.clock.Now() - start, least);
    EXPECT_EQ(speaker.Underruns(), 0U);
    speaker.Close();
}

TEST_F(SoundProof, HearsEveryFrameInOrderAndFindsALostMicrophoneAgain) {
    std::vector<float> breath(8000);
    for (std::size_t i = 0; i < breath.size(); ++i) breath[i] = kStep * static_cast<float>(i + 1);
    folder_.Write("breath", {reinterpret_cast<const char*>(breath.data()), breath.size() * sizeof(float)});
    Set("SDL_AUDIODRIVER", "there is no such driver");
    Set("SDL_DISKAUDIOFILEIN", folder_ / "breath");
    Microphone& microphone = parts_.microphone;
    microphone.Start(microphoneClient_);
    EXPECT_EQ(microphoneClient_.losses, 1);
    Set("SDL_AUDIODRIVER", "disk");
    ASSERT_TRUE(RunUntil([&] { return microphoneClient_.rate > 0; }));
    ASSERT_TRUE(RunUntil([&] { return microphoneClient_.Heard().size() >= breath.size() / 2; }));
    microphone.Stop();
    const auto heard = microphoneClient_.Heard();
    int rounds = 0;
    ASSERT_TRUE(RunUntil([&] { return ++rounds > 10; }));
    EXPECT_EQ(microphoneClient_.Heard().size(), heard.size());
    // What the device had read before it was told to run is not heard.
    EXPECT_NE(std::search(breath.begin(), breath.end(), heard.begin(), heard.begin() + 1000), breath.end());
}

}  // namespace
