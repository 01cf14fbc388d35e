// The microphone's blocks, from a device and from the simulated one, as the application's buffers get them.

#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>

#include "runtime/sound/BreathFrontEnd.h"
#include "sound/SoundRig.h"

using namespace Tizen::Media;

namespace sound_test {

namespace {

constexpr host::Microseconds kBlockTime = 20'000;
constexpr std::uint8_t kSilence = 128;
constexpr std::uint8_t kBlown = 153;  // the instrument's threshold

// Writes down what it hears, and when.
class Listener final : public TestListener {
public:
    explicit Listener(Rig& rig, int buffers = 3)
        : TestListener(
              [this, &rig](std::span<const std::uint8_t> block) {
                  heard.insert(heard.end(), block.begin(), block.end());
                  peaks.push_back(*std::max_element(block.begin(), block.end()));
                  times.push_back(rig.loop.Now());
                  if (meanwhile) meanwhile();
              },
              buffers) {}

    void Clear() {
        heard.clear();
        peaks.clear();
        times.clear();
    }

    Bytes heard;
    std::vector<int> peaks;
    std::vector<host::Microseconds> times;
    std::function<void()> meanwhile;
};

host::Options Simulated(const std::string& breathPath = "") {
    host::Options options;
    options.performance = "none";  // A performance breathes; here the test does.
    if (!breathPath.empty()) options.breath = breathPath;
    return options;
}

std::string BreathPath() {
    const std::string folder = BREVANT_TEST_OUTPUT "sound/breath/";
    std::filesystem::create_directories(folder);
    return folder + testing::UnitTest::GetInstance()->current_test_info()->name();
}

// Stereo bytes that tell their own place.
Bytes Places(std::size_t frames) {
    Bytes bytes;
    for (std::size_t i = 0; i < frames; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(i * 7 + i / 256));
        bytes.push_back(static_cast<std::uint8_t>(255 - i));
    }
    return bytes;
}

std::uint8_t ToByte(float frame) {
    return static_cast<std::uint8_t>(kSilence + std::lrint(std::clamp(frame, -1.0F, 1.0F) * 127));
}

// Both channels of what a device at the phone's rate hears as `frames`, behind the front end.
Bytes BothChannels(std::vector<float> frames, host::BreathFrontEnd& frontEnd) {
    frontEnd.Process(frames);
    Bytes bytes;
    for (const float frame : frames) bytes.insert(bytes.end(), 2, ToByte(frame));
    return bytes;
}

// Frames that tell their own place.
std::vector<float> DeviceFrames(std::size_t count) {
    std::vector<float> frames;
    for (std::size_t i = 0; i < count; ++i) frames.push_back(static_cast<float>((i * 7 + i / 256) % 255) / 127 - 1);
    return frames;
}

Bytes Part(const Bytes& bytes, std::size_t from, std::size_t count) {
    return Bytes(bytes.begin() + static_cast<long>(from), bytes.begin() + static_cast<long>(from + count));
}

Bytes Silence(std::size_t bytes) {
    return Bytes(bytes, kSilence);
}

}  // namespace

TEST(Microphone, AllowsInEachStateWhatItsTableSays) {
    Rig rig(Simulated());
    Listener listener(rig);
    AudioIn& audioIn = *listener.audioIn;
    const auto expect = [&](result outcome, result expected, AudioInState state) {
        EXPECT_EQ(outcome, expected);
        EXPECT_EQ(audioIn.GetState(), state);
    };
    expect(listener.Prepare(), E_INVALID_STATE, AUDIO_IN_STATE_PREPARED);
    expect(audioIn.Stop(), E_INVALID_STATE, AUDIO_IN_STATE_PREPARED);
    expect(audioIn.Start(), E_SUCCESS, AUDIO_IN_STATE_RECORDING);
    expect(audioIn.Start(), E_INVALID_STATE, AUDIO_IN_STATE_RECORDING);
    expect(audioIn.Unprepare(), E_INVALID_STATE, AUDIO_IN_STATE_RECORDING);
    Listener second(rig);
    EXPECT_EQ(second.audioIn->Start(), E_DEVICE_UNAVAILABLE);
    expect(audioIn.Stop(), E_SUCCESS, AUDIO_IN_STATE_STOPPED);
    expect(audioIn.Stop(), E_INVALID_STATE, AUDIO_IN_STATE_STOPPED);
    expect(audioIn.Start(), E_SUCCESS, AUDIO_IN_STATE_RECORDING);
    expect(audioIn.Stop(), E_SUCCESS, AUDIO_IN_STATE_STOPPED);
    expect(audioIn.Unprepare(), E_SUCCESS, AUDIO_IN_STATE_INITIALIZED);
    expect(audioIn.Start(), E_INVALID_STATE, AUDIO_IN_STATE_INITIALIZED);
    Tizen::Base::ByteBuffer buffer;
    EXPECT_EQ(audioIn.AddBuffer(&buffer), E_INVALID_STATE);
    EXPECT_EQ(second.audioIn->AddBuffer(&buffer), E_INVALID_ARG);
    EXPECT_EQ(second.audioIn->AddBuffer(nullptr), E_INVALID_ARG);
    constexpr int kFormats[][4] = {{1, 1, 2, 8000}, {0, 2, 2, 8000}, {0, 1, 1, 8000}, {0, 1, 2, 44100}};
    for (const auto& format : kFormats) {
        expect(audioIn.Prepare(static_cast<AudioInputDevice>(format[0]), static_cast<AudioSampleType>(format[1]),
                               static_cast<AudioChannelType>(format[2]), format[3]),
               E_UNSUPPORTED_FORMAT, AUDIO_IN_STATE_INITIALIZED);
    }
    EXPECT_EQ(rig.CloseEvents(),
              (std::vector<std::string>{"microphone prepare", "microphone prepare", "microphone stop",
                                        "microphone start", "microphone start", "microphone prepare",
                                        "microphone start", "microphone stop", "microphone stop", "microphone start",
                                        "microphone stop", "microphone start", "microphone prepare",
                                        "microphone prepare", "microphone prepare", "microphone prepare"}));
}

TEST(Microphone, HearsABreathFileByteForByteInTheWorldsTime) {
    const std::string path = BreathPath();
    const Bytes bytes = Places(1000);
    WriteWav(path, 8000, 2, 8, bytes);
    Rig rig(Simulated(path));
    Listener listener(rig);
    rig.Run(3 * kBlockTime + 777);
    listener.audioIn->Start();
    rig.Run(2 * kBlockTime + 5000);
    EXPECT_EQ(listener.times, (std::vector<host::Microseconds>{80'777, 100'777}));
    EXPECT_EQ(listener.heard, Part(bytes, 0, 640));

    // Stopped and started again, it hears what the world has come to, from the start's moment on.
    listener.audioIn->Stop();
    listener.Clear();
    rig.Run(30'000);
    listener.audioIn->Start();
    rig.Run(2 * kBlockTime);
    rig.Run(4 * kBlockTime);
    Bytes expected = Part(bytes, 75 * 8 * 2, 2000 - 75 * 8 * 2);
    expected.resize(6 * host::kBlockBytes, kSilence);
    EXPECT_EQ(listener.heard, expected);
    EXPECT_EQ(rig.sound->GetCapture().BlocksDelivered(), 8U);
}

TEST(Microphone, ConvertsABreathFileOfAnyFormat) {
    struct Row {
        int rate;
        int channels;
        int format;
    };
    constexpr Row kRows[] = {{8000, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_U8},  {8000, 2, SF_FORMAT_WAV | SF_FORMAT_PCM_16},
                             {16000, 2, SF_FORMAT_WAV | SF_FORMAT_FLOAT},  {44100, 1, SF_FORMAT_WAV | SF_FORMAT_PCM_24},
                             {48000, 3, SF_FORMAT_WAV | SF_FORMAT_PCM_16}, {4000, 2, SF_FORMAT_WAV | SF_FORMAT_PCM_32}};
    const std::string path = BreathPath();
    for (const Row& row : kRows) {
        // Half a second: 100 Hz on the left, 150 Hz on the right, full scale on what is not to be heard.
        std::vector<float> samples;
        const auto tone = [&](int i, double hz) {
            return static_cast<float>(0.5 * std::sin(2 * M_PI * hz * i / row.rate));
        };
        for (int i = 0; i < row.rate / 2; ++i) {
            samples.push_back(tone(i, 100));
            if (row.channels > 1) samples.push_back(tone(i, 150));
            if (row.channels > 2) samples.push_back(1);
        }
        WriteSound(path, row.rate, row.channels, row.format, samples);
        Rig rig(Simulated(path));
        Listener listener(rig);
        listener.audioIn->Start();
        rig.Run(40 * kBlockTime);
        ASSERT_EQ(listener.heard.size(), 40 * host::kBlockBytes);
        std::vector<float> ideal;
        for (int i = 0; i < 4000; ++i) {
            for (const double hz : {100.0, row.channels == 1 ? 100.0 : 150.0}) {
                ideal.push_back(static_cast<float>(0.5 * std::sin(2 * M_PI * hz * i / 8000)));
            }
        }
        host::BreathFrontEnd(2).Process(ideal);
        // Resampling smooths the beginning, and what the front end makes of it dies away.
        for (std::size_t i = 800; i < 7800; ++i) {
            ASSERT_NEAR(listener.heard[i], ToByte(ideal[i]), 2) << row.rate << " sample " << i;
        }
        EXPECT_EQ(Part(listener.heard, 9600, 1000), Silence(1000));
    }
    const std::vector<float> extremes = {1, -1, 0, 0.5F};
    WriteSound(path, 8000, 1, SF_FORMAT_WAV | SF_FORMAT_FLOAT, extremes);
    Rig rig(Simulated(path));
    Listener listener(rig);
    listener.audioIn->Start();
    rig.Run(kBlockTime);
    host::BreathFrontEnd frontEnd(1);
    EXPECT_EQ(Part(listener.heard, 0, 8), BothChannels(extremes, frontEnd));
    EXPECT_EQ(Part(listener.heard, 8, 300), Silence(300));
}

TEST(Microphone, NamesABreathFileThatItCannotHear) {
    const std::string path = BreathPath();
    const auto problemOf = [](const std::string& breath) { return Rig(Simulated(breath)).problem; };
    EXPECT_EQ(problemOf(path + "-missing"), path + "-missing: No such file or directory");
    EXPECT_EQ(problemOf(BREVANT_TEST_OUTPUT), BREVANT_TEST_OUTPUT ": it is not a regular file");
    WriteFile(path, {'n', 'o', ' ', 's', 'o', 'u', 'n', 'd', ' ', 'f', 'i', 'l', 'e'});
    EXPECT_EQ(problemOf(path), path + ": it is neither WAV nor Ogg Vorbis");
    WriteWav(path, 8000, 2, 8, Places(1000));
    const Bytes whole = ReadFile(path);
    WriteFile(path, Bytes(whole.begin(), whole.end() - 100));
    EXPECT_EQ(problemOf(path), path + ": its end is missing");
    WriteWav(path, 1, 1, 8, Places(1801));
    EXPECT_EQ(problemOf(path), path + ": it is longer than an hour");
}

TEST(Microphone, TellsOnceOfABreathFileThatLosesItsEndWhileItIsHeard) {
    const std::string path = BreathPath();
    for (const int channels : {1, 2}) {
        WriteWav(path, 8000, channels, 8, Places(20000));
        Rig rig(Simulated(path));
        Listener listener(rig);
        listener.audioIn->Start();
        rig.Run(kBlockTime);
        std::filesystem::resize_file(path, 10000);
        testing::internal::CaptureStderr();
        rig.Run(500 * kBlockTime);
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "brevant: " + path + ": the rest of the breath cannot be read, and is silence\n");
        EXPECT_TRUE(rig.console.HasLoss());
        EXPECT_EQ(Part(listener.heard, 100'000, 1000), Silence(1000));
    }
}

TEST(Microphone, NeverFlickersInASteadyBreath) {
    for (const double level : {0.0, 0.02, 0.19, 0.2, 0.5, 0.8, 1.0}) {
        const int peak = 128 + static_cast<int>(std::lround(level * 127));
        for (int phase = 0; phase < 20'000; phase += 1375) {
            Rig rig(Simulated());
            Listener listener(rig);
            listener.audioIn->Start();
            rig.Run(3 * kBlockTime + phase);
            rig.sound->GetSimulatedMicrophone().SetBreath(level);
            rig.Run(100 * kBlockTime);
            ASSERT_EQ(listener.peaks.size(), 103U);
            for (std::size_t i = 0; i < listener.peaks.size(); ++i) {
                ASSERT_TRUE(i <= 3 || listener.peaks[i] == peak) << level << " block " << i;
            }
            EXPECT_GE(*std::min_element(listener.heard.begin(), listener.heard.end()), 256 - peak);
            EXPECT_EQ(Part(listener.heard, 0, 960), Silence(960));
            rig.sound->GetSimulatedMicrophone().SetBreath(0);
            rig.Run(kBlockTime);
            listener.Clear();
            rig.Run(2 * kBlockTime);
            EXPECT_EQ(listener.heard, Silence(640));
        }
    }
    // From one strong breath to another it is strong throughout, whenever that is.
    for (int phase = 0; phase < 20'000; phase += 375) {
        Rig rig(Simulated());
        Listener listener(rig);
        rig.sound->GetSimulatedMicrophone().SetBreath(0.6);
        listener.audioIn->Start();
        for (int i = 0; i < 10; ++i) {
            rig.Run(kBlockTime + phase);
            rig.sound->GetSimulatedMicrophone().SetBreath(i % 2 == 0 ? 0.2 : 0.9);
        }
        EXPECT_GE(*std::min_element(listener.peaks.begin(), listener.peaks.end()), kBlown);
    }
}

TEST(Microphone, HearsABreathFromItsOwnMomentOnTopOfTheFile) {
    const std::string path = BreathPath();
    WriteWav(path, 8000, 2, 8, Bytes(8000, 250));
    Rig rig(Simulated(path));
    Listener listener(rig);
    listener.audioIn->Start();
    rig.Run(2 * kBlockTime + 5000);
    rig.sound->GetSimulatedMicrophone().SetBreath(1);
    rig.Run(10'000);
    rig.sound->GetSimulatedMicrophone().SetBreath(0);
    rig.Run(5000);
    rig.sound->GetSimulatedMicrophone().Lose();
    rig.Run(5000);
    rig.sound->GetSimulatedMicrophone().Restore();
    rig.Run(15'000);
    EXPECT_EQ(Part(listener.heard, 0, 640 + 80), Bytes(720, 250));
    const Bytes blown = Part(listener.heard, 720, 160);
    EXPECT_EQ(*std::max_element(blown.begin(), blown.end()), 255);
    EXPECT_LT(*std::min_element(blown.begin(), blown.end()), 200);
    EXPECT_EQ(Part(listener.heard, 880, 80), Bytes(80, 250));
    EXPECT_EQ(Part(listener.heard, 960, 80), Silence(80));
    EXPECT_EQ(Part(listener.heard, 1040, 240), Bytes(240, 250));
    EXPECT_EQ(listener.times.size(), 4U);
}

TEST(Microphone, LetsTheOldestBlocksGoWhenItIsReadTooLate) {
    for (const int buffers : {0, 1, 3}) {
        Rig rig;
        Listener listener(rig, buffers);
        listener.audioIn->Start();
        // The device delivers as it likes; the blocks are cut all the same.
        const auto frames = DeviceFrames(160 * 20);
        host::BreathFrontEnd frontEnd(1);
        const Bytes bytes = BothChannels(frames, frontEnd);
        for (std::size_t at = 0; at < frames.size(); at += 64) {
            rig.microphone.client->OnFramesHeard(std::span(frames).subspan(at, 64));
        }
        rig.RunDue();
        const auto kept = static_cast<std::size_t>(buffers) * host::kBlockBytes;
        EXPECT_EQ(listener.heard, Part(bytes, bytes.size() - kept, kept));
        listener.Clear();
        const std::vector<float> block(frames.begin(), frames.begin() + host::kBlockFrames);
        rig.microphone.client->OnFramesHeard(block);
        rig.RunDue();
        EXPECT_EQ(listener.heard, buffers == 0 ? Bytes{} : BothChannels(block, frontEnd));
        const auto events = rig.CloseEvents();
        EXPECT_EQ(std::count(events.begin(), events.end(), "microphone overrun"), buffers == 0 ? 21 : 20 - buffers);
    }
}

TEST(Microphone, MakesThePhonesBlocksOfWhatADeviceOfAnyRateHears) {
    constexpr double kSeconds = 2;
    constexpr std::size_t kSettled = 1600;  // bytes
    for (const int rate : {4000, 8000, 16000, 44100, 48000, 96000, 192000}) {
        // A tone that the phone can hear arrives as loud as it is; one above half the phone's rate not at all.
        for (const double hz : {150.0, 1000.0, 2500.0, 5000.0, 9000.0, 20000.0}) {
            if (hz > rate * 0.4) continue;
            Rig rig;
            rig.microphone.rate = rate;
            Listener listener(rig);
            listener.audioIn->Start();
            const auto tone = Sine(static_cast<std::size_t>(rate * kSeconds), hz * kSeconds, 0.5);
            const auto period = static_cast<std::size_t>(rate / 97);
            for (std::size_t at = 0; at + period <= tone.size(); at += period) {
                rig.microphone.client->OnFramesHeard(std::span(tone).subspan(at, period));
                rig.RunDue();
            }
            const std::size_t expected = static_cast<std::size_t>(8000 * kSeconds) * 2;
            ASSERT_NEAR(static_cast<double>(listener.heard.size()), static_cast<double>(expected), 1000) << rate;
            const Bytes settled = Part(listener.heard, kSettled, listener.heard.size() - kSettled);
            const int peak = *std::max_element(settled.begin(), settled.end()) - kSilence;
            EXPECT_NEAR(peak, hz < 3000 ? 127 * 0.5 : 0, 2) << rate << ' ' << hz;
            for (std::size_t i = 0; i < settled.size(); i += 2) ASSERT_EQ(settled[i], settled[i + 1]);
        }
    }
}

TEST(Microphone, HearsInEachPeriodAsLongAsABlockWhatWasBlownInIt) {
    constexpr std::size_t kSilentPeriods = 50;
    constexpr int kLoud = 40;
    for (const int rate : {8000, 16000, 44100, 48000}) {
        Rig rig;
        rig.microphone.rate = rate;
        Listener listener(rig);
        listener.audioIn->Start();
        const auto frames = static_cast<std::size_t>(rate / 50);
        const std::vector<float> silence(frames);
        const auto breath = Sine(frames, 8, 0.5);
        for (std::size_t count = 1; count <= kSilentPeriods + 1; ++count) {
            rig.microphone.client->OnFramesHeard(count > kSilentPeriods ? breath : silence);
            rig.RunDue();
            ASSERT_EQ(listener.heard.size(), count * host::kBlockBytes) << rate;
        }
        const Bytes last = Part(listener.heard, kSilentPeriods * host::kBlockBytes, host::kBlockBytes);
        EXPECT_GT(*std::max_element(last.begin(), last.end()), kSilence + kLoud) << rate;
    }
}

TEST(Microphone, HearsSilenceWhileItIsLostAndPicksTheDeviceUpAgain) {
    testing::internal::CaptureStderr();
    Rig rig;
    Listener listener(rig);
    rig.microphone.isPresent = false;
    EXPECT_EQ(listener.audioIn->Start(), E_SUCCESS);
    rig.Run(10 * kBlockTime);
    EXPECT_EQ(listener.heard, Silence(10 * host::kBlockBytes));
    // A key's breath needs no device.
    rig.sound->GetCapture().SetKeyBreath(0.8);
    rig.Run(kBlockTime);
    EXPECT_EQ(listener.peaks.back(), 128 + 102);
    rig.sound->GetCapture().SetKeyBreath(0);

    const std::vector<float> frames(host::kBlockFrames, 0.75F);
    host::BreathFrontEnd frontEnd(1);
    const Bytes loud = BothChannels(frames, frontEnd);
    for (int i = 0; i < 2; ++i) {
        rig.microphone.client->OnMicrophoneOpened(8000);
        rig.RunDue();
        listener.Clear();
        rig.microphone.client->OnFramesHeard(frames);
        rig.Run(5 * kBlockTime);
        EXPECT_EQ(listener.heard, loud);
        rig.microphone.client->OnMicrophoneLost();
        rig.Run(3 * kBlockTime);
        EXPECT_GE(listener.peaks.size(), 3U);
        EXPECT_EQ(listener.peaks.back(), kSilence);
    }
    // Nothing goes on once it is stopped.
    listener.audioIn->Stop();
    listener.Clear();
    rig.Run(5 * kBlockTime);
    EXPECT_TRUE(listener.heard.empty());
    const auto events = rig.CloseEvents();
    EXPECT_EQ(std::count(events.begin(), events.end(), "microphone lost"), 3);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "brevant: there is no microphone; blowing works when there is one\n"
              "brevant: there is a microphone now\n"
              "brevant: the microphone is gone; blowing works again when it is back\n"
              "brevant: the microphone is back\n");
}

TEST(Microphone, MayBeStoppedOrDestroyedWhereItDelivers) {
    for (const bool isSimulated : {true, false}) {
        for (int way = 0; way < 4; ++way) {
            Rig rig(isSimulated ? Simulated() : host::Options{});
            rig.microphone.isPresent = way != 3;
            Listener listener(rig);
            listener.audioIn->Start();
            listener.meanwhile = [&] {
                if (way == 0) listener.audioIn->Stop();
                if (way == 1 || way == 3) listener.audioIn.reset();
                if (way == 2) rig.sound->Close();
            };
            if (!isSimulated && way != 3)
                rig.microphone.client->OnFramesHeard(std::vector<float>(3 * host::kBlockFrames, 0.5F));
            rig.Run(3 * kBlockTime);
            EXPECT_EQ(listener.peaks.size(), 1U) << way;
            // Stopped, it goes on later with the buffers that it has.
            if (way != 0) continue;
            listener.meanwhile = nullptr;
            listener.audioIn->Start();
            if (!isSimulated) rig.microphone.client->OnFramesHeard(std::vector<float>(3 * host::kBlockFrames, 0.5F));
            rig.Run(3 * kBlockTime);
            EXPECT_EQ(listener.peaks.size(), 4U);
            // One that nobody takes care of at the end hears no more, and may be destroyed later.
            rig.sound.reset();
            rig.Run(3 * kBlockTime);
            EXPECT_EQ(listener.peaks.size(), 4U);
            EXPECT_EQ(listener.audioIn->Start(), E_INVALID_STATE);
        }
    }
}

TEST(Microphone, TellsOnceOfEachThreeSecondsOfExactSilence) {
    struct Watcher final : host::SoundWatcher {
        void OnTone() override {}
        void OnRingtoneVolume(int) override {}
        void OnMicrophoneSilent() override { ++silences; }
        void OnMicrophoneGone() override {}
        void OnSpeakerGone() override {}
        void OnSpeakerGoneNoMore() override {}
        void OnTakeStarted() override {}
        void OnTakeEnded(const std::string&) override {}
        void OnTakeLost(const std::string&) override {}
        void OnMicrophoneGoneNoMore() override {}
        int silences = 0;
    };
    constexpr int kRate = 8000;
    Rig rig;
    Watcher watcher;
    rig.sound->SetWatcher(&watcher);
    Listener listener(rig, 3);
    listener.audioIn->Start();
    const auto hear = [&rig](int frames, float value) {
        rig.microphone.client->OnFramesHeard(std::vector<float>(static_cast<std::size_t>(frames), value));
        rig.RunDue();
    };
    // Far below the phone's 8 bits, and yet a microphone that works.
    constexpr float kFaint = 1e-6F;
    hear(4 * kRate, kFaint);
    EXPECT_EQ(0, watcher.silences);
    hear(2 * kRate, 0);
    hear(1, kFaint);
    hear(2 * kRate, 0);
    EXPECT_EQ(0, watcher.silences);
    hear(kRate, 0);
    EXPECT_EQ(1, watcher.silences);
    hear(9 * kRate, 0);
    EXPECT_EQ(1, watcher.silences);
    rig.sound->SetWatcher(nullptr);
}

}  // namespace sound_test
