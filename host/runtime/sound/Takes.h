#pragma once

#include <ctime>
#include <memory>
#include <string>

#include "runtime/sound/OutputTap.h"
#include "runtime/sound/Recorder.h"
#include "runtime/sound/SoundServices.h"
#include "runtime/sound/SoundWatcher.h"
#include "runtime/sound/SpeakerOutput.h"

namespace host {

/// The recordings that the player starts and ends while playing, each a new FLAC file in one folder. UI thread only. It
/// lives until the speaker is closed, which may still be filling its tap.
class Takes {
public:
    /// Everything but the folder's name must outlive it; the folder is made when it is missing.
    Takes(const SoundServices& services, SpeakerOutput& output, std::string folder);
    Takes(const Takes&) = delete;
    Takes& operator=(const Takes&) = delete;

    /// Null for none.
    void SetWatcher(SoundWatcher* watcher) noexcept { watcher_ = watcher; }

    [[nodiscard]] bool IsRunning() const noexcept { return recorder_ != nullptr; }
    /// "Brevant 2026-11-23 18-05-09.flac" of the time that is given, with a number behind it where there is such a
    /// file. One that cannot be made is a loss.
    void Begin(const std::tm& localTime);
    /// Without a take nothing happens.
    void End();

private:
    /// Null with the reason in `problem`.
    [[nodiscard]] std::unique_ptr<OutputFile> MakeFile(const std::tm& localTime, std::string& problem);

    SoundServices services_;
    SpeakerOutput& output_;
    std::string folder_;
    SoundWatcher* watcher_ = nullptr;
    OutputTap tap_;
    std::string name_;  ///< of the take's file
    std::unique_ptr<Recorder> recorder_;
};

}  // namespace host
