// What the host itself tells the player, when it comes and when it goes.

#include <gtest/gtest.h>

#include "runtime/notices/Notices.h"
#include "runtime/sound/Sound.h"
#include "screen/ScreenRig.h"

namespace {

constexpr const char* kKeys = R"(<keys><key code="KeyF" touch="IDC_PANEL" at="0.5,0.5"/></keys>)";
constexpr int kFrameMs = 16;

struct Listener final : host::CaptureConsumer {
    std::size_t BlocksWanted() const override { return 1; }
    void OnBlock(std::span<const std::uint8_t>) override {}
};

struct Told : ScreenRig {
    Told() : ScreenRig({400, 800}, kKeys) {
        auto& form = ShowForm();
        Add("IDC_PANEL", {0, 0, 100, 100}, &form).SetMultipoint(true);
        Start();
    }
    ~Told() override {
        sound->Close();
        notices.reset();
    }
    // The program's next start in the same data folder.
    void Start() {
        if (notices) notices->Save();
        notices.reset();
        sound.reset();
        const host::BackendParts parts = backend_->Parts();
        const host::SoundServices services{loop_, parts.storage, parts.speaker, parts.microphone, trace_, console_};
        sound = std::make_unique<host::Sound>(services, options, host::MicrophoneSupport::kNone);
        notices = std::make_unique<host::Notices>(screen_, *sound, loop_, package_, parts.storage);
        notices->OfferKeys();
    }
    void Wait(int ms) {
        for (int passed = 0; passed < ms; passed += kFrameMs) Compose();
    }
    /// Whether the plate shows, by its colour within its left end.
    bool IsTold() {
        Compose();
        return Pixel(30, 760) == host::Rgba{0x2B, 0x1A, 0x20, 0xFF};
    }

    host::Options options;
    std::unique_ptr<host::Sound> sound;
    std::unique_ptr<host::Notices> notices;
};

}  // namespace

TEST(Notices, NameTheKeysWhenNobodyDoesAnythingOnTheScreenThatTheyPlayOn) {
    Told rig;
    rig.Wait(4500);
    EXPECT_FALSE(rig.IsTold());
    rig.Wait(1000);
    EXPECT_TRUE(rig.IsTold());
    rig.Tap(200, 500);
    EXPECT_FALSE(rig.IsTold());
    rig.Wait(8000);
    EXPECT_FALSE(rig.IsTold()) << "the first finger takes it away for this run";

    rig.Start();
    rig.ShowPopup("popup", {0, 0, 50, 50});
    rig.Wait(8000);
    EXPECT_FALSE(rig.IsTold()) << "keys do not play on the popup";
    rig.Destroy("popup");
    rig.Wait(6000);
    EXPECT_TRUE(rig.IsTold());
    rig.sound->TellOfRepeat();
    EXPECT_FALSE(rig.IsTold());

    rig.Start();
    rig.Wait(8000);
    EXPECT_FALSE(rig.IsTold()) << "who has played knows the keys";
}

TEST(Notices, ShowTheVolumeForASecondWhenItIsChanged) {
    Told rig;
    rig.sound->TellOfRepeat();
    rig.sound->OnVolumeKey(1);
    EXPECT_TRUE(rig.IsTold());
    rig.Wait(700);
    rig.sound->OnVolumeKey(1);
    rig.Wait(700);
    EXPECT_TRUE(rig.IsTold()) << "a second since the last change";
    rig.Wait(500);
    EXPECT_FALSE(rig.IsTold());
}

TEST(Notices, TellOnceThatThereIsNoMicrophone) {
    Listener listener;
    Told rig;
    rig.sound->TellOfRepeat();
    rig.sound->GetSimulatedMicrophone().Lose();
    rig.Wait(5000);
    EXPECT_FALSE(rig.IsTold()) << "nobody listens";
    ASSERT_TRUE(rig.sound->GetCapture().Start(listener));
    rig.Wait(1000);
    rig.sound->GetSimulatedMicrophone().Restore();
    rig.Wait(5000);
    EXPECT_FALSE(rig.IsTold()) << "it came late";
    rig.sound->GetSimulatedMicrophone().Lose();
    rig.Wait(3200);
    EXPECT_TRUE(rig.IsTold());
    rig.Wait(9000);
    EXPECT_FALSE(rig.IsTold());
    rig.sound->GetSimulatedMicrophone().Restore();
    rig.sound->GetSimulatedMicrophone().Lose();
    rig.Wait(4000);
    EXPECT_FALSE(rig.IsTold()) << "once is enough";
    rig.sound->GetCapture().Stop();
}

TEST(Notices, TellOfASpeakerThatIsMissingForSeconds) {
    Told rig;
    rig.sound->TellOfRepeat();
    host::SpeakerOutput& output = rig.sound->GetOutput();
    for (const int missing : {2000, 4000, 4000}) {
        output.SetSimulatedLoss(true);
        rig.Wait(missing);
        EXPECT_EQ(rig.IsTold(), missing > 3000) << missing;
        output.SetSimulatedLoss(false);
        EXPECT_FALSE(rig.IsTold()) << "it is back";
    }
    output.SetSimulatedLoss(true);
    rig.Wait(25000);
    EXPECT_FALSE(rig.IsTold()) << "not for ever";
}

TEST(Notices, MarkARunningTakeAndNameItsFile) {
    Told rig;
    rig.sound->TellOfRepeat();
    const TemporaryFolder folder;
    rig.options.musicFolder = folder.Path();
    // The mark's middle, at the right.
    const auto isMarked = [&rig] {
        rig.Compose();
        return rig.Pixel(377, 83) == host::Rgba{0xE0, 0x10, 0x20, 0xFF};
    };
    EXPECT_FALSE(isMarked());
    rig.sound->ToggleTake({});
    EXPECT_TRUE(isMarked());
    EXPECT_FALSE(rig.IsTold());
    rig.sound->ToggleTake({});
    EXPECT_FALSE(isMarked());
    EXPECT_TRUE(rig.IsTold()) << "the file's name";
    rig.Wait(9000);
    EXPECT_FALSE(rig.IsTold());
    rig.options.musicFolder = "/proc/nowhere";
    rig.Start();
    rig.sound->ToggleTake({});
    EXPECT_FALSE(isMarked());
    EXPECT_TRUE(rig.IsTold()) << "that there is none";
}

TEST(Notices, TakeNeitherTouchesNorKeys) {
    Told rig;
    rig.sound->OnVolumeKey(-1);
    EXPECT_TRUE(rig.IsTold());
    rig.TakeLog();
    rig.Tap(200, 760);
    EXPECT_EQ((std::vector<std::string>{"form press 0 50,190", "form release 0 50,190"}), rig.TakeLog());
}
