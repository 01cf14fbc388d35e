#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

#include "backend/Microphone.h"
#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/sound/BlockRing.h"
#include "runtime/sound/Turbulence.h"
#include "runtime/trace/Trace.h"

namespace host {

/// Takes the captured blocks on the UI thread.
class CaptureConsumer {
public:
    /// How many blocks it can take now.
    [[nodiscard]] virtual std::size_t BlocksWanted() const = 0;
    /// May stop the capture and be destroyed in here.
    virtual void OnBlock(std::span<const std::uint8_t> block) = 0;

protected:
    ~CaptureConsumer() = default;
};

/// Brings the microphone's bytes to the UI thread in blocks. The bytes are cut into blocks on the microphone's thread;
/// when the UI thread is late, the oldest unread blocks go. A capture without a microphone hears silence, so that a
/// tone that was blown ends, and picks the microphone up when there is one.
class Capture final : public MicrophoneClient, private ThreadMessageHandler {
public:
    Capture(Microphone& microphone, EventLoop& loop, Trace& trace, Console& console)
        : microphone_(microphone), loop_(loop), trace_(trace), console_(console) {}
    ~Capture();
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    /// Delivers to `consumer` from now on. False while another one is served, and once the capture is closed.
    [[nodiscard]] bool Start(CaptureConsumer& consumer);
    /// Nothing is delivered any more when this returns; blocks that were not delivered yet are dropped.
    void Stop() noexcept;
    /// As Stop, for good.
    void Close() noexcept;

    /// 0..1: breath that is heard on top of whatever the microphone hears, also where there is none.
    void SetKeyBreath(double level) { keyBreath_.SetLevel(level); }

    /// Since the program's start.
    [[nodiscard]] std::uint64_t BlocksDelivered() const noexcept { return blocksDelivered_; }

    // MicrophoneClient, on the microphone's thread.
    void OnMicrophoneBytes(std::span<const std::uint8_t> bytes) noexcept override;
    void OnMicrophoneLost() noexcept override;
    void OnMicrophoneRestored() noexcept override;

private:
    void OnThreadMessage(const ThreadMessage& message) override;
    void NoticeLoss();
    void DeliverUnread();
    void Deliver(Block& block);
    void HearSilenceOnTimer();

    Microphone& microphone_;
    EventLoop& loop_;
    Trace& trace_;
    Console& console_;

    // The microphone's thread, while it runs.
    Block assembled_{};
    std::size_t bytesAssembled_ = 0;

    BlockRing ring_;
    std::atomic<bool> isLost_{false};

    // UI thread.
    CaptureConsumer* consumer_ = nullptr;
    std::uint64_t blocksRead_ = 0;
    std::uint64_t blocksDelivered_ = 0;
    bool isClosed_ = false;
    bool isLossNoticed_ = false;
    bool hasDeliveredLately_ = false;  ///< since the silence's timer fired last
    TimerQueue::Id silenceTimer_ = TimerQueue::kNone;
    Turbulence keyBreath_;
    std::shared_ptr<const Capture*> alive_ = std::make_shared<const Capture*>(this);
};

}  // namespace host
