#include "runtime/sound/Sound.h"

#include <algorithm>
#include <utility>

#include "runtime/sound/BreathFile.h"
#include "runtime/sound/Recorder.h"
#include "runtime/sound/Takes.h"
#include "runtime/soundfile/SoundWriter.h"

namespace host {

namespace {

Sound* current = nullptr;

}  // namespace

Sound::Sound(const SoundServices& services, const Options& options, MicrophoneSupport microphone)
    : services_(services),
      options_(options),
      desk_(services.speaker, services.loop),
      clips_(services.storage, services.loop, desk_),
      output_(desk_, services.loop, services.console),
      simulatedMicrophone_(services.loop),
      deviceSource_(services.microphone, services.loop, desk_.GetTones()),
      capture_(microphone == MicrophoneSupport::kNone ? static_cast<BlockSource&>(simulatedMicrophone_) : deviceSource_,
               services.loop, services.trace, services.console) {
    current = this;
    SetRingtoneVolume(options.ringtoneVolume);
}

Sound::~Sound() {
    Close();
    if (current == this) current = nullptr;
}

Sound* Sound::Current() noexcept {
    return current;
}

void Sound::SetRingtoneVolume(int volume) {
    ringtoneVolume_ = std::clamp(volume, 0, kLoudestRingtone);
    if (watcher_ != nullptr) watcher_->OnRingtoneVolume(ringtoneVolume_);
}

void Sound::SetWatcher(SoundWatcher* watcher) noexcept {
    watcher_ = watcher;
    if (takes_ != nullptr) takes_->SetWatcher(watcher);
    capture_.SetWatcher(watcher);
    output_.SetWatcher(watcher);
}

void Sound::SetToneWatcher(ToneWatcher* watcher) noexcept {
    toneWatcher_ = watcher;
    capture_.SetToneWatcher(watcher);
}

void Sound::TellOfTone(VoiceNumber voice, std::string_view file) {
    if (toneWatcher_ != nullptr && voice != kNoVoice) toneWatcher_->OnToneStarted(voice, file);
    TellOfRepeat();
}

void Sound::TellOfRepeat() {
    if (watcher_ != nullptr) watcher_->OnTone();
}

void Sound::TellOfToneEnd(VoiceNumber voice) {
    if (toneWatcher_ != nullptr) toneWatcher_->OnToneEnded(voice);
}

bool Sound::Prepare(std::string& problem) {
    if (options_.breath) {
        auto file = BreathFile::Open(services_.storage, services_.console, *options_.breath, problem);
        if (file == nullptr) return false;
        simulatedMicrophone_.SetBreathFile(std::move(file));
    }
    if (options_.record) {
        if (!SoundFormatOf(*options_.record)) {
            problem = *options_.record + ": a recording's name ends in " + std::string(SoundEndings());
            return false;
        }
        std::string reason;
        auto file = services_.storage.OpenOutput(*options_.record, reason);
        if (file == nullptr) {
            problem = *options_.record + ": " + reason;
            return false;
        }
        recordingTap_ = std::make_unique<OutputTap>();
        recorder_ = std::make_unique<Recorder>(services_.loop, services_.console, *recordingTap_, std::move(file),
                                               *options_.record);
        output_.SetTap(recordingTap_.get());
    }
    return true;
}

void Sound::Open() {
    if (state_ != State::kNotYetOpen) return;
    services_.speaker.Open(output_);
    output_.EndOpening();
    state_ = State::kOpen;
    deviceSource_.AllowDevice();
    const int rate = services_.speaker.Rate();
    clips_.SetRate(rate);
    if (recorder_ != nullptr) recorder_->Start(rate);
}

void Sound::Close() noexcept {
    if (std::exchange(state_, State::kClosed) == State::kOpen) services_.speaker.Close();
    capture_.Close();
    recorder_.reset();
    if (takes_ != nullptr) takes_->End();
    desk_.Close();
}

void Sound::ToggleTake(const std::tm& localTime) {
    if (state_ == State::kClosed) return;
    Open();
    if (takes_ == nullptr) takes_ = std::make_unique<Takes>(services_, output_, options_.musicFolder);
    takes_->SetWatcher(watcher_);
    if (takes_->IsRunning()) {
        takes_->End();
    } else {
        takes_->Begin(localTime);
    }
}

}  // namespace host
