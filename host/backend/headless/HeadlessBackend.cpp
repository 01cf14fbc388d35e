#include "backend/headless/HeadlessBackend.h"

#include "backend/cairo/CairoPainter.h"
#include "backend/headless/HeadlessLoopDriver.h"
#include "backend/headless/HeadlessSpeaker.h"
#include "backend/headless/HeadlessWindow.h"
#include "backend/headless/SilentMicrophone.h"
#include "backend/headless/VirtualClock.h"
#include "backend/posix/PosixStorage.h"

// clang-format off
// What the headless back end supports:
//   clock        virtual: it stands still within a step and jumps between steps; a run is the same to the byte every time
//   loop driver  one thread, never waits
//   window       a picture in memory of the phone's own size; no input, always visible, 60 frames a second
//   painter      Cairo and Pango, as on the desktop
//   speaker      44100 Hz in periods of 256 frames, pulled on the UI thread, unheard
//   microphone   none: what is heard comes from performances and breath files
//   storage      files
// clang-format on

namespace host {

namespace {

class HeadlessBackend final : public Backend {
public:
    explicit HeadlessBackend(const BackendOptions& options) : storage_(options.packageRoot, options.dataRoot) {}

    [[nodiscard]] BackendParts Parts() override {
        return {clock_, loopDriver_, window_, painter_, speaker_, microphone_, storage_};
    }

private:
    VirtualClock clock_;
    HeadlessSpeaker speaker_{clock_};
    HeadlessLoopDriver loopDriver_{clock_, speaker_};
    CairoPainter painter_;
    HeadlessWindow window_{painter_};
    SilentMicrophone microphone_;
    PosixStorage storage_;
};

}  // namespace

std::unique_ptr<Backend> CreateHeadlessBackend(const BackendOptions& options) {
    return std::make_unique<HeadlessBackend>(options);
}

bool IsHeadlessAvailable() {
    return true;
}

std::string HeadlessLibraries() {
    return CairoPainter::Libraries();
}

}  // namespace host
