#pragma once

#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>

#include "backend/Backend.h"
#include "runtime/Options.h"
#include "runtime/screen/input/PhoneKeyListener.h"
#include "runtime/sound/Capture.h"
#include "runtime/sound/ClipCache.h"
#include "runtime/sound/DeviceSource.h"
#include "runtime/sound/MixDesk.h"
#include "runtime/sound/SimulatedMicrophone.h"
#include "runtime/sound/SoundServices.h"
#include "runtime/sound/SpeakerOutput.h"

namespace host {

class Recorder;
class Takes;

/// The phone's ears and voice: it owns what lies between the framework's players and the speaker, and between the
/// microphone and the framework's captures. One object a process at a time; UI thread only. It must outlive the event
/// loop's last delivery. Players and captures may outlive it; they go on without a sound once it is closed.
class Sound final : public PhoneKeyListener {
public:
    /// Without a microphone of the back end's a simulated one takes its place. The options must outlive the object.
    Sound(const SoundServices& services, const Options& options, MicrophoneSupport microphone);
    ~Sound();
    Sound(const Sound&) = delete;
    Sound& operator=(const Sound&) = delete;

    /// Opens the files of the options. False with a line in `problem` when one cannot be read or made; nothing is
    /// emptied yet.
    [[nodiscard]] bool Prepare(std::string& problem);
    /// Opens the speaker and, where it was started before, the microphone; further calls do nothing. A clip that is
    /// asked for opens it, too.
    void Open();
    /// Begins a take, or ends the one that runs: a file of its own in the music folder, named by `localTime`.
    void ToggleTake(const std::tm& localTime);
    /// The speaker silent first, then the microphone; nothing is delivered to anybody afterwards.
    void Close() noexcept;

    /// 0..1: as if blown, whatever the microphone hears; 0 ends it.
    void OnKeyBreath(double level) override { capture_.SetKeyBreath(level); }
    void OnVolumeKey(int step) override { SetRingtoneVolume(ringtoneVolume_ + step); }
    /// The phone's ringtone volume, 0..kLoudestRingtone.
    [[nodiscard]] int GetRingtoneVolume() const noexcept { return ringtoneVolume_; }
    /// Values outside of the range are brought to its nearer end. Tones that sound keep theirs.
    void SetRingtoneVolume(int volume);

    /// Null for none. It must outlive the sound, or be taken back.
    void SetWatcher(SoundWatcher* watcher) noexcept;
    /// Null for none. It must outlive the sound, or be taken back.
    void SetToneWatcher(ToneWatcher* watcher) noexcept;
    // From Tizen::Media::Player.
    /// The recording is played: in `voice`, where it is a new tone, or once more.
    void TellOfTone(VoiceNumber voice, std::string_view file);
    void TellOfRepeat();
    /// The voice's tone begins to fall silent.
    void TellOfToneEnd(VoiceNumber voice);

    [[nodiscard]] SpeakerOutput& GetOutput() noexcept { return output_; }
    /// What is heard where no device is asked; a real microphone is only lost by being unplugged.
    [[nodiscard]] SimulatedMicrophone& GetSimulatedMicrophone() noexcept { return simulatedMicrophone_; }
    [[nodiscard]] Capture& GetCapture() noexcept { return capture_; }
    /// Periods that the speaker could not get in time.
    [[nodiscard]] std::uint64_t Underruns() const { return services_.speaker.Underruns(); }

    // For Tizen::Media::Player and AudioIn.
    /// Null when there is none.
    [[nodiscard]] static Sound* Current() noexcept;
    [[nodiscard]] Trace& GetTrace() noexcept { return services_.trace; }
    [[nodiscard]] Console& GetConsole() noexcept { return services_.console; }
    [[nodiscard]] ClipCache& GetClips() {
        Open();  // Clips are decoded at the speaker's rate.
        return clips_;
    }
    [[nodiscard]] MixDesk& GetDesk() noexcept { return desk_; }

private:
    SoundServices services_;
    const Options& options_;
    MixDesk desk_;
    ClipCache clips_;
    SpeakerOutput output_;
    std::unique_ptr<OutputTap> recordingTap_;
    std::unique_ptr<Recorder> recorder_;
    std::unique_ptr<Takes> takes_;  ///< null before the first
    SimulatedMicrophone simulatedMicrophone_;
    DeviceSource deviceSource_;
    Capture capture_;
    SoundWatcher* watcher_ = nullptr;
    ToneWatcher* toneWatcher_ = nullptr;
    int ringtoneVolume_ = 0;
    enum class State { kNotYetOpen, kOpen, kClosed };
    State state_ = State::kNotYetOpen;
};

}  // namespace host
