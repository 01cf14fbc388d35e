#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "runtime/loop/EventLoop.h"
#include "runtime/sound/BlockSource.h"
#include "runtime/sound/BreathFile.h"
#include "runtime/sound/Turbulence.h"

namespace host {

/// A microphone that hears a breath file and a performance's breath, paced by the event loop: each block comes when its
/// last sample has been heard. The file keeps playing from the first start, also while the microphone is stopped or
/// lost. UI thread only.
class SimulatedMicrophone final : public BlockSource {
public:
    explicit SimulatedMicrophone(EventLoop& loop) : loop_(loop) {}
    ~SimulatedMicrophone() override;
    SimulatedMicrophone(const SimulatedMicrophone&) = delete;
    SimulatedMicrophone& operator=(const SimulatedMicrophone&) = delete;

    /// Before the first start.
    void SetBreathFile(std::unique_ptr<BreathFile> file) { breathFile_ = std::move(file); }

    // Each takes effect at its own moment, also within a block.
    void SetBreath(double level);
    /// As long as no breath is set, whatever the file has: each block's highest sample is exactly `peak`, kPhoneSilence
    /// at least. The block that is being heard has it, too.
    void SetPeak(std::uint8_t peak);
    void Lose();
    void Restore();

    // BlockSource
    void Start(BlockSink& sink) override;
    void Stop() noexcept override;

private:
    void WaitForBlock();
    void HearUntil(Microseconds now);
    void Hear(std::size_t frames);
    void SwingTo(std::uint8_t peak);
    [[nodiscard]] Microseconds BlockEnd() const;

    EventLoop& loop_;
    std::unique_ptr<BreathFile> breathFile_;
    Turbulence turbulence_;
    std::optional<std::uint8_t> peak_;
    bool isLost_ = false;

    BlockSink* sink_ = nullptr;  ///< null while it is stopped
    TimerQueue::Id timer_ = TimerQueue::kNone;
    Microseconds firstStart_ = -1;  ///< negative before it
    Microseconds start_ = 0;
    std::int64_t blocks_ = 0;  ///< delivered since the start
    std::size_t framesHeard_ = 0;
    Block block_{};
    std::uint64_t fileFrames_ = 0;  ///< where the breath file is
};

}  // namespace host
