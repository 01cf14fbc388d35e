#include "DesktopFixture.h"

#include <csignal>

namespace {

using host::Microseconds;

constexpr Microseconds kPatience = 20 * host::kMicrosecondsPerSecond;
constexpr Microseconds kStep = 2 * host::kMicrosecondsPerMillisecond;

class Waiting final : public host::LoopClient {
public:
    Waiting(const std::function<bool()>& isDone, Microseconds deadline) : isDone_(isDone), deadline_(deadline) {}

    Microseconds RunStep(Microseconds now) override {
        isOver_ = hasSucceeded_ = isDone_();
        if (now > deadline_) isOver_ = true;
        return now + kStep;
    }
    [[nodiscard]] bool HasEnded() const override { return isOver_; }
    [[nodiscard]] bool HasSucceeded() const { return hasSucceeded_; }

private:
    const std::function<bool()>& isDone_;
    Microseconds deadline_;
    bool isOver_ = false;
    bool hasSucceeded_ = false;
};

}  // namespace

DesktopFixture::DesktopFixture() {
    // nohup and a shell's background jobs hand these on ignored, and a back end leaves them so.
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) std::signal(signal, SIG_DFL);
}

bool DesktopFixture::RunUntil(const std::function<bool()>& isDone) {
    Waiting client(isDone, parts_.clock.Now() + kPatience);
    parts_.loopDriver.Run(client);
    return client.HasSucceeded();
}

void DesktopFixture::OpenWindow(host::PixelSize screen) {
    ASSERT_TRUE(parts_.window.Open(kTitle, screen, news_, news_));
    // A first round takes what opening itself has caused.
    int rounds = 0;
    ASSERT_TRUE(RunUntil([&] { return ++rounds > 10; }));
    news_ = WindowNews();
}
