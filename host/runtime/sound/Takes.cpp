#include "runtime/sound/Takes.h"

#include <array>
#include <cstddef>
#include <utility>

namespace host {

namespace {

// Lossless, a third of a WAV file's size, and played by today's phones and browsers without anything added.
constexpr const char* kEnding = ".flac";
constexpr const char* kPlainEnding = ".wav";
// More of one second would not come from a person.
constexpr int kMostOfASecond = 100;

std::string StemOf(const std::tm& localTime) {
    // No colons, which other systems refuse in names.
    std::array<char, 64> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "Brevant %Y-%m-%d %H-%M-%S", &localTime);
    return {text.data(), length};
}

}  // namespace

Takes::Takes(const SoundServices& services, SpeakerOutput& output, std::string folder)
    : services_(services), output_(output), folder_(std::move(folder)) {
    if (!folder_.empty() && folder_.back() != '/') folder_ += '/';
}

std::unique_ptr<OutputFile> Takes::MakeFile(const std::tm& localTime, std::string& problem) {
    if (folder_.empty()) {
        problem = "there is no music folder: neither HOME nor XDG_MUSIC_DIR is an absolute path";
        return nullptr;
    }
    if (!services_.storage.MakeFolder(folder_)) {
        problem = folder_ + ": the folder cannot be made";
        return nullptr;
    }
    const std::string stem = StemOf(localTime);
    const char* const ending = CanWrite(SoundFormat::kFlac) ? kEnding : kPlainEnding;
    for (int number = 1; number <= kMostOfASecond; ++number) {
        name_ = stem + (number == 1 ? std::string() : " (" + std::to_string(number) + ')') + ending;
        std::string reason;
        if (auto file = services_.storage.OpenNewOutput(folder_ + name_, reason)) return file;
        problem = folder_ + name_ + ": " + (reason.empty() ? "it is there already" : reason);
        if (!reason.empty()) return nullptr;
    }
    return nullptr;
}

void Takes::Begin(const std::tm& localTime) {
    std::string problem;
    auto file = MakeFile(localTime, problem);
    if (file == nullptr) {
        services_.console.ReportLoss("nothing is recorded: " + problem);
        services_.trace.Add("recording", "started").Flag("ok", false);
        if (watcher_ != nullptr) watcher_->OnTakeLost(folder_);
        return;
    }
    services_.trace.Add("recording", "started").Text("file", name_).Flag("ok", true);
    // The end of the take before may still have come in when that one was closed already.
    tap_.Clear();
    recorder_ = std::make_unique<Recorder>(services_.loop, services_.console, tap_, std::move(file), folder_ + name_);
    recorder_->SetFailureHandler([this] { End(); });
    recorder_->Start(services_.speaker.Rate());
    output_.SetTakeTap(&tap_);
    if (watcher_ != nullptr) watcher_->OnTakeStarted();
}

void Takes::End() {
    if (!IsRunning()) return;
    output_.SetTakeTap(nullptr);
    const bool isWhole = std::exchange(recorder_, nullptr)->Finish();
    services_.trace.Add("recording", "ended").Text("file", name_).Flag("ok", isWhole);
    if (watcher_ == nullptr) return;
    if (isWhole) {
        watcher_->OnTakeEnded(name_);
    } else {
        watcher_->OnTakeLost(folder_);
    }
}

}  // namespace host
