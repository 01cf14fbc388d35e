#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "backend/headless/HeadlessBackend.h"
#include "support/Pixels.h"

namespace {

using namespace host;

class ScriptedClient final : public LoopClient {
public:
    explicit ScriptedClient(std::function<Microseconds(Microseconds)> step) : step_(std::move(step)) {}

    Microseconds RunStep(Microseconds now) override {
        steps.push_back(now);
        return step_(now);
    }
    [[nodiscard]] bool HasEnded() const override { return hasEnded; }

    std::vector<Microseconds> steps;
    bool hasEnded = false;

private:
    std::function<Microseconds(Microseconds)> step_;
};

class TimingClient final : public SpeakerClient {
public:
    explicit TimingClient(const Clock& clock) : clock_(clock) {}

    void OnSpeakerNews() noexcept override {}
    void OnFramesPlayed(std::span<const float> frames) noexcept override {
        pulls.push_back(clock_.Now());
        isWhole = isWhole && frames.size() == 256;
        onPull();
    }
    void OnSpeakerLost() noexcept override { isWhole = false; }
    void OnSpeakerRestored() noexcept override {}

    std::vector<Microseconds> pulls;
    std::function<void()> onPull = [] {};
    bool isWhole = true;

private:
    const Clock& clock_;
};

class HeadlessTest : public ::testing::Test {
protected:
    std::unique_ptr<Backend> backend_ = CreateHeadlessBackend({"/package/", "/data/"});
    LoopDriver& driver_ = backend_->Parts().loopDriver;
    Speaker& speaker_ = backend_->Parts().speaker;
    TimingClient heard_{backend_->Parts().clock};
};

TEST_F(HeadlessTest, JumpsFromOneDueTimeToTheNextAndStopsWhenNothingIsDue) {
    ScriptedClient client([&](Microseconds now) {
        EXPECT_EQ(backend_->Parts().clock.Now(), now);
        if (now == 0) return Microseconds{30'000};
        if (now == 30'000) return Microseconds{3'600'000'000};
        return LoopClient::kNever;
    });
    driver_.Run(client);
    EXPECT_EQ(client.steps, (std::vector<Microseconds>{0, 30'000, 3'600'000'000}));
}

TEST_F(HeadlessTest, PullsEveryPeriodAtItsTimeWithoutDriftAfterTheStepOfThatTime) {
    constexpr Microseconds kHour = 3'600'000'000;
    ScriptedClient client([&](Microseconds now) {
        if (now == 0) return Microseconds{1000};
        if (now == 1000) speaker_.Open(heard_);
        // The step of a period's time comes before its pull.
        EXPECT_TRUE(heard_.pulls.empty() || heard_.pulls.back() < now);
        client.hasEnded = now >= kHour;
        return kHour;
    });
    driver_.Run(client);
    ASSERT_GT(heard_.pulls.size(), 600'000U);
    EXPECT_TRUE(heard_.isWhole);
    EXPECT_EQ(heard_.pulls[0], 1000);
    EXPECT_EQ(heard_.pulls[1], 1000 + 5805);  // 5804.99 us
    for (std::size_t n = 0; n < heard_.pulls.size(); n += 1009) {
        const Microseconds after = heard_.pulls[n] - 1000;
        EXPECT_GE(after * 44'100, static_cast<Microseconds>(n) * 256 * 1'000'000);
        EXPECT_LT((after - 1) * 44'100, static_cast<Microseconds>(n) * 256 * 1'000'000);
    }
    EXPECT_EQ(speaker_.Underruns(), 0U);
}

TEST_F(HeadlessTest, RunsAStepAtTheSameTimeWhenAPullWakesIt) {
    bool isNews = false;
    std::vector<Microseconds> told;
    heard_.onPull = [&] {
        isNews = true;
        driver_.Wake();
    };
    speaker_.Open(heard_);
    ScriptedClient client([&](Microseconds now) {
        if (isNews) told.push_back(now);
        isNews = false;
        client.hasEnded = told.size() == 3;
        return LoopClient::kNever;
    });
    driver_.Run(client);
    EXPECT_EQ(told, heard_.pulls);
}

TEST_F(HeadlessTest, IsUnharmedByThreadsThatWakeIt) {
    std::atomic<bool> isOver{false};
    std::thread waker([&] {
        while (!isOver) driver_.Wake();
    });
    int due = 0;
    ScriptedClient client([&](Microseconds now) {
        client.hasEnded = now >= 100'000;
        due += now == due * Microseconds{1000} ? 1 : 0;
        return due * Microseconds{1000};
    });
    driver_.Run(client);
    isOver = true;
    waker.join();
    EXPECT_EQ(client.steps.back(), 100'000);
}

TEST_F(HeadlessTest, HasAWindowOfThePhonesSizeThatKeepsItsPixels) {
    class : public WindowListener, public InputListener {
        void OnTouch(const TouchInput&) override {}
        void OnKey(const KeyInput&) override {}
        void OnInputLost() override {}
        void OnResized() override {}
        void OnExposed() override {}
        void OnVisibilityChanged(Visibility) override {}
        void OnCloseRequested() override {}
    } listener;
    Window& window = backend_->Parts().window;
    ASSERT_TRUE(window.Open("Brevant", {48, 80}, listener, listener));
    EXPECT_EQ(window.Size(), (PixelSize{48, 80}));
    EXPECT_EQ(window.FrameInterval(), 16'667);
    EXPECT_EQ(PixelAt(window.Pixels(), 0, 0), (Rgba{0, 0, 0, 255}));
    window.Pixels().Clear({1, 2, 3, 255});
    window.Present(std::vector<PixelRect>{{0, 0, 10, 10}});
    EXPECT_EQ(PixelAt(window.Pixels(), 47, 79), (Rgba{1, 2, 3, 255}));
    EXPECT_FALSE(window.Open("Brevant", {100'000, 100'000}, listener, listener));
}

}  // namespace
