#include <SDL.h>

#include <csignal>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "DesktopFixture.h"
#include "XScreen.h"

namespace {

using namespace host;

constexpr PixelSize kScreen{360, 640};

void PushFinger(Uint32 type, SDL_TouchID device, SDL_FingerID finger, float x, float y) {
    SDL_Event event{};
    event.type = type;
    event.tfinger.touchId = device;
    event.tfinger.fingerId = finger;
    event.tfinger.x = x;
    event.tfinger.y = y;
    SDL_PushEvent(&event);
}

void PushMouse(Uint32 type, Uint32 which, int x, int y, Uint8 button = SDL_BUTTON_LEFT) {
    SDL_Event event{};
    event.type = type;
    if (type == SDL_MOUSEMOTION) {
        event.motion.which = which;
        event.motion.x = x;
        event.motion.y = y;
    } else {
        event.button.which = which;
        event.button.button = button;
        event.button.x = x;
        event.button.y = y;
    }
    SDL_PushEvent(&event);
}

class WindowProof : public DesktopFixture {
protected:
    void SetUp() override { OpenWindow(kScreen); }

    void ExpectTouch(std::size_t index, TouchPhase phase, double x, double y) {
        ASSERT_LT(index, news_.touches.size());
        EXPECT_EQ(news_.touches[index].phase, phase) << index;
        EXPECT_NEAR(news_.touches[index].x, x, 0.01) << index;
        EXPECT_NEAR(news_.touches[index].y, y, 0.01) << index;
    }
};

TEST_F(WindowProof, TellsFingersOfSeveralDevicesApartAndWhereTheyAre) {
    EXPECT_EQ(parts_.window.Size(), kScreen);
    PushFinger(SDL_FINGERDOWN, 7, 1, 0.25F, 0.5F);
    PushFinger(SDL_FINGERDOWN, 8, 1, 0.75F, 0.5F);
    PushFinger(SDL_FINGERMOTION, 8, 1, 0.5F, 0.25F);
    PushFinger(SDL_FINGERMOTION, 8, 2, 0.5F, 0.5F);  // Never pressed.
    PushFinger(SDL_FINGERDOWN, SDL_MOUSE_TOUCHID, 1, 0.1F, 0.1F);
    PushFinger(SDL_FINGERUP, 7, 1, 0.25F, 0.75F);
    ASSERT_TRUE(RunUntil([&] { return news_.touches.size() >= 4; }));
    ASSERT_EQ(news_.touches.size(), 4U);
    ExpectTouch(0, TouchPhase::kDown, 90, 320);
    ExpectTouch(1, TouchPhase::kDown, 270, 320);
    ExpectTouch(2, TouchPhase::kMove, 180, 160);
    ExpectTouch(3, TouchPhase::kUp, 90, 480);
    EXPECT_NE(news_.touches[0].finger, news_.touches[1].finger);
    EXPECT_EQ(news_.touches[1].finger, news_.touches[2].finger);
    EXPECT_EQ(news_.touches[0].finger, news_.touches[3].finger);
}

TEST_F(WindowProof, TakesAMouseForAFingerButNotTheMouseThatATouchScreenMakes) {
    PushMouse(SDL_MOUSEMOTION, 0, 5, 5);  // Hovers.
    PushMouse(SDL_MOUSEBUTTONDOWN, SDL_TOUCH_MOUSEID, 50, 60);
    PushMouse(SDL_MOUSEMOTION, SDL_TOUCH_MOUSEID, 51, 61);
    PushMouse(SDL_MOUSEBUTTONUP, SDL_TOUCH_MOUSEID, 51, 61);
    PushMouse(SDL_MOUSEBUTTONDOWN, 0, 1, 1, SDL_BUTTON_RIGHT);
    PushMouse(SDL_MOUSEBUTTONDOWN, 0, 10, 20);
    PushMouse(SDL_MOUSEMOTION, 0, 30, 40);
    PushMouse(SDL_MOUSEBUTTONUP, 0, 30, 41);
    PushMouse(SDL_MOUSEBUTTONUP, 0, 30, 41);
    PushFinger(SDL_FINGERDOWN, 7, 0, 0, 0);
    ASSERT_TRUE(RunUntil([&] { return news_.touches.size() >= 4; }));
    ASSERT_EQ(news_.touches.size(), 4U);
    ExpectTouch(0, TouchPhase::kDown, 10, 20);
    ExpectTouch(1, TouchPhase::kMove, 30, 40);
    ExpectTouch(2, TouchPhase::kUp, 30, 41);
    EXPECT_NE(news_.touches[3].finger, news_.touches[0].finger);
}

// What troubles programs on SDL. A device of SDL's list is plugged in by its first finger there.
TEST_F(WindowProof, LeavesNoFingerBehindWhateverATouchScreenTells) {
    constexpr SDL_TouchID kOne = 7;
    constexpr SDL_TouchID kOther = 8;
    struct News {
        Uint32 type;
        SDL_TouchID device;
        SDL_FingerID finger;
        float x;
        float y;
    };
    struct Case {
        const char* what;
        std::vector<News> told;
        std::string expected;  ///< the fingers by letter in the order of their coming, and what becomes of them
    };
    const Case cases[] = {
        {"a down is repeated",
         {{SDL_FINGERDOWN, kOne, 1, 0.1F, 0.1F}, {SDL_FINGERDOWN, kOne, 1, 0.2F, 0.2F}, {SDL_FINGERUP, kOne, 1, 0, 0}},
         "a down, a down, a up"},
        {"an up is repeated, and one comes without a down",
         {{SDL_FINGERDOWN, kOne, 1, 0, 0},
          {SDL_FINGERUP, kOne, 1, 0, 0},
          {SDL_FINGERUP, kOne, 1, 0, 0},
          {SDL_FINGERUP, kOther, 5, 0, 0},
          {SDL_FINGERMOTION, kOne, 1, 0, 0}},
         "a down, a up"},
        {"an up is missing, and the finger's number comes again",
         {{SDL_FINGERDOWN, kOne, 1, 0, 0},
          {SDL_FINGERDOWN, kOne, 2, 0, 0},
          {SDL_FINGERUP, kOne, 2, 0, 0},
          {SDL_FINGERDOWN, kOne, 1, 0.5F, 0.5F},
          {SDL_FINGERUP, kOne, 1, 0.5F, 0.5F}},
         "a down, b down, b up, a down, a up"},
        {"a finger leaves the window and is lifted there",
         {{SDL_FINGERDOWN, kOne, 1, 0.5F, 0.5F},
          {SDL_FINGERMOTION, kOne, 1, -0.4F, 1.7F},
          {SDL_FINGERUP, kOne, 1, -0.4F, 1.7F}},
         "a down, a move, a up"},
        {"two touch screens number their fingers alike",
         {{SDL_FINGERDOWN, kOne, 0, 0, 0},
          {SDL_FINGERDOWN, kOther, 0, 0, 0},
          {SDL_FINGERUP, kOne, 0, 0, 0},
          {SDL_FINGERMOTION, kOther, 0, 0, 0},
          {SDL_FINGERUP, kOther, 0, 0, 0}},
         "a down, b down, a up, b move, b up"},
        {"four fingers, and a number is used again while the others are down",
         {{SDL_FINGERDOWN, kOne, 1, 0, 0},
          {SDL_FINGERDOWN, kOne, 2, 0, 0},
          {SDL_FINGERDOWN, kOne, 3, 0, 0},
          {SDL_FINGERDOWN, kOne, 4, 0, 0},
          {SDL_FINGERUP, kOne, 2, 0, 0},
          {SDL_FINGERDOWN, kOne, 2, 0, 0},
          {SDL_FINGERUP, kOne, 4, 0, 0},
          {SDL_FINGERUP, kOne, 3, 0, 0},
          {SDL_FINGERUP, kOne, 2, 0, 0},
          {SDL_FINGERUP, kOne, 1, 0, 0}},
         "a down, b down, c down, d down, b up, b down, d up, c up, b up, a up"},
        {"SDL shows the mouse as a finger", {{SDL_FINGERDOWN, SDL_MOUSE_TOUCHID, 1, 0, 0}}, ""},
        {"a cancel comes without an up: the window's focus goes",
         {{SDL_FINGERDOWN, kOne, 1, 0, 0},
          {SDL_FINGERDOWN, kOne, 2, 0, 0},
          {SDL_WINDOWEVENT, 0, 0, 0, 0},
          {SDL_FINGERUP, kOne, 1, 0, 0},
          {SDL_FINGERMOTION, kOne, 2, 0, 0}},
         "a down, b down, lost"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.what);
        news_ = WindowNews();
        for (const News& news : row.told) {
            if (news.type == SDL_WINDOWEVENT) {
                SDL_Event lost{};
                lost.type = SDL_WINDOWEVENT;
                lost.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
                SDL_PushEvent(&lost);
            } else {
                PushFinger(news.type, news.device, news.finger, news.x, news.y);
            }
        }
        SDL_Event last{};
        last.type = SDL_QUIT;
        SDL_PushEvent(&last);
        ASSERT_TRUE(RunUntil([&] { return news_.closeRequests == 1; }));
        std::map<std::int64_t, char> letters;
        std::string told;
        for (const TouchInput& touch : news_.touches) {
            const auto letter = letters.emplace(touch.finger, static_cast<char>('a' + letters.size())).first->second;
            const char* const phase = touch.phase == TouchPhase::kDown   ? " down"
                                      : touch.phase == TouchPhase::kMove ? " move"
                                      : touch.phase == TouchPhase::kUp   ? " up"
                                                                         : " cancel";
            told += (told.empty() ? "" : ", ") + std::string(1, letter) + phase;
        }
        if (news_.inputLosses > 0) told += ", lost";
        EXPECT_EQ(told, row.expected);
    }
}

TEST_F(WindowProof, FillsTheDisplayAndIsAsBeforeAfterwards) {
    const auto place = parts_.window.Place();
    ASSERT_TRUE(place);
    SDL_Rect display{};
    ASSERT_EQ(SDL_GetDisplayBounds(0, &display), 0);
    parts_.window.ToggleFullScreen();
    ASSERT_TRUE(RunUntil([&] { return parts_.window.Size() == PixelSize{display.w, display.h}; }));
    EXPECT_EQ(parts_.window.Place(), place) << "the place to come back to";
    // There is no window manager here that would help.
    const XScreen server(kTitle);
    EXPECT_EQ(server.Bounds(), (PixelRect{display.x, display.y, display.w, display.h}));
    parts_.window.ToggleFullScreen();
    EXPECT_TRUE(RunUntil([&] { return parts_.window.Size() == kScreen; }));
    EXPECT_EQ(server.Bounds(), (PixelRect{place->x, place->y, place->width, place->height}));
    EXPECT_EQ(parts_.window.Place(), place);
    EXPECT_EQ(news_.inputLosses, 0) << "fingers stay where they are";
}

TEST_F(WindowProof, OpensWhereItWasAsFarAsTheDisplayHasIt) {
    SDL_Rect display{};
    ASSERT_EQ(SDL_GetDisplayUsableBounds(0, &display), 0);
    struct Case {
        WindowPlace wanted;
        PixelSize size;
        bool isThere;
    };
    const Case cases[] = {{{90, 70, 300, 500}, {300, 500}, true},
                          {{5000, 70, 300, 500}, {300, 500}, false},
                          {{10, -3000, 300, 500}, {300, 500}, false},
                          {{10, 10, 9000, 9000}, {display.w, display.h}, false}};
    for (const Case& row : cases) {
        parts_.window.Close();
        parts_.window.SetPlace(row.wanted);
        OpenWindow(kScreen);
        EXPECT_EQ(parts_.window.Size(), row.size) << row.wanted.x;
        const auto place = parts_.window.Place();
        ASSERT_TRUE(place);
        EXPECT_EQ(place == row.wanted, row.isThere) << row.wanted.x;
        EXPECT_TRUE(place->x >= 0 && place->x < display.w && place->y >= 0 && place->y < display.h) << row.wanted.x;
    }
}

TEST_F(WindowProof, IsAskedToCloseByItsButton) {
    XScreen screen(kTitle);
    screen.AskToClose();
    EXPECT_TRUE(RunUntil([&] { return news_.closeRequests == 1; }));
}

TEST_F(WindowProof, LiftsTheFingersWhenTheFocusOrTheWindowGoes) {
    XScreen screen(kTitle);
    screen.GiveFocus();
    PushFinger(SDL_FINGERDOWN, 7, 1, 0.25F, 0.5F);
    ASSERT_TRUE(RunUntil([&] { return news_.touches.size() == 1; }));
    news_.inputLosses = 0;
    screen.TakeFocus();
    ASSERT_TRUE(RunUntil([&] { return news_.inputLosses == 1; }));

    SDL_Event hidden{};
    hidden.type = SDL_WINDOWEVENT;
    hidden.window.event = SDL_WINDOWEVENT_MINIMIZED;
    PushFinger(SDL_FINGERUP, 7, 1, 0.25F, 0.5F);  // It has been lifted by now.
    SDL_PushEvent(&hidden);
    SDL_PushEvent(&hidden);
    ASSERT_TRUE(RunUntil([&] { return !news_.visibilities.empty(); }));
    EXPECT_EQ(news_.visibilities, std::vector<bool>{false});
    // The application hears of the background first: what is down is lifted when the window is back.
    EXPECT_EQ(news_.inputLosses, 1);
    EXPECT_EQ(news_.touches.size(), 1U);
}

TEST_F(WindowProof, ShowsWhatIsPresentedAndNothingElse) {
    const XScreen screen(kTitle);
    host::Window& window = parts_.window;
    constexpr Rgba kRed{200, 10, 20, 255};
    constexpr Rgba kBlue{10, 20, 220, 255};
    window.Pixels().Clear(kRed);
    window.Present(std::vector<PixelRect>{{0, 0, kScreen.width, kScreen.height}});
    ASSERT_TRUE(RunUntil([&] { return screen.ColorAt(180, 320) == kRed; }));

    window.Pixels().Clear(kBlue);
    window.Present(std::vector<PixelRect>{{-5, -5, 15, 15}, {100, 100, 50, 50}, {1000, 0, 5, 5}});
    ASSERT_TRUE(RunUntil([&] { return screen.ColorAt(149, 149) == kBlue; }));
    EXPECT_EQ(screen.ColorAt(9, 9), kBlue);
    EXPECT_EQ(screen.ColorAt(100, 100), kBlue);
    EXPECT_EQ(screen.ColorAt(10, 10), kRed);
    EXPECT_EQ(screen.ColorAt(150, 150), kRed);
}

TEST_F(WindowProof, FollowsTheSizeThatTheDesktopGivesIt) {
    XScreen screen(kTitle);
    const PixelSize larger{500, 700};
    screen.Resize(larger);
    ASSERT_TRUE(RunUntil([&] { return news_.resizes > 0; }));
    EXPECT_EQ(parts_.window.Size(), larger);
    constexpr Rgba kGreen{10, 200, 20, 255};
    parts_.window.Pixels().Clear(kGreen);
    parts_.window.Present(std::vector<PixelRect>{{0, 0, larger.width, larger.height}});
    EXPECT_TRUE(RunUntil([&] { return screen.ColorAt(499, 699) == kGreen; }));
    PushFinger(SDL_FINGERDOWN, 7, 1, 0.5F, 0.5F);
    ASSERT_TRUE(RunUntil([&] { return !news_.touches.empty(); }));
    ExpectTouch(0, TouchPhase::kDown, 250, 350);
}

TEST_F(WindowProof, NamesKeysByTheirPositions) {
    struct Case {
        SDL_Scancode scancode;
        Uint8 repeat;
        Uint16 modifiers;
        KeyInput expected;
    };
    const Case cases[] = {
        {SDL_SCANCODE_R, 0, 0, {"KeyR", KeyPhase::kDown, ShiftKey::kReleased}},
        {SDL_SCANCODE_R, 1, KMOD_LSHIFT, {"KeyR", KeyPhase::kRepeat, ShiftKey::kHeld}},
        {SDL_SCANCODE_SPACE, 0, 0, {"Space", KeyPhase::kDown, ShiftKey::kReleased}},
        {SDL_SCANCODE_VOLUMEUP, 0, KMOD_RSHIFT, {"AudioVolumeUp", KeyPhase::kDown, ShiftKey::kHeld}},
        {SDL_SCANCODE_0, 0, 0, {"Digit0", KeyPhase::kDown, ShiftKey::kReleased}},
        {SDL_SCANCODE_AC_BACK, 0, 0, {"BrowserBack", KeyPhase::kDown, ShiftKey::kReleased}},
    };
    for (const Case& row : cases) {
        SDL_Event event{};
        event.type = SDL_KEYDOWN;
        event.key.repeat = row.repeat;
        event.key.keysym.scancode = row.scancode;
        event.key.keysym.mod = row.modifiers;
        SDL_PushEvent(&event);
    }
    SDL_Event nameless{};
    nameless.type = SDL_KEYUP;
    SDL_PushEvent(&nameless);
    ASSERT_TRUE(RunUntil([&] { return news_.keys.size() >= std::size(cases); }));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(news_.keys[i].code, cases[i].expected.code);
        EXPECT_EQ(news_.keys[i].phase, cases[i].expected.phase) << news_.keys[i].code;
        EXPECT_EQ(news_.keys[i].shift, cases[i].expected.shift) << news_.keys[i].code;
    }
    EXPECT_EQ(news_.keys.size(), std::size(cases));
}

TEST_F(WindowProof, TakesSignalsToEndForRequestsAndASecondOneAtOnceForTheSameWish) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        news_.closeRequests = 0;
        int raised = 0;
        EXPECT_TRUE(RunUntil([&] {
            if (raised < 2 && raised == news_.closeRequests) {
                ++raised;
                std::raise(signal);
            }
            return news_.closeRequests == 2;
        })) << signal;
    }
}

/// Has nothing to do but once, in a while, unless it is woken.
class SleepyClient final : public LoopClient {
public:
    explicit SleepyClient(const Clock& clock) : clock_(clock) {}

    Microseconds RunStep(Microseconds now) override {
        ++steps;
        if (firstDue == 0) firstDue = now + kNap;
        if (now >= firstDue && napEnd == 0) napEnd = clock_.Now();
        if (napEnd == 0) return firstDue;
        if (!waker.joinable()) waker = std::thread([this] { driver->Wake(); });
        if (stepsAtNapEnd == 0) stepsAtNapEnd = steps;
        return kNever;
    }
    [[nodiscard]] bool HasEnded() const override { return stepsAtNapEnd != 0 && steps > stepsAtNapEnd; }

    static constexpr Microseconds kNap = 123'456;
    const Clock& clock_;
    LoopDriver* driver = nullptr;
    std::thread waker;
    int steps = 0;
    int stepsAtNapEnd = 0;
    Microseconds firstDue = 0;
    Microseconds napEnd = 0;
};

TEST_F(WindowProof, SleepsUntilItIsDueOrWokenByAnotherThread) {
    SleepyClient client(parts_.clock);
    client.driver = &parts_.loopDriver;
    client.driver->Run(client);  // Ends by the wake; if it were lost, the test's own time would run out.
    client.waker.join();
    EXPECT_GE(client.napEnd, client.firstDue);
    // A step for each millisecond of the nap would be a loop that spins.
    EXPECT_LT(client.stepsAtNapEnd, 20);
}

/// Sleeps for good from its first step on, in which it does something, until it is told to end.
class SleepingClient final : public LoopClient {
public:
    SleepingClient(const std::function<void()>& first, const std::function<bool()>& isDone)
        : first_(first), isDone_(isDone) {}

    Microseconds RunStep(Microseconds /*now*/) override {
        if (!hasBegun_) first_();
        hasBegun_ = true;
        return kNever;
    }
    [[nodiscard]] bool HasEnded() const override { return hasBegun_ && isDone_(); }

private:
    const std::function<void()>& first_;
    const std::function<bool()>& isDone_;
    bool hasBegun_ = false;
};

TEST_F(WindowProof, LearnsInItsSleepWhatHasComeByAnyWay) {
    XScreen screen(kTitle);
    std::thread other;
    struct Case {
        const char* way;
        std::function<void()> first;
        std::function<bool()> isDone;
    };
    // If one were lost, the test's own time would run out.
    const Case cases[] = {
        {"from the server", [&] { other = std::thread([&] {
                                      screen.Resize({400, 600});
                                  }); },
         [&] { return news_.resizes == 1; }},
        {"read by Xlib while the program draws",
         [&] {
             screen.Resize({410, 610});
             parts_.window.Present(std::vector<PixelRect>{{0, 0, 100, 100}});
         },
         [&] { return news_.resizes == 2; }},
        {"from another thread, without the server",
         [&] { other = std::thread([] { PushFinger(SDL_FINGERDOWN, 7, 1, 0.5F, 0.5F); }); },
         [&] { return news_.touches.size() == 1; }},
        {"from a signal", [&] { other = std::thread([] { std::raise(SIGTERM); }); },
         [&] { return news_.closeRequests == 1; }},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(row.way);
        SleepingClient client(row.first, row.isDone);
        parts_.loopDriver.Run(client);
        if (other.joinable()) other.join();
    }
    EXPECT_EQ(parts_.window.Size(), (PixelSize{410, 610}));
}

TEST(DisplayProof, IsUnavailableWhereTheDisplayOfTheEnvironmentCannotBeReached) {
    const std::string display = std::getenv("DISPLAY");
    testing::internal::CaptureStderr();
    for (const char* const unreachable : {"", ":4077", "no such machine:0"}) {
        setenv("DISPLAY", unreachable, 1);
        EXPECT_FALSE(IsDesktopAvailable()) << unreachable;
        WindowNews news;
        EXPECT_FALSE(CreateDesktopBackend({"/", "/"})->Parts().window.Open("Brevant", kScreen, news, news))
            << unreachable;
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    setenv("DISPLAY", display.c_str(), 1);
    EXPECT_TRUE(IsDesktopAvailable());
}

}  // namespace
