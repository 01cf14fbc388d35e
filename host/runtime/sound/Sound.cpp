#include "runtime/sound/Sound.h"

#include <utility>

#include "runtime/sound/BreathFile.h"
#include "runtime/sound/Recorder.h"

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
    capture_.SetWatcher(watcher);
}

void Sound::TellOfTone() {
    if (watcher_ != nullptr) watcher_->OnTone();
}

bool Sound::Prepare(std::string& problem) {
    if (options_.breath) {
        auto file = BreathFile::Open(services_.storage, services_.console, *options_.breath, problem);
        if (file == nullptr) return false;
        simulatedMicrophone_.SetBreathFile(std::move(file));
    }
    if (options_.record) {
        std::string reason;
        auto file = services_.storage.OpenOutput(*options_.record, reason);
        if (file == nullptr) {
            problem = *options_.record + ": " + reason;
            return false;
        }
        recorder_ = std::make_unique<Recorder>(services_.loop, services_.console, std::move(file), *options_.record);
        output_.SetTap(&recorder_->GetTap());
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
    desk_.Close();
}

}  // namespace host
