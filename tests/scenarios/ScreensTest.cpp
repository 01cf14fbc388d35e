// The way from screen to screen, through the launcher, judged by the trace and the settings file.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tizen/App/UiApp.h"
#include "splash/FormSplash.h"
#include "support/ProgramRun.h"
#include "support/TestPhone.h"

namespace {

double TimeOf(const nlohmann::json& line) {
    return line["ms"].get<double>();
}

}  // namespace

TEST(Splash, LastsTwoSecondsAndAFadeOrUntilTheBackKey) {
    struct Case {
        std::string name;
        std::string performance;
        double endMs;
    };
    // 5 ms until it is shown, 2000 ms at full brightness, 30 ms until the fade begins and 16 steps of 30 ms.
    std::vector<Case> cases = {{"by itself", "", 5 + 2000 + 30 * 16}};
    for (const std::string key : {"back", "Escape", "BrowserBack"}) {
        cases.push_back({key, "600 key " + key + " press\n700 key " + key + " release\n", 700});
    }
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        ProgramRun run;
        ASSERT_EQ(0, run.Play(each.performance + "3000 quit\n"));
        EXPECT_EQ("IDF_FORM_SPLASH", run.Told("form", "removed", "name").front());
        EXPECT_DOUBLE_EQ(each.endMs, run.TimesOf("form", "removed").front());
        EXPECT_EQ((std::vector<std::string>{"IDF_FORM", "IDF_FORM_SPLASH", "IDF_FORM"}),
                  run.Told("form", "current", "name"));
        EXPECT_DOUBLE_EQ(5, run.TimesOf("form", "current")[1]);
    }
}

TEST(Splash, ShowsAnImageAlsoBeforeItIsInitialised) {
    TestPhone phone;
    phone.At(10, [] {
        FormSplash splash;
        EXPECT_TRUE(splash.Initialize(nullptr));
        splash.ShowIntroImage(0);
        EXPECT_EQ(nullptr, splash.GetParent());
    });
    phone.RunEmpty(50);
}

// A request can be posted again before the first is delivered: Close, then Back; the Back key, then the fade's end.
TEST(PlayForm, TakesARepeatedRequestAsOne) {
    constexpr long kRequests[] = {731, 771, 1001};
    TestPhone phone;
    Tizen::Ui::Controls::Form* playForm = nullptr;
    const auto frame = [] { return Tizen::App::UiApp::GetInstance()->GetAppFrame(); };
    phone.At(1, [&] { playForm = frame()->GetCurrentForm(); });
    int looks = 0;
    for (int i = 0; i < 3; ++i) {
        phone.At(500 + i * 500, [&, i] {
            for (int times = 0; times < 3; ++times) playForm->SendUserEvent(kRequests[2 - i], nullptr);
        });
        phone.At(700 + i * 500, [&] {
            EXPECT_EQ(playForm, frame()->GetCurrentForm());
            EXPECT_TRUE(playForm->GetShowState());
            ++looks;
        });
    }
    phone.RunOcarina(3000);
    EXPECT_EQ(3, looks);
}

TEST(BackKey, EndsTheProgramFromThePlayScreenOnItsReleaseAlone) {
    ProgramRun run;
    ASSERT_EQ(0, run.Play("3000 breath 0.8\n3500 key back press\n4000 key back release\n9000 breath 0\n"));
    EXPECT_EQ(std::vector<double>{4000}, run.TimesOf("app", "terminating"));
    EXPECT_EQ("end", run.ReadTrace().back()["what"]);
    EXPECT_TRUE(run.ReadTrace("microphone", "stop").empty()) << "the reader is left alone after the Back key";
    EXPECT_EQ("", run.Errors());
}

TEST(FirstBlow, HidesTheHintOnceAndForEver) {
    ProgramRun run;
    const auto hintEvents = [&run](const char* event) {
        std::vector<double> times;
        for (const auto& line : run.ReadTrace("control", event)) {
            if (line["name"] == "IDC_LABEL_ICON_BLOW") times.push_back(TimeOf(line));
        }
        return times;
    };
    ASSERT_EQ(
        0, run.Play("3500 peak 152\n4000 breath 0.19\n5000 breath 0.2\n6000 breath 0\n7000 breath 0.9\n8000 quit\n"));
    EXPECT_EQ((std::vector<double>{5020}), hintEvents("hidden")) << "0.19, or a peak of 152, is no breath, 0.2 is one";
    EXPECT_EQ(std::vector<std::string>{"FirstBlow"}, run.Told("settings", "write", "key"));
    EXPECT_EQ(std::vector<std::string>{"1"}, run.Told("settings", "write", "value"));

    ASSERT_EQ(0, run.Play("5000 breath 0.5\n6000 quit\n"));
    EXPECT_EQ((std::vector<double>{2485}), hintEvents("hidden")) << "hidden when the splash has ended";
    EXPECT_TRUE(run.ReadTrace("settings", "write").empty());
}

TEST(PhoneState, StopsTheMicrophoneInTheBackgroundAndWithTheScreenOff) {
    ProgramRun run;
    ASSERT_EQ(0, run.Play("3000 background\n4000 foreground\n5000 screen-off\n6000 screen-on\n6500 quit\n"));
    std::vector<double> starts;
    for (const auto& line : run.ReadTrace("microphone", "start")) {
        if (line["ok"]) starts.push_back(TimeOf(line));
    }
    EXPECT_EQ((std::vector<double>{0, 4000, 6000}), starts) << "the first with the application's first foreground";
    EXPECT_EQ((std::vector<double>{3000, 5000, 6500}), run.TimesOf("microphone", "stop"));
}

TEST(Menu, OpensHelpAndReturnsByConfirmAndByBack) {
    for (const char* close : {"4000 tap IDC_BUTTON_CONFIRM\n", "4000 key back press\n4000 key back release\n"}) {
        ProgramRun run;
        ASSERT_EQ(0,
                  run.Play(std::string("3000 tap IDC_BUTTON_MENU\n3300 tap IDC_BUTTON_HELP\n") + close + "5000 quit\n"))
            << run.Errors();
        EXPECT_EQ("", run.Errors());
        EXPECT_EQ(std::vector<std::string>{"IDP_POPUP_HELP"}, run.Told("popup", "shown", "name"));
        EXPECT_EQ(std::vector<double>{4000}, run.TimesOf("popup", "destroyed"));
        // Frames 4, 3, 2, 1 on four ticks of 30 ms after the press; the popup opens on the one that shows frame 1.
        EXPECT_GT(run.TimesOf("popup", "shown")[0], 3300 + 3 * 30 - 1);
        EXPECT_LE(run.TimesOf("popup", "shown")[0], 3300 + 4 * 30);
        EXPECT_DOUBLE_EQ(3300, run.TimesOf("microphone", "stop").at(0));
        EXPECT_DOUBLE_EQ(4000, run.TimesOf("microphone", "start").back());
        EXPECT_EQ("end", run.ReadTrace().back()["what"]);
    }
}

TEST(Setup, StoresColoursAndAutomaticPlayForTheNextStart) {
    ProgramRun run;
    ASSERT_EQ(
        0,
        run.Play(
            "3000 tap IDC_BUTTON_MENU\n3300 tap IDC_BUTTON_SETUP\n3600 tap IDC_CHECK_AUTO_PLAY\n"
            "3700 tap IDC_BUTTON_HOLE_COLOR\n3800 pick IDC_COLORPICKER #102030\n3900 tap IDC_BUTTON_BACK_COLOR\n"
            "4000 pick IDC_COLORPICKER #405060\n4100 tap IDC_BUTTON_CONFIRM\n4200 tap IDC_BUTTON_CLOSE\n5000 quit\n"))
        << run.Errors();
    EXPECT_EQ("", run.Errors());
    std::vector<std::string> written;
    for (const auto& line : run.ReadTrace("settings", "write")) {
        written.push_back(line["key"].get<std::string>() + '=' + line["value"].get<std::string>());
    }
    EXPECT_EQ((std::vector<std::string>{"HoleColor=16,32,48,255", "BackColor=64,80,96,255", "AutoPlay=1"}), written);
    EXPECT_FALSE(run.ReadTrace("microphone", "start").back()["ms"] > 4200) << "automatic play needs no microphone";

    ASSERT_EQ(0, run.Play("3000 key KeyR press\n3500 screenshot again.png\n4000 quit\n"));
    EXPECT_TRUE(run.ReadTrace("microphone", "start").empty());
    EXPECT_EQ(1U, run.ReadTrace("player", "open").size());
}

TEST(Setup, KeepsEverythingWhenTheColourPopupIsLeft) {
    for (const char* leave : {"4100 tap IDC_BUTTON_CANCEL\n", "4100 key back press\n4100 key back release\n"}) {
        ProgramRun run;
        ASSERT_EQ(
            0,
            run.Play(std::string("3000 tap IDC_BUTTON_MENU\n3300 tap IDC_BUTTON_SETUP\n3700 tap IDC_BUTTON_HOLE_COLOR\n"
                                 "3800 pick IDC_COLORPICKER #102030\n") +
                     leave + "4200 key back press\n4200 key back release\n5000 quit\n"))
            << run.Errors();
        EXPECT_EQ("[Setup]\nHoleColor=255,194,48,255\nBackColor=226,100,111,255\nAutoPlay=0\n",
                  run.Folder().Read("data/info.ini"));
        EXPECT_EQ("IDF_FORM", run.ReadTrace("form", "current").back()["name"]);
    }
}

TEST(Screens, SurviveEveryUnusualSequence) {
    const std::string toSetup = "2600 tap IDC_BUTTON_MENU\n+200 tap IDC_BUTTON_SETUP\n+300 ";
    const std::string toHelp = "2600 tap IDC_BUTTON_MENU\n+200 tap IDC_BUTTON_HELP\n+300 ";
    const std::string back = "key back press\n+0 key back release\n";
    struct Case {
        const char* name;
        std::string performance;
        bool microphoneRuns;
    };
    const std::vector<Case> cases = {
        {"a Back that was pressed on setup and lifted on the play screen",
         toSetup + "key back press\n+10 tap IDC_BUTTON_CLOSE\n+200 key back release\n", true},
        {"two fingers on both colour buttons",
         toSetup +
             "press IDC_BUTTON_BACK_COLOR\n+0 press IDC_BUTTON_HOLE_COLOR\n+50 release IDC_BUTTON_BACK_COLOR\n"
             "+0 release IDC_BUTTON_HOLE_COLOR\n+300 " +
             back + "+100 " + back,
         true},
        {"both menu buttons at once",
         "2600 tap IDC_BUTTON_MENU\n+200 press IDC_BUTTON_HELP\n+0 press IDC_BUTTON_SETUP\n+50 release "
         "IDC_BUTTON_HELP\n"
         "+0 release IDC_BUTTON_SETUP\n+400 " +
             back,
         true},
        {"background while help is open", toHelp + "background\n+100 foreground\n+100 tap IDC_BUTTON_CONFIRM\n", true},
        {"background and screen off while setup is open",
         toSetup + "screen-off\n+50 background\n+50 foreground\n+50 screen-on\n+50 tap IDC_BUTTON_CLOSE\n", true},
        {"automatic play newly on", toSetup + "tap IDC_CHECK_AUTO_PLAY\n+50 tap IDC_BUTTON_CLOSE\n", false},
        {"holes held while the menu opens setup",
         "2600 key KeyR press\n+0 breath 0.8\n+200 tap IDC_BUTTON_MENU\n+200 tap IDC_BUTTON_SETUP\n+300 key KeyR "
         "release\n"
         "+100 tap IDC_BUTTON_CLOSE\n+0 breath 0\n",
         true},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        ProgramRun run;
        ASSERT_EQ(0, run.Play(each.performance + "+500 screenshot end.png\n+0 quit\n")) << run.Errors();
        EXPECT_EQ("", run.Errors());
        EXPECT_EQ("IDF_FORM", run.ReadTrace("form", "current").back()["name"]);
        EXPECT_EQ(run.ReadTrace("popup", "shown").size(), run.ReadTrace("popup", "destroyed").size());
        EXPECT_EQ(run.ReadTrace("form", "added").size(), run.ReadTrace("form", "removed").size());
        bool isRunning = false;
        const double end = TimeOf(run.ReadTrace("app", "terminating").front());
        for (const auto& line : run.ReadTrace()) {
            if (line["what"] != "microphone" || !line.value("ok", false) || TimeOf(line) >= end) continue;
            if (line["event"] == "start") isRunning = true;
            if (line["event"] == "stop") isRunning = false;
        }
        EXPECT_EQ(each.microphoneRuns, isRunning);
    }
}

TEST(Screens, EndCleanlyWithAnythingOpen) {
    for (const char* open :
         {"tap IDC_BUTTON_HELP\n+300 ", "tap IDC_BUTTON_SETUP\n+300 ",
          "tap IDC_BUTTON_SETUP\n+300 press IDC_BUTTON_HOLE_COLOR\n+10 release IDC_BUTTON_HOLE_COLOR\n+300 ",
          "tap IDC_BUTTON_SETUP\n+20 "}) {
        ProgramRun run;
        ASSERT_EQ(0, run.Play(std::string("2600 tap IDC_BUTTON_MENU\n+200 ") + open + "quit\n"))
            << open << run.Errors();
        EXPECT_EQ("end", run.ReadTrace().back()["what"]);
    }
}
