// What the ocarina relies on below its screens: timers and texts.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Tizen/Base/Runtime/ITimerEventListener.h"
#include "Tizen/Base/Runtime/Timer.h"
#include "Tizen/Base/String.h"
#include "Tizen/System/SettingInfo.h"
#include "Tizen/System/SystemInfo.h"
#include "backend/headless/VirtualClock.h"
#include "runtime/loop/EventLoop.h"
#include "support/TestPhone.h"

namespace {

using Tizen::Base::String;
using Tizen::Base::Runtime::ITimerEventListener;
using Tizen::Base::Runtime::Timer;

class Expiries : public ITimerEventListener {
public:
    explicit Expiries(TestPhone& phone) : phone_(phone) {}

    void OnTimerExpired(Timer& timer) override {
        timesMs.push_back(phone_.GetRuntime().GetLoop().Now() / host::kMicrosecondsPerMillisecond);
        if (then) then(timer);
    }

    std::function<void(Timer&)> then;
    std::vector<std::int64_t> timesMs;

private:
    TestPhone& phone_;
};

struct SlackLoop final : host::LoopDriver {
    void Run(host::LoopClient&) override {}
    void Wake() noexcept override {}
    [[nodiscard]] host::Microseconds TimerSlack() const noexcept override { return slack; }

    host::Microseconds slack = 0;
};

// When two ticks of 30 come that were started 18 apart, and a timer that is exact, up to 160.
std::vector<std::vector<host::Microseconds>> TimesWithSlack(host::Microseconds slack) {
    host::VirtualClock clock;
    SlackLoop driver;
    driver.slack = slack;
    host::EventLoop loop(clock, driver);
    std::vector<std::vector<host::Microseconds>> times(3);
    std::function<void(std::size_t)> tick = [&](std::size_t which) {
        loop.StartTick(30, [&, which] {
            times[which].push_back(loop.Now());
            tick(which);
        });
    };
    tick(0);
    loop.StartTimer(125, [&] { times[2].push_back(loop.Now()); });
    const bool isEnding = false;
    // Something else makes a step every time, as blocks of the microphone do.
    for (host::Microseconds now = 1; now <= 160; ++now) {
        loop.RunDue(now, isEnding);
        if (now == 18) tick(1);
        EXPECT_GT(loop.NextDue(), now);
    }
    return times;
}

}  // namespace

TEST(Timer, ExpiresOnceForEachStartAndNeverWhenItIsCancelledOrGone) {
    TestPhone phone;
    Expiries once(phone);
    Expiries anew(phone);
    Expiries tick(phone);
    Expiries cancelled(phone);
    Expiries last(phone);
    Timer onceTimer, anewTimer, tickTimer, cancelledTimer;
    auto goneTimer = std::make_unique<Timer>();
    auto lastTimer = std::make_unique<Timer>();

    EXPECT_EQ(E_INVALID_STATE, onceTimer.Start(10));
    EXPECT_EQ(E_SUCCESS, onceTimer.Construct(once));
    EXPECT_EQ(E_INVALID_STATE, onceTimer.Construct(once));
    EXPECT_EQ(E_INVALID_ARG, onceTimer.Start(0));
    EXPECT_EQ(E_INVALID_ARG, onceTimer.Start(-5));
    anewTimer.Construct(anew);
    tickTimer.Construct(tick);
    cancelledTimer.Construct(cancelled);
    goneTimer->Construct(cancelled);
    lastTimer->Construct(last);
    tick.then = [](Timer& timer) { timer.Start(30); };
    last.then = [&](Timer&) { lastTimer.reset(); };

    phone.At(100, [&] {
        onceTimer.Start(10);
        anewTimer.Start(10);
        tickTimer.Start(30);
        cancelledTimer.Start(10);
        goneTimer->Start(10);
        lastTimer->Start(25);
    });
    phone.At(105, [&] {
        anewTimer.Start(40);
        cancelledTimer.Cancel();
        cancelledTimer.Cancel();
        goneTimer.reset();
    });
    phone.At(200, [&] { tickTimer.Cancel(); });
    phone.RunEmpty(400);
    EXPECT_EQ((std::vector<std::int64_t>{110}), once.timesMs);
    EXPECT_EQ((std::vector<std::int64_t>{145}), anew.timesMs);
    EXPECT_EQ((std::vector<std::int64_t>{130, 160, 190}), tick.timesMs);
    EXPECT_TRUE(cancelled.timesMs.empty());
    EXPECT_EQ((std::vector<std::int64_t>{125}), last.timesMs);
}

TEST(Timer, TicksComeTogetherWithinTheSlackAndNobodyElseIsLate) {
    using Times = std::vector<std::vector<host::Microseconds>>;
    EXPECT_EQ((Times{{30, 60, 90, 120, 150}, {48, 78, 108, 138}, {125}}), TimesWithSlack(0));
    EXPECT_EQ((Times{{30, 60, 90, 125, 155}, {60, 90, 125, 155}, {125}}), TimesWithSlack(15));
    // Those that are further apart stay so.
    EXPECT_EQ((Times{{30, 60, 90, 125, 155}, {48, 78, 108, 138}, {125}}), TimesWithSlack(5));
}

TEST(Text, FormatsCutsAndComesBackAsTheBytesItWasMadeFrom) {
    String text;
    EXPECT_EQ(E_SUCCESS, text.Format(50, L"ocarina_%d_%02d.ogg", 4, 7));
    EXPECT_EQ(String("ocarina_4_07.ogg"), text);
    EXPECT_EQ(E_SUCCESS, text.Format(5, L"%s %d", "long", 12345));
    EXPECT_EQ(String(L"long "), text);
    EXPECT_EQ(E_SUCCESS, text.Format(0, L"%d", 1));
    EXPECT_TRUE(text.IsEmpty());

    for (const std::string bytes : {"", "plain", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xB5", "\xFF\xFE\x80", "\xC3",
                                    "\xE2\x82", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "a\xF0\x9F\x8E"}) {
        EXPECT_EQ(bytes, String(bytes.c_str()).ToUtf8());
    }
    EXPECT_EQ(3, String("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xB5").GetLength());
}

TEST(Text, IsSearchedAndCutWithinItsBounds) {
    String text(L"a,b,c");
    int index = -1;
    EXPECT_EQ(E_SUCCESS, text.IndexOf(L",", 2, index));
    EXPECT_EQ(3, index);
    EXPECT_EQ(E_OBJ_NOT_FOUND, text.IndexOf(L",", 4, index));
    EXPECT_EQ(E_OUT_OF_RANGE, text.IndexOf(L",", 6, index));
    EXPECT_EQ(E_INVALID_ARG, text.IndexOf(L"", 0, index));
    EXPECT_EQ(3, index);
    String part(L"kept");
    EXPECT_EQ(E_OUT_OF_RANGE, text.SubString(3, 3, part));
    EXPECT_EQ(E_OUT_OF_RANGE, text.SubString(-1, part));
    EXPECT_EQ(String(L"kept"), part);
    EXPECT_EQ(E_SUCCESS, text.SubString(3, 2, part));
    EXPECT_EQ(String(L",c"), part);
    EXPECT_EQ(E_OUT_OF_RANGE, text.Remove(0, 6));
    EXPECT_EQ(E_SUCCESS, text.Remove(1, 4));
    EXPECT_EQ(String(L"a"), text);
}

TEST(PhoneValues, AreFoundByTheEndOfTheirKeyAlone) {
    using Tizen::System::SettingInfo;
    using Tizen::System::SystemInfo;
    const TestPhone phone;
    int value = -1;
    for (const wchar_t* key : {L"screen.depth", L"xscreen.width", L"screen.width.x", L""}) {
        EXPECT_NE(E_SUCCESS, SystemInfo::GetValue(key, value));
        EXPECT_NE(E_SUCCESS, SettingInfo::GetValue(key, value));
    }
    EXPECT_EQ(-1, value);
    EXPECT_EQ(E_SUCCESS, SystemInfo::GetValue(L"http://tizen.org/feature/screen.width", value));
    EXPECT_EQ(720, value);
    EXPECT_EQ(E_SUCCESS, SystemInfo::GetValue(L"screen.height", value));
    EXPECT_EQ(1280, value);
    EXPECT_EQ(E_SUCCESS, SettingInfo::GetValue(L"http://tizen.org/setting/sound.ringtone.volume", value));
    EXPECT_EQ(11, value);
}
