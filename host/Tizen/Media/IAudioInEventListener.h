#pragma once

#include "Tizen/Base/Runtime/IEventListener.h"
#include "Tizen/Base/Types.h"

namespace Tizen {
namespace Base {
class ByteBuffer;
}

namespace Media {

/// Receives a microphone's notifications on the UI thread. This phone sends the first one only. The order of the
/// operations is part of the interface.
class IAudioInEventListener : virtual public Tizen::Base::Runtime::IEventListener {
public:
    ~IAudioInEventListener() override = default;

    /// `pData` is a buffer of the application, filled from its start to its limit. It belongs to the application again,
    /// which gives it back with AudioIn::AddBuffer. The AudioIn may be stopped or deleted in here.
    virtual void OnAudioInBufferIsFilled(Tizen::Base::ByteBuffer* pData) = 0;

    virtual void OnAudioInInterrupted() {}
    virtual void OnAudioInReleased() {}
    virtual void OnAudioInErrorOccurred(result) {}
    virtual void OnAudioInAudioFocusChanged() {}
    virtual void OnAudioInDeviceChanged() {}
};

}  // namespace Media
}  // namespace Tizen
