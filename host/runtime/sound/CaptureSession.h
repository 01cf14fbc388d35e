#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <span>

#include "runtime/sound/Capture.h"

namespace host {

class Sound;

/// What an AudioIn is doing; the framework's numbers.
enum class CapturePhase { kInitialized = 0, kPrepared = 1, kRecording = 2, kStopped = 3, kError = 4 };

enum class CaptureOutcome { kDone, kInvalidState, kUnsupported, kInUse };

/// Receives a session's filled buffers on the UI thread. The session may be destroyed in there.
class CaptureSessionListener {
public:
    /// `buffer` is one that was added, and is not queued any more; `block` is what it is to hold.
    virtual void OnBufferFilled(void* buffer, std::span<const std::uint8_t> block) = 0;

protected:
    ~CaptureSessionListener() = default;
};

/// One user of the microphone with its queue of buffers: which operation is allowed when. The buffers are the
/// listener's; here they are mere addresses. UI thread only.
class CaptureSession final : private CaptureConsumer {
public:
    CaptureSession(Sound& sound, CaptureSessionListener& listener);
    ~CaptureSession();
    CaptureSession(const CaptureSession&) = delete;
    CaptureSession& operator=(const CaptureSession&) = delete;

    /// A microphone's device number, sample type, channels and rate, in the framework's numbers.
    CaptureOutcome Prepare(int device, int sampleType, int channels, int rate);
    CaptureOutcome Unprepare();
    CaptureOutcome Add(void* buffer);
    CaptureOutcome Start();
    CaptureOutcome Stop();
    CaptureOutcome Reset();
    [[nodiscard]] CapturePhase GetPhase() const noexcept { return phase_; }

private:
    friend class Sound;

    // CaptureConsumer
    [[nodiscard]] std::size_t BlocksWanted() const override { return buffers_.size(); }
    void OnBlock(std::span<const std::uint8_t> block) override;
    // From Sound.
    void OnSoundGone() noexcept;

    CaptureOutcome Traced(const char* event, CaptureOutcome outcome);
    CaptureOutcome PrepareNow(int device, int sampleType, int channels, int rate);
    CaptureOutcome StartNow();
    CaptureOutcome StopNow();
    [[nodiscard]] bool IsReady() const noexcept;

    Sound* sound_;  ///< null once it is gone
    CaptureSessionListener& listener_;
    CapturePhase phase_ = CapturePhase::kInitialized;
    std::deque<void*> buffers_;
};

}  // namespace host
