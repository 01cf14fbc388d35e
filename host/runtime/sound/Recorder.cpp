#include "runtime/sound/Recorder.h"

#include <utility>

namespace host {

namespace {

constexpr Microseconds kDrainInterval = 200 * kMicrosecondsPerMillisecond;
constexpr std::size_t kFramesAtOnce = 16384;

}  // namespace

Recorder::Recorder(EventLoop& loop, Console& console, std::unique_ptr<OutputFile> file, std::string path)
    : loop_(loop), console_(console), file_(std::move(file)), path_(std::move(path)), buffer_(kFramesAtOnce) {}

Recorder::~Recorder() {
    Finish();
}

void Recorder::Start(int rate) {
    writer_.emplace(std::move(file_), rate);
    DrainOnTimer();
}

void Recorder::Finish() noexcept {
    loop_.CancelTimer(timer_);
    timer_ = TimerQueue::kNone;
    if (!writer_) return;
    Drain();
    if (!writer_->Close()) console_.ReportLoss(path_ + ": the recording is cut short: " + writer_->Problem());
    writer_.reset();
}

void Recorder::Drain() {
    // What does not fit on the disk is still taken out of the tap. The loss is reported when it happens.
    while (const std::size_t count = tap_.Pop(buffer_)) {
        if (writer_->Write({buffer_.data(), count})) continue;
        console_.ReportLoss(path_ + ": the recording is cut short: " + writer_->Problem());
    }
}

void Recorder::DrainOnTimer() {
    timer_ = loop_.StartTimer(kDrainInterval, [this] {
        Drain();
        DrainOnTimer();
    });
}

}  // namespace host
