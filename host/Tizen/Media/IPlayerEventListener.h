#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Media/PlayerTypes.h"

namespace Tizen {
namespace Media {

/// Receives a player's notifications on the UI thread. This phone sends OnPlayerEndOfClip alone: nothing opens later,
/// seeks, streams, interrupts or takes the sound away here. The order of the operations is part of the interface.
class IPlayerEventListener : virtual public Tizen::Base::Runtime::IEventListener {
public:
    ~IPlayerEventListener() override = default;

    virtual void OnPlayerOpened(result r) = 0;
    /// The recording's last frame is about to reach the speaker. A stop and a play given in here repeat the recording
    /// without a gap; a stop or a close alone ends the sound at once.
    virtual void OnPlayerEndOfClip() = 0;
    virtual void OnPlayerSeekCompleted(result r) = 0;
    virtual void OnPlayerBuffering(int percent) = 0;
    virtual void OnPlayerErrorOccurred(PlayerErrorReason reason) = 0;
    virtual void OnPlayerInterrupted() = 0;
    virtual void OnPlayerReleased() = 0;
    virtual void OnPlayerAudioFocusChanged() {}

    virtual void OnPlayerStreamChanged() {}
    virtual void OnPlayerTextReceived() {}
};

}  // namespace Media
}  // namespace Tizen
