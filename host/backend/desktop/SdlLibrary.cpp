#include "backend/desktop/SdlLibrary.h"

namespace host {

namespace {

// A user's environment variable of the same name overrules each of these.
void SetHints() {
    SDL_SetMainReady();
    SDL_SetHint(SDL_HINT_APP_NAME, "Brevant");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Brevant");
    // Sound servers neither route nor filter this role as they do calls: no echo cancelling, no ducking.
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_ROLE, "production");
    // Whoever makes the monitor of an output the default input wants it to be heard.
    SDL_SetHint(SDL_HINT_AUDIO_INCLUDE_MONITORS, "1");
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_TOUCH_MOUSE_EVENTS, "0");
    SDL_SetHint(SDL_HINT_MOUSE_TOUCH_EVENTS, "0");
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    // One small window is no reason to switch a whole desktop's effects off.
    SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
}

}  // namespace

SdlSubsystem::SdlSubsystem(Uint32 flag) : flag_(flag), isWorking_(false) {
    SetHints();
    isWorking_ = SDL_InitSubSystem(flag_) == 0;
}

SdlSubsystem::~SdlSubsystem() {
    if (isWorking_) SDL_QuitSubSystem(flag_);
}

}  // namespace host
