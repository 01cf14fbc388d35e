#include "backend/desktop/window/FingerTable.h"

#include <algorithm>

namespace host {

namespace {

bool IsListed(SDL_TouchID device) {
    const int count = SDL_GetNumTouchDevices();
    for (int i = 0; i < count; ++i) {
        if (SDL_GetTouchDevice(i) == device) return true;
    }
    return false;
}

}  // namespace

FingerTable::Finger& FingerTable::Press(SDL_TouchID device, SDL_FingerID id) {
    if (Finger* const finger = Find(device, id)) return *finger;
    std::int64_t number = 1;
    const auto isTaken = [&](const Finger& finger) { return finger.number == number; };
    while (std::any_of(fingers_.begin(), fingers_.end(), isTaken)) ++number;
    return fingers_.emplace_back(Finger{device, id, number, IsListed(device), {}});
}

FingerTable::Finger* FingerTable::Find(SDL_TouchID device, SDL_FingerID id) {
    const auto found = std::find_if(fingers_.begin(), fingers_.end(),
                                    [&](const Finger& finger) { return finger.device == device && finger.id == id; });
    return found == fingers_.end() ? nullptr : &*found;
}

void FingerTable::Lift(std::int64_t number) {
    std::erase_if(fingers_, [&](const Finger& finger) { return finger.number == number; });
}

std::optional<FingerTable::Finger> FingerTable::TakeOrphan() {
    const auto found = std::find_if(fingers_.begin(), fingers_.end(), [](const Finger& finger) {
        return finger.isDeviceListed && !IsListed(finger.device);
    });
    if (found == fingers_.end()) return std::nullopt;
    const Finger orphan = *found;
    fingers_.erase(found);
    return orphan;
}

}  // namespace host
