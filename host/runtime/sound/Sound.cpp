#include "runtime/sound/Sound.h"

#include <algorithm>
#include <utility>

#include "runtime/sound/BreathFile.h"
#include "runtime/sound/CaptureSession.h"
#include "runtime/sound/ClipPlayer.h"
#include "runtime/sound/Recorder.h"

namespace host {

Sound::Sound(const SoundServices& services, const SoundOptions& options)
    : services_(services),
      options_(options),
      clips_(services.storage, services.loop, *this),
      desk_(services.speaker, services.loop),
      output_(desk_, services.loop, services.console),
      simulatedMicrophone_(services.loop),
      capture_(options.microphoneSource == MicrophoneSource::kSimulated ? static_cast<Microphone&>(simulatedMicrophone_)
                                                                        : services.microphone,
               services.loop, services.trace, services.console) {}

Sound::~Sound() {
    Close();
    for (ClipPlayer* player : players_) player->OnSoundGone();
    for (CaptureSession* session : sessions_) session->OnSoundGone();
}

bool Sound::Open(std::string& problem) {
    if (options_.breathPath) {
        auto file = BreathFile::Open(*options_.breathPath, problem);
        if (file == nullptr) return false;
        simulatedMicrophone_.SetBreathFile(std::move(file));
    }
    if (options_.recordPath) {
        auto recorder = std::make_unique<Recorder>(services_.loop);
        if (!recorder->Create(*options_.recordPath)) {
            problem = *options_.recordPath + ": it cannot be written";
            return false;
        }
        recorder_ = std::move(recorder);
        output_.SetTap(&recorder_->GetTap());
    }
    services_.speaker.Open(output_);
    isOpen_ = true;
    const int rate = services_.speaker.Rate();
    clips_.SetRate(rate);
    if (recorder_ != nullptr) recorder_->Start(rate);
    return true;
}

void Sound::Close() noexcept {
    if (std::exchange(isOpen_, false)) services_.speaker.Close();
    capture_.Close();
    recorder_.reset();
    for (ClipPlayer* player : players_) player->OnSoundClosed();
    desk_.Close();
}

void Sound::SetBreath(double level) {
    simulatedMicrophone_.SetBreath(level);
}

void Sound::SetKeyBreath(double level) {
    capture_.SetKeyBreath(level);
}

void Sound::LoseSpeaker() {
    output_.SetSimulatedLoss(true);
}

void Sound::RestoreSpeaker() {
    output_.SetSimulatedLoss(false);
}

void Sound::LoseMicrophone() {
    simulatedMicrophone_.Lose();
}

void Sound::RestoreMicrophone() {
    simulatedMicrophone_.Restore();
}

std::uint64_t Sound::BlocksDelivered() const {
    return capture_.BlocksDelivered();
}

std::uint64_t Sound::Underruns() const {
    return services_.speaker.Underruns();
}

}  // namespace host
