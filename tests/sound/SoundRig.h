#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "Tizen/Base/ByteBuffer.h"
#include "Tizen/Media/AudioIn.h"
#include "Tizen/Media/IPlayerEventListener.h"
#include "Tizen/Media/Player.h"
#include "backend/headless/VirtualClock.h"
#include "backend/mix/LocalSpeaker.h"
#include "backend/posix/PosixStorage.h"
#include "runtime/sound/Sound.h"

// The sound as it runs in the program, between a speaker and a microphone that the test holds in its hands and a clock
// that only the test moves.
namespace sound_test {

class Driver final : public host::LoopDriver {
public:
    void Run(host::LoopClient&) override {}
    void Wake() noexcept override {}
};

class TestSpeaker final : public host::LocalSpeaker {
public:
    void Open(host::SpeakerClient& client) override { StartMix(client, rate, periodFrames); }
    void Close() noexcept override { StopMix(); }
    int Rate() const noexcept override { return rate; }
    int PeriodFrames() const noexcept override { return periodFrames; }
    std::uint64_t Underruns() const noexcept override { return 0; }

    using host::LocalSpeaker::IsMixing;
    using host::LocalSpeaker::LoseDevice;
    void Restore(int newPeriodFrames) {
        periodFrames = newPeriodFrames;
        RestoreDevice(periodFrames);
    }

    int rate = 44100;
    int periodFrames = 256;
};

struct TestMicrophone final : public host::Microphone {
    void Start(host::MicrophoneClient& started) override {
        client = &started;
        isPresent ? client->OnMicrophoneOpened(rate) : client->OnMicrophoneLost();
    }
    void Stop() noexcept override { client = nullptr; }

    host::MicrophoneClient* client = nullptr;
    bool isPresent = true;
    int rate = 8000;
};

class Rig {
public:
    /// With a breath file or a performance in the options the microphone is simulated.
    explicit Rig(host::Options options = {}, int rate = 44100, int periodFrames = 256);
    ~Rig();

    /// Runs what is due now; then the speaker asks for its next period. Returns all that it was given.
    std::vector<float> Hear(int periods);
    /// One period without the UI thread having had a chance.
    std::vector<float> HearLate(int periods);
    void Run(host::Microseconds duration);
    void RunDue();
    /// Ends the trace; its events, as "what event".
    std::vector<std::string> CloseEvents();

    /// A file in the test's own folder.
    std::string Path(const std::string& name) const { return (folder_ / name).string(); }

    host::Options options;
    host::VirtualClock clock;
    Driver driver;
    host::EventLoop loop{clock, driver};
    host::Console console;
    host::Trace trace{loop, console};
    host::PosixStorage storage;
    TestSpeaker speaker;
    TestMicrophone microphone;
    std::unique_ptr<host::Sound> sound;
    std::string problem;

private:
    std::filesystem::path folder_;
};

/// Answers an end by a stop and a play, as an instrument does, as long as `repeats` lasts.
class TestPlayer final : public Tizen::Media::IPlayerEventListener {
public:
    TestPlayer() { EXPECT_EQ(player->Construct(*this), E_SUCCESS); }

    /// What the instrument does for every tone.
    result Change(const std::string& path, int volume = 100);
    void Silence();

    void OnPlayerOpened(result) override { ADD_FAILURE(); }
    void OnPlayerEndOfClip() override;
    void OnPlayerSeekCompleted(result) override { ADD_FAILURE(); }
    void OnPlayerBuffering(int) override { ADD_FAILURE(); }
    void OnPlayerErrorOccurred(Tizen::Media::PlayerErrorReason) override { ADD_FAILURE(); }
    void OnPlayerInterrupted() override { ADD_FAILURE(); }
    void OnPlayerReleased() override { ADD_FAILURE(); }

    static constexpr int kForever = 1 << 30;
    enum class AtLastEnd { kNothing, kStop, kClose, kDestroy };

    std::unique_ptr<Tizen::Media::Player> player = std::make_unique<Tizen::Media::Player>();
    int repeats = kForever;
    AtLastEnd atLastEnd = AtLastEnd::kNothing;
    int ends = 0;
};

/// Takes the microphone's blocks with three buffers, as the instrument does, and gives each one back at once.
class TestListener : public Tizen::Media::IAudioInEventListener {
public:
    using Heard = std::function<void(std::span<const std::uint8_t> block)>;
    explicit TestListener(Heard heard, int buffers = 3);

    result Prepare();
    void OnAudioInBufferIsFilled(Tizen::Base::ByteBuffer* pData) override;

private:
    Heard heard_;
    Tizen::Base::ByteBuffer buffers_[3];

public:
    std::unique_ptr<Tizen::Media::AudioIn> audioIn = std::make_unique<Tizen::Media::AudioIn>();
};

using Bytes = std::vector<std::uint8_t>;

/// A file of frames in -1..1 in one of libsndfile's formats.
void WriteSound(const std::string& path, int rate, int channels, int format, std::span<const float> samples);
/// A WAV file of little-endian samples of 8 or 16 bits.
void WriteWav(const std::string& path, int rate, int channels, int bits, const Bytes& data);
void WriteFile(const std::string& path, const Bytes& bytes);
[[nodiscard]] Bytes ReadFile(const std::string& path);
/// 16-bit mono samples of frames in -1..1, and back as they decode.
[[nodiscard]] Bytes To16Bit(std::span<const float> frames);
[[nodiscard]] std::vector<float> From16Bit(std::span<const float> frames);
/// `cycles` of a sine in `frames`.
[[nodiscard]] std::vector<float> Sine(std::size_t frames, double cycles, double amplitude);
[[nodiscard]] float LargestStep(std::span<const float> frames);

}  // namespace sound_test
