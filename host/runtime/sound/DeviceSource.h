#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "backend/Microphone.h"
#include "backend/SpscRing.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/sound/BlockSource.h"
#include "runtime/sound/OwnTones.h"
#include "runtime/sound/PhoneConverter.h"

namespace host {

/// Makes blocks of what a microphone hears. Its frames go through a lock-free ring to the UI thread, which does the
/// rest: the microphone's thread only copies.
class DeviceSource final : public BlockSource, private MicrophoneClient {
public:
    /// What the speaker sounds is not taken for a breath.
    DeviceSource(Microphone& microphone, EventLoop& loop, OwnTones& ownTones);
    ~DeviceSource() override { Stop(); }
    DeviceSource(const DeviceSource&) = delete;
    DeviceSource& operator=(const DeviceSource&) = delete;

    /// From now on the microphone is asked for; one that was started before is asked for now.
    void AllowDevice();

    // BlockSource
    void Start(BlockSink& sink) override;
    void Stop() noexcept override;

private:
    // MicrophoneClient
    void OnMicrophoneOpened(int rate) noexcept override;
    void OnMicrophoneLost() noexcept override;
    void OnFramesHeard(std::span<const float> frames) noexcept override;

    void TakeFrames();
    void DropUnread() noexcept;
    /// Tells the sink once of 3 s of exact zeros.
    void WatchForSilence(std::span<const float> frames);

    Microphone& microphone_;
    EventLoop& loop_;
    OwnTones& ownTones_;
    SpscRing<float> frames_;
    std::atomic<bool> isOverflown_{false};  ///< frames were lost because the ring was full
    ThreadSignal heard_;
    BlockSink* sink_ = nullptr;  ///< null while stopped
    bool isDeviceAllowed_ = false;
    std::unique_ptr<PhoneConverter> converter_;
    int rate_ = 0;
    std::int64_t silentFrames_ = 0;    ///< exact zeros, up to now
    std::vector<std::uint8_t> bytes_;  ///< of the block that is not full yet
};

}  // namespace host
