#pragma once

#include <atomic>
#include <cstddef>
#include <span>

#include "backend/Speaker.h"
#include "backend/SpscRing.h"
#include "backend/mix/Mix.h"

namespace host {

/// A speaker whose device asks for frames on a thread of this address space: the mix between two lock-free rings, one
/// for its commands and one for its news. What a device is and how it is opened is the derived class's.
class LocalSpeaker : public Speaker, private MixReporter {
public:
    LocalSpeaker();

    void HandOver(ClipNumber number, const ClipShape& shape, const float* frames) noexcept override;
    std::size_t Send(std::span<const MixCommand> commands) noexcept override;
    std::size_t TakeNews(std::span<MixNews> news) noexcept override;

    /// Fills `frames` with the next ones. The device's thread, one at a time, between StartMix and StopMix.
    void Pull(std::span<float> frames) noexcept;

protected:
    ~LocalSpeaker() override = default;

    // UI thread, while nothing pulls.
    void StartMix(SpeakerClient& client, int rate, int periodFrames);
    /// The device has these instead, before it was asked for the first time.
    void PrepareMix(int rate, int periodFrames) { mix_.Prepare(rate, periodFrames); }
    void StopMix() noexcept { client_ = nullptr; }
    /// The device is gone: what is pulled from now on is silent.
    void LoseDevice() noexcept;
    void RestoreDevice(int periodFrames) noexcept;

    [[nodiscard]] bool IsMixing() const noexcept { return client_ != nullptr; }

private:
    // MixReporter, on the device's thread.
    bool Report(const MixNews& news) noexcept override;

    Mix mix_;
    SpscRing<MixCommand> commands_;
    SpscRing<MixNews> news_;
    SpeakerClient* client_ = nullptr;
    bool isDeviceLost_ = false;
};

}  // namespace host
