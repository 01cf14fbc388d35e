#pragma once

#include <string_view>

#include "backend/MixMessages.h"

namespace host {

/// Hears which tones sound, and how the breath is that the application hears. UI thread.
class ToneWatcher {
public:
    /// `file` is the recording's name without its folder. A repeat of the recording is no new tone.
    virtual void OnToneStarted(VoiceNumber voice, std::string_view file) = 0;
    /// The tone begins to fall silent. Once for every tone; not told of those that sound when the sound is closed.
    virtual void OnToneEnded(VoiceNumber voice) = 0;
    /// A block has been delivered, with the breath of the keys. Its peak: 128 in silence, at most 255.
    virtual void OnBreath(int peak) = 0;

protected:
    ~ToneWatcher() = default;
};

}  // namespace host
