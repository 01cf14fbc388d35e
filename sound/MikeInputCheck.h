#pragma once

#include "Tizen/Base/ByteBuffer.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Media/AudioIn.h"
#include "Tizen/Media/IAudioInEventListener.h"
#include "sound/MikeEventListener.h"

/// Listens to the microphone: each block that was captured is measured and reported to a listener. UI thread only; it
/// decides nothing about tones.
class MikeInputCheck : public Tizen::Media::IAudioInEventListener {
public:
    /// `pListener` must outlive this object; without one the blocks are passed over.
    explicit MikeInputCheck(MikeEventListener* pListener);
    MikeInputCheck(const MikeInputCheck&) = delete;
    MikeInputCheck& operator=(const MikeInputCheck&) = delete;
    ~MikeInputCheck() override;

    void OnAudioInBufferIsFilled(Tizen::Base::ByteBuffer* pData) override;
    void OnAudioInInterrupted() override;
    void OnAudioInReleased() override;
    void OnAudioInErrorOccurred(result r) override;
    void OnAudioInAudioFocusChanged() override;
    void OnAudioInDeviceChanged() override;

    /// Takes the microphone and queues the buffers. Returns the first failure.
    result Construct();
    result Start();
    /// Does nothing, successfully, unless recording. The buffers stay queued for the next Start.
    result Stop();

private:
    static const int BUFFER_COUNT = 3;

    Tizen::Media::AudioIn __audioIn;
    Tizen::Base::ByteBuffer __buffers[BUFFER_COUNT];
    MikeEventListener* __pMikeEventListener;
};
