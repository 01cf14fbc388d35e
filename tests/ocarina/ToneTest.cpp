// Which recording sounds how loudly, and what breath and fingers make of the tone.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tizen/App/UiApp.h"
#include "Tizen/Base/String.h"
#include "Tizen/Ui/Controls/Frame.h"
#include "play/BrevantForm.h"
#include "runtime/sound/Sound.h"
#include "shared/JLib.h"
#include "sound/PitchPlayer.h"
#include "support/TestPhone.h"
#include "support/TraceLines.h"

namespace {

using Tizen::Base::String;

constexpr int kPlayingMs = 2600;  // the splash is over by then

// What happened to the player and to pictures of controls from `fromMs` on, in words.
std::vector<std::string> Happened(const TemporaryFolder& folder, double fromMs) {
    std::vector<std::string> words;
    for (const auto& thing : ReadTraceLines(folder.Read("trace.jsonl"))) {
        if (thing["ms"].get<double>() < fromMs) continue;
        if (thing["what"] == "player" && thing["event"] == "open") words.push_back(thing["file"]);
        if (thing["what"] == "player" && thing["event"] == "close") words.push_back("close");
        if (thing["what"] == "control" && thing["event"] == "bitmap") words.push_back(thing["file"]);
    }
    return words;
}

}  // namespace

TEST(Recording, IsNamedByOctaveAndSemitoneOrIsTheLowestC) {
    struct Case {
        int octave;
        int semitone;
        const wchar_t* name;
    };
    PitchPlayer player;
    EXPECT_EQ(String(L"ocarina_4_00.ogg"), player.GetFileName());
    for (const Case& each :
         {Case{3, 7, L"ocarina_3_07.ogg"}, Case{7, 11, L"ocarina_7_11.ogg"}, Case{3, 0, L"ocarina_3_00.ogg"},
          Case{2, 5, L"ocarina_4_00.ogg"}, Case{8, 0, L"ocarina_4_00.ogg"}, Case{4, 12, L"ocarina_4_00.ogg"},
          Case{4, -1, L"ocarina_4_00.ogg"}}) {
        // Not constructed, the player is silent but for its manners.
        player.Play(each.octave, each.semitone);
        EXPECT_EQ(String(each.name), player.GetFileName());
    }
    player.Stop();
    player.OnPlayerEndOfClip();
    player.Release();
    player.Release();
}

TEST(PlayVolume, FollowsTheRingtoneVolume) {
    const int volumes[] = {0, 6, 13, 19, 26, 33, 39, 46, 52, 59, 66, 72, 79, 85, 92, 99};
    TestPhone phone;
    for (int setting = 0; setting < 16; ++setting) {
        phone.GetRuntime().GetSound().SetRingtoneVolume(setting);
        EXPECT_EQ(volumes[setting], JLib::GetPlayVolume()) << setting;
    }
}

TEST(ScreenMetrics, FollowTheScreen) {
    host::Options options;
    options.screen = {1080, 2400};
    const TestPhone phone(options);
    JLib::InitScreenMetrics();
    EXPECT_EQ(Tizen::Graphics::Dimension(1080, 2400), JLib::__dmScreen);
    EXPECT_EQ(36, JLib::__fontSizeNormal);
}

TEST(Breath, SoundsAboveAFifthOfFullScaleAndOnlyOnceWhileItLasts) {
    const TemporaryFolder traces;
    {
        host::Options options;
        options.trace = traces / "trace.jsonl";
        TestPhone phone(options);
        const auto report = [&phone](int ms, unsigned char peak) {
            phone.At(ms, [peak] {
                auto* pForm =
                    dynamic_cast<BrevantForm*>(Tizen::App::UiApp::GetInstance()->GetAppFrame()->GetCurrentForm());
                ASSERT_NE(nullptr, pForm);
                pForm->OnMikeLevelChanged(peak, 0);
            });
        };
        // Nothing but these reports: the microphone stops in the background.
        phone.At(kPlayingMs, [&phone] { phone.GetPhone().EnterBackground(); });
        int ms = kPlayingMs;
        for (const int peak : {152, 153, 200, 200, 152, 247, 255, 246, 135, 100, 0}) {
            report(ms += 100, static_cast<unsigned char>(peak));
        }
        phone.RunOcarina(ms + 200);
    }
    const std::vector<std::string> expected = {
        "volume_3.png",      // 152: nothing sounds
        "ocarina_5_00.ogg",  // 153, in the same step of the display
        "volume_9.png",      // 200, and once more without anything new
        "close",
        "volume_3.png",  // 152
        "ocarina_5_00.ogg",
        "volume_15.png",  // 247, and 255, which is no higher step
        "volume_14.png",  // 246
        "close",
        "volume_1.png",  // 135
        "volume_0.png",  // 100 is below silence, and 0 even more
        "volume_0.png",
    };
    EXPECT_EQ(expected, Happened(traces, kPlayingMs + 50));
}
