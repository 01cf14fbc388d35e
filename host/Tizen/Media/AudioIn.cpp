#include "Tizen/Media/AudioIn.h"

#include <algorithm>
#include <deque>

#include "Tizen/Base/ByteBuffer.h"
#include "runtime/sound/Sound.h"

namespace Tizen {
namespace Media {

using host::Sound;
using Tizen::Base::ByteBuffer;

namespace {

constexpr int kBufferBytes = static_cast<int>(host::kBlockBytes);

// The outcome as it was, with its line in the trace.
result Traced(const char* event, result outcome) {
    if (Sound::Current() != nullptr) {
        Sound::Current()->GetTrace().Add("microphone", event).Flag("ok", outcome == E_SUCCESS);
    }
    return outcome;
}

}  // namespace

/// A constructed capture with its queue of the application's buffers.
struct AudioIn::Session final : host::CaptureConsumer {
    explicit Session(IAudioInEventListener& audioInListener) : listener(audioInListener) {}
    ~Session() { StopRecording(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] std::size_t BlocksWanted() const override { return buffers.size(); }
    void OnBlock(std::span<const std::uint8_t> block) override;

    [[nodiscard]] bool IsReady() const { return state == AUDIO_IN_STATE_PREPARED || state == AUDIO_IN_STATE_STOPPED; }
    void StopRecording();

    IAudioInEventListener& listener;
    AudioInState state = AUDIO_IN_STATE_INITIALIZED;
    std::deque<ByteBuffer*> buffers;
};

// The AudioIn may be deleted in the notification: nothing follows it.
void AudioIn::Session::OnBlock(std::span<const std::uint8_t> block) {
    ByteBuffer* pBuffer = buffers.front();
    buffers.pop_front();
    pBuffer->Clear();
    std::copy(block.begin(), block.end(), pBuffer->GetPointer());
    pBuffer->SetLimit(static_cast<int>(block.size()));
    listener.OnAudioInBufferIsFilled(pBuffer);
}

void AudioIn::Session::StopRecording() {
    if (state == AUDIO_IN_STATE_RECORDING && Sound::Current() != nullptr) Sound::Current()->GetCapture().Stop();
}

AudioIn::AudioIn() = default;

AudioIn::~AudioIn() = default;

result AudioIn::Construct(IAudioInEventListener& listener) {
    if (session_) return E_INVALID_STATE;
    session_ = std::make_unique<Session>(listener);
    return E_SUCCESS;
}

result AudioIn::Prepare(AudioInputDevice device, AudioSampleType sampleType, AudioChannelType channelType, int rate) {
    if (!session_ || session_->state != AUDIO_IN_STATE_INITIALIZED) return Traced("prepare", E_INVALID_STATE);
    if (device != AUDIO_INPUT_DEVICE_MIC || sampleType != AUDIO_SAMPLE_TYPE_PCM_U8 ||
        channelType != AUDIO_CHANNEL_TYPE_STEREO || rate != host::kPhoneRate) {
        return Traced("prepare", E_UNSUPPORTED_FORMAT);
    }
    session_->state = AUDIO_IN_STATE_PREPARED;
    return Traced("prepare", E_SUCCESS);
}

result AudioIn::Unprepare() {
    if (!session_ || !session_->IsReady()) return E_INVALID_STATE;
    session_->buffers.clear();
    session_->state = AUDIO_IN_STATE_INITIALIZED;
    return E_SUCCESS;
}

int AudioIn::GetMinBufferSize() const {
    return GetState() == AUDIO_IN_STATE_INITIALIZED ? 0 : kBufferBytes;
}

result AudioIn::AddBuffer(ByteBuffer* pBuffer) {
    if (GetState() == AUDIO_IN_STATE_INITIALIZED) return E_INVALID_STATE;
    if (pBuffer == nullptr || pBuffer->GetCapacity() < kBufferBytes) return E_INVALID_ARG;
    session_->buffers.push_back(pBuffer);
    return E_SUCCESS;
}

result AudioIn::Start() {
    if (!session_ || !session_->IsReady() || Sound::Current() == nullptr) return Traced("start", E_INVALID_STATE);
    if (!Sound::Current()->GetCapture().Start(*session_)) return Traced("start", E_DEVICE_UNAVAILABLE);
    session_->state = AUDIO_IN_STATE_RECORDING;
    return Traced("start", E_SUCCESS);
}

result AudioIn::Stop() {
    if (GetState() != AUDIO_IN_STATE_RECORDING) return Traced("stop", E_INVALID_STATE);
    session_->StopRecording();
    session_->state = AUDIO_IN_STATE_STOPPED;
    return Traced("stop", E_SUCCESS);
}

AudioInState AudioIn::GetState() const {
    return session_ ? session_->state : AUDIO_IN_STATE_INITIALIZED;
}

}  // namespace Media
}  // namespace Tizen
