#pragma once

#include <memory>

#include "Tizen/Base/Types.h"
#include "Tizen/Media/AudioTypes.h"
#include "Tizen/Media/IAudioInEventListener.h"

namespace Tizen {
namespace Base {
class ByteBuffer;
}

namespace Media {

/// Captures the microphone into buffers of the application. UI thread only. An operation that the state does not allow
/// gives E_INVALID_STATE and changes nothing.
class AudioIn {
public:
    AudioIn();
    virtual ~AudioIn();
    AudioIn(const AudioIn&) = delete;
    AudioIn& operator=(const AudioIn&) = delete;

    /// `listener` must outlive this object.
    result Construct(IAudioInEventListener& listener);

    /// Chooses the format: unsigned 8-bit samples, stereo, 8000 frames a second. E_UNSUPPORTED_FORMAT for any other.
    result Prepare(AudioInputDevice device, AudioSampleType sampleType, AudioChannelType channelType, int rate);
    /// Allowed unless recording. The queued buffers are given up.
    result Unprepare();

    /// The bytes that one buffer needs, at least; a multiple of a frame. 0 unless prepared.
    int GetMinBufferSize() const;
    /// Queues a buffer, which stays the application's, to be filled after those that are queued already. It must hold
    /// GetMinBufferSize() bytes; E_INVALID_ARG else.
    result AddBuffer(Tizen::Base::ByteBuffer* pBuffer);

    /// E_INVALID_STATE when it is recording already. It records also while there is no microphone: it hears silence
    /// then.
    result Start();
    /// Nothing is delivered any more. The queued buffers stay queued, and a later Start goes on with them.
    result Stop();

    AudioInState GetState() const;

private:
    struct Session;

    std::unique_ptr<Session> session_;  ///< null before Construct
};

}  // namespace Media
}  // namespace Tizen
