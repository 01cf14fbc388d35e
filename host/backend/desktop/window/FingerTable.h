#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "backend/Geometry.h"
#include "backend/desktop/SdlLibrary.h"

namespace host {

/// The fingers that are down, on all touch devices together. SDL numbers fingers device by device; here each gets a
/// number that no other finger has while it is down. UI thread only.
class FingerTable {
public:
    struct Finger {
        SDL_TouchID device = 0;
        SDL_FingerID id = 0;
        std::int64_t number = 0;  ///< what the window's listener knows it by; 0 is left to the mouse
        bool isDeviceListed = false;
        PointF at;  ///< where it was last, in device pixels
    };

    /// The finger, as a new one if it is not down yet.
    Finger& Press(SDL_TouchID device, SDL_FingerID id);
    /// Null when it is not down: it was lifted in the meantime, by a lost focus for example.
    [[nodiscard]] Finger* Find(SDL_TouchID device, SDL_FingerID id);
    void Lift(std::int64_t number);
    void LiftAll() { fingers_.clear(); }
    /// Takes out and returns one finger whose device was there when it was pressed and is not any more.
    [[nodiscard]] std::optional<Finger> TakeOrphan();

private:
    std::vector<Finger> fingers_;
};

}  // namespace host
