#pragma once

#include <array>

#include "backend/Clock.h"
#include "backend/mix/LocalSpeaker.h"

namespace host {

/// A speaker that nobody hears, pulled by the loop driver on the virtual clock. It is never lost and never late. UI
/// thread only.
class HeadlessSpeaker final : public LocalSpeaker {
public:
    explicit HeadlessSpeaker(const Clock& clock) : clock_(clock) {}

    void Open(SpeakerClient& client) override;
    void Close() noexcept override { StopMix(); }

    [[nodiscard]] int Rate() const noexcept override { return kRate; }
    [[nodiscard]] int PeriodFrames() const noexcept override { return kPeriodFrames; }
    [[nodiscard]] std::uint64_t Underruns() const noexcept override { return 0; }

    /// When the next period is to be pulled; LoopClient::kNever while closed.
    [[nodiscard]] Microseconds NextPeriod() const noexcept;
    /// Pulls one period, if it is open.
    void PullPeriod() noexcept;

private:
    static constexpr int kRate = 44'100;  // frames a second
    static constexpr int kPeriodFrames = 256;

    const Clock& clock_;
    Microseconds openedAt_ = 0;
    std::int64_t periodsPulled_ = 0;
    std::array<float, kPeriodFrames> frames_{};
};

}  // namespace host
