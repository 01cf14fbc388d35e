// What each screen looks like, on a small, a usual and a large phone.

#include <gtest/gtest.h>

#include <string>

#include "support/Golden.h"
#include "support/ProgramRun.h"

class Pictures : public testing::TestWithParam<const char*> {};

TEST_P(Pictures, MatchTheGoldenOnes) {
    const std::string performance =
        "1000 screenshot splash.png\n2400 screenshot fade.png\n2550 screenshot play.png\n"
        "2600 tap IDC_BUTTON_MENU\n2850 screenshot menu.png\n2900 tap IDC_BUTTON_HELP\n3200 screenshot help.png\n"
        "3300 tap IDC_BUTTON_CONFIRM\n3400 breath 0.7\n3400 key KeyR press\n3400 key KeyJ press\n"
        "3700 screenshot playing.png\n3700 key KeyR release\n3700 key KeyJ release\n3700 breath 0\n"
        "4000 tap IDC_BUTTON_MENU\n4200 tap IDC_BUTTON_SETUP\n4500 screenshot setup.png\n"
        "4600 tap IDC_BUTTON_HOLE_COLOR\n4800 screenshot colour.png\n5000 quit\n";
    ProgramRun run;
    ASSERT_EQ(0, run.Play(performance, {"--screen", GetParam()})) << run.Errors();
    EXPECT_EQ("", run.Errors());
    for (const char* name : {"splash", "fade", "play", "menu", "help", "playing", "setup", "colour"}) {
        ExpectGolden(run.Folder() / (std::string(name) + ".png"), std::string(GetParam()) + '/' + name);
    }
}

INSTANTIATE_TEST_SUITE_P(Screens, Pictures, testing::Values("480x800", "720x1280", "1080x1920"),
                         [](const auto& test) { return "At" + std::string(test.param); });
