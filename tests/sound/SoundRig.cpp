#include "sound/SoundRig.h"

#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>

#include "shared/JLib.h"
#include "support/TraceLines.h"

namespace sound_test {

namespace {

constexpr float kFullScale = 32767;

}  // namespace

Rig::Rig(host::Options asked, int rate, int periodFrames)
    : options(std::move(asked)),
      storage(BREVANT_PACKAGE, BREVANT_TEST_OUTPUT),
      folder_(std::filesystem::path(BREVANT_TEST_OUTPUT) / "sound" /
              testing::UnitTest::GetInstance()->current_test_info()->name()) {
    std::filesystem::create_directories(folder_);
    trace.Open(storage.OpenOutput(Path("trace"), problem), "trace", host::Trace::Timers::kOmitted);
    speaker.rate = rate;
    speaker.periodFrames = periodFrames;
    const host::SoundServices services{loop, storage, speaker, microphone, trace, console};
    sound = std::make_unique<host::Sound>(
        services, options,
        options.breath || options.performance ? host::MicrophoneSupport::kNone : host::MicrophoneSupport::kDevice);
    const bool isPrepared = sound->Prepare(problem);
    EXPECT_EQ(isPrepared, problem.empty());
    if (isPrepared) sound->Open();
}

Rig::~Rig() = default;

void Rig::RunDue() {
    const bool isEnding = false;
    loop.RunDue(clock.Now(), isEnding);
}

std::vector<float> Rig::Hear(int periods) {
    std::vector<float> heard;
    for (int i = 0; i < periods; ++i) {
        RunDue();
        const auto period = HearLate(1);
        heard.insert(heard.end(), period.begin(), period.end());
        clock.AdvanceTo(clock.Now() + speaker.periodFrames * host::kMicrosecondsPerSecond / speaker.rate);
    }
    return heard;
}

std::vector<float> Rig::HearLate(int periods) {
    std::vector<float> heard(static_cast<std::size_t>(periods * speaker.periodFrames));
    for (int i = 0; i < periods; ++i) {
        const auto frames = static_cast<std::size_t>(speaker.periodFrames);
        speaker.Pull(std::span<float>(heard).subspan(static_cast<std::size_t>(i) * frames, frames));
    }
    return heard;
}

void Rig::Run(host::Microseconds duration) {
    const host::Microseconds end = clock.Now() + duration;
    RunDue();
    while (loop.NextDue() <= end) {
        clock.AdvanceTo(loop.NextDue());
        RunDue();
    }
    clock.AdvanceTo(end);
    RunDue();
}

std::vector<std::string> Rig::CloseEvents() {
    trace.Close();
    std::vector<std::string> events;
    const Bytes text = ReadFile(Path("trace"));
    for (const auto& record : ReadTraceLines({text.begin(), text.end()})) {
        events.push_back(record["what"].get<std::string>() + ' ' + record["event"].get<std::string>());
    }
    return events;
}

result TestPlayer::Change(const std::string& path, int volume) {
    Silence();
    const result outcome = player->OpenFile(path.c_str(), false);
    if (outcome != E_SUCCESS) return outcome;
    player->SetVolume(volume);
    player->Play();
    return outcome;
}

void TestPlayer::Silence() {
    JLib::ClosePlayer(*player);
}

void TestPlayer::OnPlayerEndOfClip() {
    ++ends;
    EXPECT_EQ(player->GetState(), Tizen::Media::PLAYER_STATE_ENDOFCLIP);
    if (repeats > 0) {
        --repeats;
        EXPECT_EQ(player->Stop(), E_SUCCESS);
        EXPECT_EQ(player->Play(), E_SUCCESS);
        return;
    }
    if (atLastEnd == AtLastEnd::kStop) player->Stop();
    if (atLastEnd == AtLastEnd::kClose) player->Close();
    if (atLastEnd == AtLastEnd::kDestroy) player.reset();
}

TestListener::TestListener(Heard heard, int buffers) : heard_(std::move(heard)) {
    EXPECT_EQ(audioIn->Construct(*this), E_SUCCESS);
    EXPECT_EQ(Prepare(), E_SUCCESS);
    for (int i = 0; i < buffers; ++i) {
        EXPECT_EQ(buffers_[i].Construct(audioIn->GetMinBufferSize()), E_SUCCESS);
        EXPECT_EQ(audioIn->AddBuffer(&buffers_[i]), E_SUCCESS);
    }
}

result TestListener::Prepare() {
    using namespace Tizen::Media;
    return audioIn->Prepare(AUDIO_INPUT_DEVICE_MIC, AUDIO_SAMPLE_TYPE_PCM_U8, AUDIO_CHANNEL_TYPE_STEREO, 8000);
}

void TestListener::OnAudioInBufferIsFilled(Tizen::Base::ByteBuffer* pData) {
    EXPECT_EQ(pData->GetLimit(), static_cast<int>(host::kBlockBytes));
    heard_({pData->GetPointer(), host::kBlockBytes});
    if (audioIn != nullptr) audioIn->AddBuffer(pData);
}

void WriteSound(const std::string& path, int rate, int channels, int format, std::span<const float> samples) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = format;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << path;
    const auto count = static_cast<sf_count_t>(samples.size());
    EXPECT_EQ(sf_write_float(file, samples.data(), count), count);
    sf_close(file);
}

void WriteFile(const std::string& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

Bytes ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

void WriteWav(const std::string& path, int rate, int channels, int bits, const Bytes& data) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = channels;
    info.format = SF_FORMAT_WAV | (bits == 8 ? SF_FORMAT_PCM_U8 : SF_FORMAT_PCM_16);
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << path;
    EXPECT_EQ(sf_write_raw(file, data.data(), static_cast<sf_count_t>(data.size())),
              static_cast<sf_count_t>(data.size()));
    sf_close(file);
}

Bytes To16Bit(std::span<const float> frames) {
    Bytes bytes;
    for (const float frame : frames) {
        const auto sample = static_cast<unsigned>(std::lrint(frame * kFullScale));
        bytes.push_back(static_cast<std::uint8_t>(sample));
        bytes.push_back(static_cast<std::uint8_t>(sample >> 8U));
    }
    return bytes;
}

std::vector<float> From16Bit(std::span<const float> frames) {
    std::vector<float> decoded;
    for (const float frame : frames) decoded.push_back(static_cast<float>(std::lrint(frame * kFullScale)) / 32768.0F);
    return decoded;
}

std::vector<float> Sine(std::size_t frames, double cycles, double amplitude) {
    std::vector<float> sine(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const double angle = 2 * M_PI * cycles * static_cast<double>(i) / static_cast<double>(frames);
        sine[i] = static_cast<float>(amplitude * std::sin(angle));
    }
    return sine;
}

float LargestStep(std::span<const float> frames) {
    float largest = 0;
    for (std::size_t i = 1; i < frames.size(); ++i) largest = std::max(largest, std::abs(frames[i] - frames[i - 1]));
    return largest;
}

}  // namespace sound_test
