#include "runtime/sound/CaptureSession.h"

#include "runtime/sound/Sound.h"

namespace host {

namespace {

// The framework's numbers for the one format that this phone's microphone has.
constexpr int kMicrophoneDevice = 0;
constexpr int kUnsigned8Bit = 1;

}  // namespace

CaptureSession::CaptureSession(Sound& sound, CaptureSessionListener& listener) : sound_(&sound), listener_(listener) {
    sound_->Add(*this);
}

CaptureSession::~CaptureSession() {
    if (sound_ == nullptr) return;
    if (phase_ == CapturePhase::kRecording) sound_->GetCapture().Stop();
    sound_->Remove(*this);
}

CaptureOutcome CaptureSession::Prepare(int device, int sampleType, int channels, int rate) {
    return Traced("prepare", PrepareNow(device, sampleType, channels, rate));
}

CaptureOutcome CaptureSession::PrepareNow(int device, int sampleType, int channels, int rate) {
    if (sound_ == nullptr || phase_ != CapturePhase::kInitialized) return CaptureOutcome::kInvalidState;
    if (device != kMicrophoneDevice || sampleType != kUnsigned8Bit || channels != kPhoneChannels ||
        rate != kPhoneRate) {
        return CaptureOutcome::kUnsupported;
    }
    phase_ = CapturePhase::kPrepared;
    return CaptureOutcome::kDone;
}

CaptureOutcome CaptureSession::Unprepare() {
    if (!IsReady()) return CaptureOutcome::kInvalidState;
    buffers_.clear();
    phase_ = CapturePhase::kInitialized;
    return CaptureOutcome::kDone;
}

CaptureOutcome CaptureSession::Add(void* buffer) {
    if (!IsReady() && phase_ != CapturePhase::kRecording) return CaptureOutcome::kInvalidState;
    buffers_.push_back(buffer);
    return CaptureOutcome::kDone;
}

CaptureOutcome CaptureSession::Start() {
    return Traced("start", StartNow());
}

CaptureOutcome CaptureSession::StartNow() {
    if (sound_ == nullptr || !IsReady()) return CaptureOutcome::kInvalidState;
    if (!sound_->GetCapture().Start(*this)) return CaptureOutcome::kInUse;
    phase_ = CapturePhase::kRecording;
    return CaptureOutcome::kDone;
}

CaptureOutcome CaptureSession::Stop() {
    return Traced("stop", StopNow());
}

CaptureOutcome CaptureSession::StopNow() {
    if (phase_ != CapturePhase::kRecording) return CaptureOutcome::kInvalidState;
    sound_->GetCapture().Stop();
    phase_ = CapturePhase::kStopped;
    return CaptureOutcome::kDone;
}

CaptureOutcome CaptureSession::Reset() {
    if (phase_ == CapturePhase::kRecording) Stop();
    if (!IsReady()) return CaptureOutcome::kInvalidState;
    buffers_.clear();
    phase_ = CapturePhase::kPrepared;
    return CaptureOutcome::kDone;
}

bool CaptureSession::IsReady() const noexcept {
    return phase_ == CapturePhase::kPrepared || phase_ == CapturePhase::kStopped;
}

void CaptureSession::OnBlock(std::span<const std::uint8_t> block) {
    void* buffer = buffers_.front();
    buffers_.pop_front();
    listener_.OnBufferFilled(buffer, block);
}

void CaptureSession::OnSoundGone() noexcept {
    sound_ = nullptr;
    phase_ = CapturePhase::kError;
}

CaptureOutcome CaptureSession::Traced(const char* event, CaptureOutcome outcome) {
    if (sound_ != nullptr) {
        sound_->GetTrace().Add("microphone", event).Flag("ok", outcome == CaptureOutcome::kDone);
    }
    return outcome;
}

}  // namespace host
