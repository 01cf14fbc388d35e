#pragma once

#include "backend/Clock.h"
#include "backend/LoopDriver.h"

namespace host {

/// Runs a step where the page calls it, and asks the page for the next one. Run returns at once. UI thread only.
class WebLoopDriver final : public LoopDriver {
public:
    explicit WebLoopDriver(const Clock& clock) : clock_(clock) {}

    void Run(LoopClient& client) override;
    void Wake() noexcept override;
    [[nodiscard]] Microseconds TimerSlack() const noexcept override { return kHalfTick; }

    /// A step comes at once, so that until then Wake need not ask the page for one.
    void ExpectStep() noexcept { isStepComing_ = true; }
    /// A step, now: something was due, or input has come. Nothing happens within a step, or when the client has ended.
    void Step();

private:
    const Clock& clock_;
    LoopClient* client_ = nullptr;
    bool isStepping_ = false;
    bool isStepComing_ = false;
    bool isWoken_ = false;
};

}  // namespace host
