#include "Tizen/Media/AudioIn.h"

#include <cstring>

#include "Tizen/Base/ByteBuffer.h"
#include "runtime/Runtime.h"
#include "runtime/sound/CaptureSession.h"
#include "runtime/sound/Sound.h"

namespace Tizen {
namespace Media {

using Tizen::Base::ByteBuffer;

namespace {

constexpr int kBufferBytes = static_cast<int>(host::kBlockBytes);

result ToResult(host::CaptureOutcome outcome) {
    switch (outcome) {
        case host::CaptureOutcome::kDone:
            return E_SUCCESS;
        case host::CaptureOutcome::kInvalidState:
            return E_INVALID_STATE;
        case host::CaptureOutcome::kUnsupported:
            return E_UNSUPPORTED_FORMAT;
        case host::CaptureOutcome::kInUse:
            return E_DEVICE_UNAVAILABLE;
    }
    return E_FAILURE;
}

}  // namespace

/// A constructed capture: the runtime's session, and its listener in the framework's words.
class AudioIn::Session final : private host::CaptureSessionListener {
public:
    explicit Session(IAudioInEventListener& listener)
        : listener_(listener), session_(host::Runtime::Current().GetSound(), *this) {}

    host::CaptureSession& GetSession() { return session_; }

private:
    // The AudioIn may be deleted in the notification: nothing follows it.
    void OnBufferFilled(void* buffer, std::span<const std::uint8_t> block) override {
        auto* pBuffer = static_cast<ByteBuffer*>(buffer);
        pBuffer->Clear();
        std::memcpy(pBuffer->GetPointer(), block.data(), block.size());
        pBuffer->SetLimit(static_cast<int>(block.size()));
        listener_.OnAudioInBufferIsFilled(pBuffer);
    }

    IAudioInEventListener& listener_;
    host::CaptureSession session_;
};

AudioIn::AudioIn() = default;

AudioIn::~AudioIn() = default;

result AudioIn::Construct(IAudioInEventListener& listener) {
    if (__pSession) return E_INVALID_STATE;
    __pSession = std::make_unique<Session>(listener);
    return E_SUCCESS;
}

result AudioIn::Prepare(AudioInputDevice device, AudioSampleType sampleType, AudioChannelType channelType, int rate) {
    if (!__pSession) return E_INVALID_STATE;
    return ToResult(__pSession->GetSession().Prepare(device, sampleType, channelType, rate));
}

result AudioIn::Unprepare() {
    return __pSession ? ToResult(__pSession->GetSession().Unprepare()) : E_INVALID_STATE;
}

int AudioIn::GetMinBufferSize() const {
    return GetState() == AUDIO_IN_STATE_INITIALIZED ? 0 : kBufferBytes;
}

result AudioIn::AddBuffer(ByteBuffer* pBuffer) {
    if (!__pSession) return E_INVALID_STATE;
    if (pBuffer == nullptr || pBuffer->GetCapacity() < kBufferBytes) return E_INVALID_ARG;
    return ToResult(__pSession->GetSession().Add(pBuffer));
}

result AudioIn::Start() {
    return __pSession ? ToResult(__pSession->GetSession().Start()) : E_INVALID_STATE;
}

result AudioIn::Stop() {
    return __pSession ? ToResult(__pSession->GetSession().Stop()) : E_INVALID_STATE;
}

result AudioIn::Reset() {
    return __pSession ? ToResult(__pSession->GetSession().Reset()) : E_INVALID_STATE;
}

AudioInState AudioIn::GetState() const {
    return __pSession ? static_cast<AudioInState>(__pSession->GetSession().GetPhase()) : AUDIO_IN_STATE_INITIALIZED;
}

}  // namespace Media
}  // namespace Tizen
