#pragma once

#include "backend/desktop/waiting/DisplayWait.h"
#include "backend/desktop/waiting/WakeThread.h"

namespace host {

/// SDL's own wait, which every display has. UI thread only, but for Wake.
class SdlWait final : public DisplayWait {
public:
    explicit SdlWait(const Clock& clock) : clock_(clock) {}

    void Wake() noexcept override { wakeThread_.Wake(); }
    void Collect() override { SDL_PumpEvents(); }
    void SleepUntil(Microseconds due) override;

private:
    const Clock& clock_;
    WakeThread wakeThread_;
};

}  // namespace host
