#include "backend/desktop/waiting/X11Wait.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <string_view>
#include <utility>

// SDL tells in its configuration whether it knows X servers; its header then includes Xlib's. Only macros of Xlib's
// that read its structure are used here: nothing of it is linked.
#include <SDL_syswm.h>

namespace host {

namespace {

// SDL does some things by time when it pumps (it holds a change of focus back for 200 ms, and keeps the screen saver
// off), and the threads of its sound devices queue events without a word to the display.
constexpr Microseconds kPumpInterval = 100 * kMicrosecondsPerMillisecond;
constexpr Microseconds kQuietPumpInterval = 500 * kMicrosecondsPerMillisecond;
// After the display was last heard of, everything that waits for a time has had it.
constexpr Microseconds kQuietAfter = kMicrosecondsPerSecond;
constexpr long kNanosecondsPerMicrosecond = 1000;

}  // namespace

std::unique_ptr<DisplayWait> X11Wait::Create(const Clock& clock, const DesktopWindow& window) {
    const char* const driver = SDL_GetCurrentVideoDriver();
    if (driver == nullptr || std::string_view(driver) != "x11") return nullptr;
    auto wait = std::make_unique<X11Wait>(clock, window);
    if (!wait->wakes_.IsOpen()) return nullptr;
    return wait;
}

void X11Wait::Collect() {
    if (isReadable_ || MayHoldEvents() || clock_.Now() >= nextPump_) Pump();
}

void X11Wait::SleepUntil(Microseconds due) {
    // Since the last pump a step has run, which may have drawn.
    if (MayHoldEvents()) Pump();
    if (SDL_HasEvents(SDL_FIRSTEVENT, SDL_LASTEVENT) == SDL_TRUE) return;
    // Asked also when there is no time to sleep, so that a busy program does not miss its input.
    const Microseconds rest = std::max<Microseconds>(std::min(due, nextPump_) - clock_.Now(), 0);
    std::array<pollfd, 2> descriptors = {{{Look().descriptor, POLLIN, 0}, {wakes_.Get(), POLLIN, 0}}};
    const std::timespec time{rest / kMicrosecondsPerSecond, rest % kMicrosecondsPerSecond * kNanosecondsPerMicrosecond};
    if (ppoll(descriptors.data(), descriptors.size(), &time, nullptr) <= 0) return;
    // A connection that is broken counts as well: Xlib is to find out.
    isReadable_ = descriptors[0].revents != 0;
    if (descriptors[1].revents != 0) wakes_.Take();
}

X11Wait::Connection X11Wait::Look() const {
#if defined(SDL_VIDEO_DRIVER_X11)
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    SDL_Window* const window = window_.Handle();
    if (window != nullptr && SDL_GetWindowWMInfo(window, &info) == SDL_TRUE && info.subsystem == SDL_SYSWM_X11) {
        return {ConnectionNumber(info.info.x11.display), NextRequest(info.info.x11.display)};
    }
#endif
    return {};
}

bool X11Wait::MayHoldEvents() const {
    // Xlib reads events only when it is pumped, and while it sends requests or waits for their answers. It counts them.
    return Look().nextRequest != pumpedAtRequest_;
}

void X11Wait::Pump() {
    const Microseconds now = clock_.Now();
    if (std::exchange(isReadable_, false)) heardAt_ = now;
    // Noted before: after the requests that the pump itself makes there is another one.
    pumpedAtRequest_ = Look().nextRequest;
    nextPump_ = now + (now - heardAt_ < kQuietAfter ? kPumpInterval : kQuietPumpInterval);
    SDL_PumpEvents();
}

}  // namespace host
