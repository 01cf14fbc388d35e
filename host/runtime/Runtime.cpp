#include "runtime/Runtime.h"

#include <utility>

#include "runtime/package/Package.h"
#include "runtime/screen/AccessibleTree.h"
#include "runtime/screen/Screen.h"
#include "runtime/sound/Sound.h"

namespace host {

namespace {

Runtime* current = nullptr;

}  // namespace

Runtime::Runtime(const BackendParts& parts, const Options& options, MicrophoneSupport microphone)
    : parts_(parts), options_(options), loop_(parts.clock, parts.loopDriver), trace_(loop_, console_) {
    current = this;
    package_ = std::make_unique<Package>();
    const SoundServices services{loop_, parts_.storage, parts_.speaker, parts_.microphone, trace_, console_};
    sound_ = std::make_unique<Sound>(services, options_, microphone);
}

Runtime::~Runtime() {
    if (isOpen_) parts_.window.Close();
    sound_->Close();
    current = nullptr;
}

Runtime& Runtime::Current() {
    return *current;
}

bool Runtime::Prepare(std::string& problem) {
    std::string language;
    if (!Package::ChooseLanguage(parts_.storage, options_, language, problem)) return false;
    parts_.painter.SetLanguage(language);
    packageFaults_ = package_->Load(parts_.storage, parts_.painter, language, options_.screen, console_);
    return sound_->Prepare(problem) && PrepareTrace(problem);
}

bool Runtime::PrepareTrace(std::string& problem) {
    if (!options_.trace) return true;
    std::string reason;
    auto file = parts_.storage.OpenOutput(*options_.trace, reason);
    if (file == nullptr) {
        problem = *options_.trace + ": the trace cannot be written there: " + reason;
        return false;
    }
    trace_.Open(std::move(file), *options_.trace,
                options_.hasTraceTimers ? Trace::Timers::kIncluded : Trace::Timers::kOmitted);
    return true;
}

bool Runtime::Open(WindowListener& listener, std::string& problem) {
    screen_ = std::make_unique<Screen>(loop_, parts_.clock, parts_.painter, parts_.window, trace_, *package_, *sound_,
                                       options_.screen);
    if (!parts_.window.Open("Brevant", options_.screen, listener, *screen_)) {
        problem = "no window can be opened on this display";
        return false;
    }
    isOpen_ = true;
    // Told now that nothing can be refused any more: what is refused is told in one line.
    for (const std::string& fault : packageFaults_) console_.SayOnce(fault);
    screen_->OnResized();
    accessible_ = std::make_unique<AccessibleTree>(*screen_);
    parts_.window.SetAccessible(*accessible_);
    return true;
}

void Runtime::CloseSound() noexcept {
    sound_->Close();
}

}  // namespace host
