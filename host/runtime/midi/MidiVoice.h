#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "runtime/midi/MidiSink.h"
#include "runtime/package/ToneTable.h"
#include "runtime/sound/ToneWatcher.h"

namespace host {

/// The instrument as a wind controller: tells the tones as notes and the breath as controller 2, on channel 1. A note's
/// velocity is 64 plus half the breath, so that a note that is played without any is heard, too. UI thread only.
class MidiVoice final : public ToneWatcher {
public:
    /// The sinks get the instrument's program at once.
    MidiVoice(ToneTable tones, std::vector<std::unique_ptr<MidiSink>> sinks);

    void OnToneStarted(VoiceNumber voice, std::string_view file) override;
    void OnToneEnded(VoiceNumber voice) override;
    /// The controller's value is the peak less 128.
    void OnBreath(int peak) override;

    /// Ends every note and the breath, as when the application is out of sight.
    void Silence();
    /// The same for good.
    void Finish();

private:
    void Send(std::initializer_list<int> bytes);
    void SendBreath(int value);

    ToneTable tones_;
    std::vector<std::unique_ptr<MidiSink>> sinks_;
    std::map<VoiceNumber, int> notes_;  ///< those that sound
    int breath_ = 0;                    ///< as it was last sent, 0..127
};

}  // namespace host
