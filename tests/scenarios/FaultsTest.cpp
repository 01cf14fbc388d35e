// What goes wrong around the program: bad options, bad files and spoilt settings.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/ProgramRun.h"

namespace {

namespace fs = std::filesystem;

constexpr int kRefused = 2;

// One line on stderr that has the words, and the exit status of a refusal.
void ExpectRefusal(const ProgramRun& run, int status, const std::vector<std::string>& words) {
    const std::string errors = run.Errors();
    EXPECT_EQ(kRefused, status) << errors;
    EXPECT_EQ(1, std::count(errors.begin(), errors.end(), '\n')) << errors;
    for (const std::string& word : words) EXPECT_NE(std::string::npos, errors.find(word)) << word << " in: " << errors;
}

}  // namespace

TEST(Options, AreRefusedInOneLineThatNamesWhatIsWrong) {
    struct Case {
        std::vector<std::string> arguments;
        std::vector<std::string> words;
    };
    const std::vector<Case> cases = {
        {{"--loudness", "3"}, {"--loudness"}},
        {{"--screen", "720"}, {"--screen", "720"}},
        {{"--screen", "0x1280"}, {"--screen", "0x1280"}},
        {{"--screen", "720x1280x3"}, {"720x1280x3"}},
        {{"--ringtone-volume", "16"}, {"--ringtone-volume", "16"}},
        {{"--ringtone-volume", "loud"}, {"--ringtone-volume", "loud"}},
        {{"--backend", "browser"}, {"--backend", "browser"}},
        {{"--language", "xx"}, {"xx"}},
        {{"--language", "../strings/en"}, {"../strings/en"}},
        {{"--performance", "/nowhere/tune.performance"}, {"/nowhere/tune.performance"}},
        {{"--performance", "/"}, {"/: "}},
        // It has no size, and nothing can be read from its beginning.
        {{"--performance", "/proc/self/mem"}, {"/proc/self/mem", "cannot be read"}},
        {{"--breath", "/nowhere/breath.wav"}, {"/nowhere/breath.wav"}},
        {{"--record", "/nowhere/recording.wav"}, {"/nowhere/recording.wav"}},
        {{"--keep-performance", "/nowhere/kept.performance"}, {"/nowhere/kept.performance"}},
        {{"--trace", "/nowhere/trace.jsonl"}, {"/nowhere/trace.jsonl"}},
        {{"--data", "/dev/null"}, {"/dev/null"}},
        {{"--performance"}, {"--performance"}},
    };
    for (const Case& each : cases) {
        ProgramRun run;
        std::vector<std::string> arguments = {"--backend", "headless"};
        if (each.arguments.front() == "--backend") arguments.clear();
        arguments.insert(arguments.end(), each.arguments.begin(), each.arguments.end());
        ExpectRefusal(run, run.Start(arguments), each.words);
    }
}

TEST(Options, ThatAreRefusedLeaveEveryFileAsItWas) {
    ProgramRun run;
    run.Folder().Write("trace.jsonl", "an old trace");
    run.Folder().Write("recording.wav", "an old recording");
    ExpectRefusal(run, run.Play("0 tap IDC_NOWHERE\n"), {"test.performance:1:", "IDC_NOWHERE"});
    ExpectRefusal(run, run.Play("0 quit\n", {"--breath", "/nowhere/breath.wav"}), {"/nowhere/breath.wav"});
    EXPECT_EQ("an old trace", run.Folder().Read("trace.jsonl"));
    EXPECT_EQ("an old recording", run.Folder().Read("recording.wav"));
    EXPECT_FALSE(fs::exists(run.Folder() / "data"));
}

TEST(Options, ThatWouldOverwriteWhatIsReadOrWrittenAreRefusedBeforeAnythingIsOpened) {
    ProgramRun run;
    const TemporaryFolder& folder = run.Folder();
    folder.Write("tune", "0 quit\n");
    fs::create_symlink("tune", folder / "link");
    fs::create_hard_link(folder / "tune", folder / "twin");
    fs::create_symlink("new", folder / "dangling");
    const std::vector<std::vector<std::string>> cases = {
        {"--performance", folder / "tune", "--trace", folder / "tune"},
        {"--performance", folder / "tune", "--record", folder / "link"},
        {"--performance", folder / "tune", "--record", folder / "twin"},
        {"--breath", folder / "tune", "--trace", folder.Path() + "./tune"},
        {"--record", folder / "new", "--trace", folder / "new"},
        {"--record", folder / "new", "--trace", folder / "dangling"},
        {"--performance", folder / "tune", "--keep-performance", folder / "tune"},
        {"--performance", folder / "tune", "--trace", folder / "data/info.ini"},
        {"--performance", folder / "tune", "--record", BREVANT_PACKAGE "data/ocarina_4_00.ogg"},
    };
    for (std::vector<std::string> arguments : cases) {
        SCOPED_TRACE(arguments[1] + " and " + arguments[3]);
        const std::vector<std::string> words = {arguments[2], arguments[3]};
        arguments.insert(arguments.end(), {"--backend", "headless", "--data", folder / "data"});
        ExpectRefusal(run, run.Start(arguments), words);
        EXPECT_EQ("0 quit\n", folder.Read("tune"));
        EXPECT_FALSE(fs::exists(folder / "new"));
    }
    EXPECT_EQ(0, run.Play("0 quit\n", {})) << run.Errors();
    EXPECT_EQ(0, run.Start({"--backend", "headless", "--data", folder / "data", "--performance", folder / "tune",
                            "--record", "/dev/null", "--trace", "/dev/null"}));
}

TEST(Options, AreToldWithoutWhatWouldControlATerminal) {
    ProgramRun run;
    run.Folder().Write("tune\x1b[2J", "0 \x1b]0;title\a\n");
    for (const std::string& name : {std::string("tune\x1b[2J"), std::string("\xc2\x9b"
                                                                            "31m\r\x7f")}) {
        ExpectRefusal(run, run.Start({"--backend", "headless", "--performance", run.Folder() / name}), {"\\x"});
        for (const char control : {'\x1b', '\a', '\r', '\x7f', '\x9b'}) {
            EXPECT_EQ(std::string::npos, run.Errors().find(control)) << run.Errors();
        }
    }
    ExpectRefusal(run, run.Start({"--backend", "headless", "--performance", run.Folder() / "für Elise"}), {"für"});
}

TEST(Options, WhatIsLostOnTheWayEndsWithOneLineAndStatusOne) {
    struct Case {
        std::string performance;
        std::vector<std::string> further;
        const char* named;
    };
    ProgramRun run;
    const auto play = [&run](const std::string& performance, const std::vector<std::string>& further) {
        run.Folder().Write("tune.performance", performance);
        std::vector<std::string> arguments = {"--backend",     "headless",
                                              "--data",        run.Folder() / "data",
                                              "--performance", run.Folder() / "tune.performance"};
        arguments.insert(arguments.end(), further.begin(), further.end());
        return run.Start(arguments);
    };
    const std::string folder = run.Folder().Path();
    for (const Case& each : {Case{"3000 quit\n", {"--trace", "/dev/full"}, "/dev/full"},
                             Case{"3000 quit\n", {"--record", "/dev/full"}, "/dev/full"},
                             Case{"3000 quit\n", {"--keep-performance", "/dev/full"}, "/dev/full"},
                             Case{"0 screenshot /nowhere/a.png\n", {"--screenshots", folder}, "tune.performance:1: "},
                             Case{"0 screenshot no/folder/a.png\n", {"--screenshots", folder}, "no/folder/a.png"}}) {
        SCOPED_TRACE(each.named);
        EXPECT_EQ(1, play(each.performance, each.further));
        const std::string errors = run.Errors();
        EXPECT_EQ(1, std::count(errors.begin(), errors.end(), '\n')) << errors;
        EXPECT_NE(std::string::npos, errors.find(each.named)) << errors;
    }
    // A path of its own is taken as it is.
    EXPECT_EQ(0, play("0 screenshot " + (run.Folder() / "absolute.png") + "\n", {"--screenshots", "/dev"}))
        << run.Errors();
    EXPECT_TRUE(fs::exists(run.Folder() / "absolute.png"));
}

TEST(Options, WithoutAHomeSettingsAreNotKeptAndNothingIsWrittenElsewhere) {
    const char* const variables[] = {"HOME", "XDG_DATA_HOME"};
    std::vector<std::string> before;
    for (const char* name : variables) {
        before.emplace_back(std::getenv(name) == nullptr ? "" : std::getenv(name));
        unsetenv(name);
    }
    ProgramRun run;
    run.Folder().Write("tune.performance", "3000 breath 0.8\n4000 quit\n");
    const std::vector<std::string> arguments = {"--backend", "headless", "--performance",
                                                run.Folder() / "tune.performance"};
    const int status = run.Start(arguments);
    const std::string errors = run.Errors();
    // A relative one would be another folder wherever the program is started.
    setenv("HOME", "home-of-nobody", 1);
    EXPECT_EQ(0, run.Start(arguments));
    EXPECT_EQ(errors, run.Errors());
    EXPECT_FALSE(fs::exists("home-of-nobody"));
    unsetenv("HOME");
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (!before[i].empty()) setenv(variables[i], before[i].c_str(), 1);
    }
    EXPECT_EQ(0, status);
    EXPECT_EQ(1, std::count(errors.begin(), errors.end(), '\n')) << errors;
    EXPECT_NE(std::string::npos, errors.find("HOME")) << errors;
    for (const char* file : {"/info.ini", "/.local/share/brevant", "info.ini"}) EXPECT_FALSE(fs::exists(file)) << file;
}

TEST(Options, ShowVersionAndHelp) {
    ProgramRun run;
    EXPECT_EQ(0, run.Start({"--version"}));
    EXPECT_EQ(0U, run.Output().find("brevant "));
    for (const char* library : {"back end headless: Cairo 1.", "Pango 1.", "libsndfile-1.", "pugixml 1.", "CLI11 2."}) {
        EXPECT_NE(std::string::npos, run.Output().find(library)) << library;
    }
    EXPECT_EQ(0, run.Start({"--help"}));
    // A terminal's smallest page.
    constexpr std::size_t kColumns = 80;
    constexpr int kRows = 24;
    std::istringstream page(run.Output());
    int rows = 0;
    for (std::string line; std::getline(page, line); ++rows) EXPECT_LE(line.size(), kColumns) << line;
    EXPECT_LT(rows, kRows);
    for (const char* option :
         {"--backend", "--screen", "--data", "--performance", "--breath", "--record", "--screenshots", "--trace",
          "--ringtone-volume", "--language", "--version", "--help", "F9"}) {
        EXPECT_NE(std::string::npos, run.Output().find(option)) << option;
    }
}

TEST(Options, WithoutADisplayAndAPerformanceTheProgramSaysWhatItCanDo) {
    ProgramRun run;
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "SDL_VIDEODRIVER"}) unsetenv(name);
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{}, {"--backend", "desktop"}}) {
        EXPECT_EQ(3, run.Start(arguments));
        const std::string errors = run.Errors();
        EXPECT_EQ(1, std::count(errors.begin(), errors.end(), '\n')) << errors;
        EXPECT_EQ(0U, errors.find("brevant: no display can be reached")) << errors;
    }
}

TEST(Options, AReaderThatStopsReadingCostsNoTrace) {
    ProgramRun run;
    const std::string pipe = run.Folder() / "pipe";
    ASSERT_EQ(0, mkfifo(pipe.c_str(), 0600));
    // It writes to a pipe on stderr whose only reader has gone.
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    const int kept = dup(STDERR_FILENO);
    const int writer = open(pipe.c_str(), O_WRONLY);
    ASSERT_GE(writer, 0);
    close(reader);
    run.Folder().Write("tune", "100 screenshot no-such-folder/a.png\n200 quit\n");
    const std::string command = std::string(BREVANT_PROGRAM) + " --backend headless --data " + (run.Folder() / "data") +
                                " --performance " + (run.Folder() / "tune") + " --trace " + (run.Folder() / "trace") +
                                " --screenshots " + (run.Folder() / "shots") + " 2>&" + std::to_string(writer);
    const int status = std::system(command.c_str());
    close(writer);
    close(kept);
    EXPECT_TRUE(WIFEXITED(status)) << status;
    EXPECT_NE(std::string::npos, run.Folder().Read("trace").find("\"event\":\"ended\""));
}

TEST(PerformanceFile, IsRefusedWithItsLineAndAReason) {
    struct Case {
        std::string text;
        int line = 1;
    };
    std::vector<Case> cases = {{"# a comment\n\n100\n", 3},
                               {"200 quit\n100 quit\n", 2},
                               {"0 quit\n10 dance\n", 2},
                               {"0 breath 0.5\n\xFF\xFE\x01\n", 2}};
    std::istringstream firstLines(
        "hello;100 touch 0 down 5;100 touch 10 down 5 5;100 touch 0 up 5 5;100 touch 0 down five 5;-5 quit;"
        "+ quit;1e3 quit;99999999999999999999 quit;0 breath 1.5;0 breath nan;0 ringtone 16;"
        "0 pick IDC_COLORPICKER #12345;0 pick IDC_COLORPICKER red;0 press IDC_BUTTON_MENU 0.5;"
        "0 press IDC_BUTTON_MENU 0.5 2;0 press;0 press IDC_NO_SUCH_CONTROL;0 key back hold;0 key Foo press;"
        "0 key F25 press;0 peak 127;0 pick IDC_COLORPICKER red #FF0000;0 lose sight;0 background now;"
        "0 screenshot picture.jpg");
    for (std::string line; std::getline(firstLines, line, ';');) cases.push_back({line + '\n'});
    for (const Case& each : cases) {
        ProgramRun run;
        SCOPED_TRACE(each.text);
        ExpectRefusal(run, run.Play(each.text), {"test.performance:" + std::to_string(each.line) + ':'});
        EXPECT_FALSE(fs::exists(run.Folder() / "recording.wav")) << "nothing was started";
    }
}

TEST(PerformanceFile, MayHaveCommentsRelativeTimesAndWindowsLineEnds) {
    ProgramRun run;
    ASSERT_EQ(0,
              run.Play("\xEF\xBB\xBF# a tune\r\n\r\n100 breath 0.5 #add a pick\r\n+250 breath 0#none\n  +0.5 key back "
                       "press\n+10 key back release\n"))
        << run.Errors();
    EXPECT_DOUBLE_EQ(360.5, run.ReadTrace("user-event", "sent").front()["ms"].get<double>());
}

TEST(PerformanceFile, EndsARunHalfASecondAfterItsLastAction) {
    ProgramRun run;
    ASSERT_EQ(0, run.Play("1000 breath 0.5\n"));
    EXPECT_DOUBLE_EQ(1500, run.ReadTrace("app", "ended").front()["ms"].get<double>());
}

// Whatever of the package is missing or spoilt, the program says which file, and does what it can without it.
TEST(Resources, ThatAreMissingOrBrokenShowAsMissingBehaviour) {
    const char* const kFiles[] = {"layouts/IDF_FORM.xml",
                                  "layouts/IDF_FORM_SPLASH.xml",
                                  "layouts/IDF_FORM_SETUP.xml",
                                  "layouts/IDP_POPUP_COLOR.xml",
                                  "layouts/IDP_POPUP_HELP.xml",
                                  "strings/en.xml",
                                  "keys.xml",
                                  "images/intro01.png",
                                  "images/icon_memu_2.png",
                                  "images/volume_9.png",
                                  "data/ocarina_5_00.ogg"};
    // Past every screen: the tone, the help, the setup and its colours, each left by the Back key.
    const std::string performance =
        "2600 breath 0.6\n3000 breath 0\n3100 touch 0 down 60 60\n3150 touch 0 up\n"
        "3400 screenshot play.png\n4000 key back press\n4001 key back release\n5000 quit\n";
    for (const char* file : kFiles) {
        for (const char* content : {"", "no resource\n"}) {
            SCOPED_TRACE(std::string(file) + (*content == '\0' ? " missing" : " broken"));
            ProgramRun run;
            run.Install();
            const std::string path = run.Folder() / "installed/share/brevant/" + file;
            fs::remove(path);
            if (*content != '\0') run.Folder().Write(std::string("installed/share/brevant/") + file, content);
            EXPECT_EQ(0, run.Play(performance)) << run.Errors();
            EXPECT_EQ(1U, run.ReadTrace("app", "ended").size());
            EXPECT_EQ(2U, run.ReadTrace("form", "current").size() - 1) << "play, splash and play again";
            // Setup and popups are not opened here, so a missing file of theirs goes unnoticed; a broken one does not.
            const bool isAsked = std::string(file).find("SETUP") == std::string::npos &&
                                 std::string(file).find("POPUP") == std::string::npos;
            if (isAsked || *content != '\0') {
                EXPECT_NE(std::string::npos, run.Errors().find(path + ":")) << run.Errors();
            }
        }
    }
}

TEST(Resources, OfPopupsAndSetupMayBeMissingWhenTheyAreOpened) {
    ProgramRun run;
    run.Install();
    for (const char* file : {"IDF_FORM_SETUP", "IDP_POPUP_COLOR", "IDP_POPUP_HELP"}) {
        fs::remove(run.Folder() / "installed/share/brevant/layouts/" + file + ".xml");
    }
    const std::string leave = "+600 key back press\n+1 key back release\n";
    EXPECT_EQ(0,
              run.Play("2600 tap IDC_BUTTON_MENU\n+400 tap IDC_BUTTON_HELP\n" + leave + "+400 tap IDC_BUTTON_MENU\n" +
                       "+400 tap IDC_BUTTON_SETUP\n" + leave + "+400 breath 0.8\n+500 quit\n"))
        << run.Errors();
    for (const char* file : {"IDF_FORM_SETUP", "IDP_POPUP_HELP"}) {
        EXPECT_NE(std::string::npos, run.Errors().find(std::string("layouts/") + file + ".xml: it is missing"));
    }
    EXPECT_EQ(1U, run.ReadTrace("popup", "destroyed").size());
    EXPECT_EQ(1U, run.ReadTrace("player", "open").size()) << "the instrument plays on";
}
