#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "backend/Speaker.h"

namespace host {

/// A speaker whose mix runs in an audio worklet, another address space: commands and clips go there by a message port,
/// and news come back by it. UI thread only.
class PortSpeaker final : public Speaker {
public:
    void Open(SpeakerClient& client) override;
    void Close() noexcept override;

    /// The frames are copied to the worklet, each once, when the command comes that says they are ready.
    void HandOver(ClipNumber number, const ClipShape& shape, const float* frames) noexcept override;
    /// Takes all commands: a port has no end of room.
    std::size_t Send(std::span<const MixCommand> commands) noexcept override;
    std::size_t TakeNews(std::span<MixNews> news) noexcept override;

    [[nodiscard]] int Rate() const noexcept override { return rate_; }
    /// Not what the device asks for at once, but half of the time for which the UI thread may stand still before a
    /// repeat would come too late: a browser's page stands still for longer than any device's period.
    [[nodiscard]] int PeriodFrames() const noexcept override { return rate_ * kLongestStandstill / 2 / 1000; }
    [[nodiscard]] std::uint64_t Underruns() const noexcept override;

    // From the page.
    void AddNews(const MixNews& news);
    void TellNews() noexcept;
    void SetLost(bool isLost) noexcept;
    /// Room for what the page hears back from the worklet.
    [[nodiscard]] std::span<float> PlayedBuffer() noexcept { return played_; }
    /// The first `count` frames of the buffer were played.
    void TellPlayed(std::size_t count) noexcept;

private:
    // A command crosses as so many numbers: kind, voice, clip, number, gain.
    static constexpr std::size_t kNumbersOfCommand = 5;
    static constexpr std::size_t kMostTogether = 32;  // in one message; a step of the ocarina has few commands
    static constexpr std::size_t kPlayedFrames = 4096;
    static constexpr int kLongestStandstill = 400;    // milliseconds
    static constexpr int kRateWithoutSound = 44'100;  // where the browser has no worklets

    struct Clip {
        const float* frames = nullptr;
        std::uint32_t sent = 0;
    };

    /// What of the clip is ready and has not been sent.
    void SendFrames(ClipNumber number, std::uint32_t ready) noexcept;

    SpeakerClient* client_ = nullptr;
    int rate_ = kRateWithoutSound;
    std::array<Clip, kMostClips> clips_;
    std::vector<MixNews> news_;
    std::array<double, kMostTogether * kNumbersOfCommand> outgoing_{};
    std::array<float, kPlayedFrames> played_{};
};

}  // namespace host
