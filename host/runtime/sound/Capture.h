#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <span>

#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/loop/Lifetime.h"
#include "runtime/sound/BlockSource.h"
#include "runtime/sound/BlockWatcher.h"
#include "runtime/sound/SoundWatcher.h"
#include "runtime/sound/ToneWatcher.h"
#include "runtime/sound/Turbulence.h"
#include "runtime/trace/Trace.h"

namespace host {

/// Takes the captured blocks. UI thread.
class CaptureConsumer {
public:
    /// How many blocks it can take now.
    [[nodiscard]] virtual std::size_t BlocksWanted() const = 0;
    /// May stop the capture and be destroyed in here.
    virtual void OnBlock(std::span<const std::uint8_t> block) = 0;

protected:
    ~CaptureConsumer() = default;
};

/// Brings a source's blocks to the one application that listens. When it is late, the oldest unread blocks go. Without
/// a source to hear by there is silence, so that a tone that was blown ends. UI thread.
class Capture final : private BlockSink {
public:
    Capture(BlockSource& source, EventLoop& loop, Trace& trace, Console& console)
        : source_(source), loop_(loop), trace_(trace), console_(console) {}
    ~Capture();
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    /// Delivers to `consumer` from now on. False while another one is served, and once the capture is closed.
    [[nodiscard]] bool Start(CaptureConsumer& consumer);
    /// Nothing is delivered any more when this returns; blocks that were not delivered yet are dropped.
    void Stop() noexcept;
    /// As Stop, for good.
    void Close() noexcept;

    /// 0..1: breath that is heard on top of whatever the source hears, also where there is none.
    void SetKeyBreath(double level) { keyBreath_.SetLevel(level); }

    /// Null for none. It must outlive the capture, or be taken back.
    void SetWatcher(SoundWatcher* watcher) noexcept { watcher_ = watcher; }
    /// Hears of the breath. Null for none. It must outlive the capture, or be taken back.
    void SetToneWatcher(ToneWatcher* watcher) noexcept { toneWatcher_ = watcher; }

    /// Null for none. It must outlive the capture, or be taken back.
    void SetBlockWatcher(BlockWatcher* watcher) noexcept { blockWatcher_ = watcher; }

    /// Since the program's start.
    [[nodiscard]] std::uint64_t BlocksDelivered() const noexcept { return blocksDelivered_; }

private:
    // BlockSink
    void OnBlock(const Block& block) override;
    void OnSourceLost() override;
    void OnSourceRestored() override;
    void OnSourceSilent() override;

    void DeliverUnread();
    void Deliver(Block& block);
    void HearSilenceOnTimer();

    BlockSource& source_;
    EventLoop& loop_;
    Trace& trace_;
    Console& console_;
    CaptureConsumer* consumer_ = nullptr;
    SoundWatcher* watcher_ = nullptr;
    BlockWatcher* blockWatcher_ = nullptr;
    ToneWatcher* toneWatcher_ = nullptr;
    std::deque<Block> unread_;
    std::uint64_t blocksDelivered_ = 0;
    bool isClosed_ = false;
    bool isLost_ = false;
    bool wasThere_ = false;            ///< a source, at any time
    bool hasDeliveredLately_ = false;  ///< since the silence's timer fired last
    TimerQueue::Id silenceTimer_ = TimerQueue::kNone;
    Turbulence keyBreath_;
    Lifetime lifetime_;
};

}  // namespace host
