#pragma once

// Every file of this folder takes SDL from here: the program's main() is its own, SDL must not rename it.
#define SDL_MAIN_HANDLED
#include <SDL.h>

namespace host {

/// A subsystem of SDL, in use while this lives. SDL counts its users, so that several may hold the same one. UI thread
/// only.
class SdlSubsystem {
public:
    /// `flag` is one of SDL_INIT_VIDEO and SDL_INIT_AUDIO.
    explicit SdlSubsystem(Uint32 flag);
    ~SdlSubsystem();
    SdlSubsystem(const SdlSubsystem&) = delete;
    SdlSubsystem& operator=(const SdlSubsystem&) = delete;

    /// False when the machine has nothing that it could work with.
    [[nodiscard]] bool IsWorking() const { return isWorking_; }

private:
    Uint32 flag_;
    bool isWorking_;
};

}  // namespace host
