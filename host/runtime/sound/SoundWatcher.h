#pragma once

#include <string>

namespace host {

/// Hears of what the player of the phone should know about its sound. UI thread.
class SoundWatcher {
public:
    /// A tone was started.
    virtual void OnTone() = 0;
    /// 0..kLoudestRingtone. Also when it stays at an end where it was.
    virtual void OnRingtoneVolume(int volume) = 0;
    /// The microphone has delivered nothing but exact zeros for 3 s. Told once in each such silence.
    virtual void OnMicrophoneSilent() = 0;
    /// The application listens, and there is nothing to hear by: no device, or it may not be used.
    virtual void OnMicrophoneGone() = 0;
    /// There is a microphone again, or the application does not listen any more.
    virtual void OnMicrophoneGoneNoMore() = 0;
    /// There is no device to be heard by.
    virtual void OnSpeakerGone() = 0;
    /// There is one again.
    virtual void OnSpeakerGoneNoMore() = 0;
    /// What is played goes into a file from now on.
    virtual void OnTakeStarted() = 0;
    /// The file is complete. `name` is its own, without its folder.
    virtual void OnTakeEnded(const std::string& name) = 0;
    /// There could be no file, or the disk took no more; nothing is written any more. `folder` is where it was to be;
    /// empty where there is none.
    virtual void OnTakeLost(const std::string& folder) = 0;

protected:
    ~SoundWatcher() = default;
};

}  // namespace host
