#pragma once

#include "Tizen/Base/String.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Media/IPlayerEventListener.h"
#include "Tizen/Media/Player.h"

/// Sounds one tone at a time from its recording, again and again until it is told to stop. UI thread only; after a
/// failed Construct it stays silent.
class PitchPlayer : public Tizen::Media::IPlayerEventListener {
public:
    PitchPlayer();
    PitchPlayer(const PitchPlayer&) = delete;
    PitchPlayer& operator=(const PitchPlayer&) = delete;
    ~PitchPlayer() override;

    void OnPlayerOpened(result r) override;
    void OnPlayerEndOfClip() override;
    void OnPlayerSeekCompleted(result r) override;
    void OnPlayerBuffering(int percent) override;
    void OnPlayerErrorOccurred(Tizen::Media::PlayerErrorReason reason) override;
    void OnPlayerInterrupted() override;
    void OnPlayerReleased() override;
    void OnPlayerAudioFocusChanged() override;

    result Construct();
    /// Replaces the tone that sounds; the same tone starts anew. Octaves 3..7 and semitones 0..11 above their C have
    /// recordings; anything else sounds C of octave 4. A recording that does not open is silence.
    void Play(int octave, int semitone);
    void Play();
    Tizen::Base::String GetFileName() const;
    /// Plays a file of the package's data folder, in the place of the tone that sounds.
    void PlayFile(const Tizen::Base::String& fileName);
    void Stop();
    /// Gives the phone's player back; nothing sounds any more.
    void Release();

private:
    Tizen::Media::Player* __pPlayer;
    int __octave;
    int __semitone;
};
