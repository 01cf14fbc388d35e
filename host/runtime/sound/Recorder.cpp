#include "runtime/sound/Recorder.h"

#include <utility>

namespace host {

namespace {

constexpr Microseconds kDrainInterval = 200 * kMicrosecondsPerMillisecond;
constexpr std::size_t kFramesAtOnce = 16384;

}  // namespace

Recorder::Recorder(EventLoop& loop, Console& console, OutputTap& tap, std::unique_ptr<OutputFile> file,
                   std::string path)
    : loop_(loop),
      console_(console),
      tap_(tap),
      file_(std::move(file)),
      path_(std::move(path)),
      buffer_(kFramesAtOnce) {}

Recorder::~Recorder() {
    Finish();
}

void Recorder::Start(int rate) {
    writer_ = CreateSoundWriter(SoundFormatOf(path_).value_or(SoundFormat::kWav), std::move(file_), rate);
    DrainOnTimer();
}

bool Recorder::Finish() noexcept {
    loop_.CancelTimer(timer_);
    timer_ = TimerQueue::kNone;
    if (!writer_) return true;
    Drain();
    const bool isWhole = writer_->Close();
    if (!isWhole) console_.ReportLoss(path_ + ": the recording is cut short: " + writer_->Problem());
    writer_.reset();
    return isWhole;
}

bool Recorder::Drain() {
    // What does not fit on the disk is still taken out of the tap. The loss is reported when it happens.
    bool isWhole = true;
    while (const std::size_t count = tap_.Pop(buffer_)) {
        if (writer_->Write({buffer_.data(), count})) continue;
        isWhole = false;
        console_.ReportLoss(path_ + ": the recording is cut short: " + writer_->Problem());
    }
    return isWhole;
}

void Recorder::DrainOnTimer() {
    timer_ = loop_.StartTimer(kDrainInterval, [this] {
        const bool isWhole = Drain();
        DrainOnTimer();
        if (isWhole) return;
        if (const auto onFailure = std::exchange(onFailure_, nullptr)) onFailure();
    });
}

}  // namespace host
