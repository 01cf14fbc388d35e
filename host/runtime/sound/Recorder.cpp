#include "runtime/sound/Recorder.h"

#include "runtime/soundfile/WavWriter.h"

namespace host {

namespace {

constexpr Microseconds kDrainInterval = 200 * kMicrosecondsPerMillisecond;
constexpr std::size_t kFramesAtOnce = 16384;
constexpr int kUsualRate = 44100;

}  // namespace

Recorder::Recorder(EventLoop& loop) : loop_(loop), buffer_(kFramesAtOnce) {}

Recorder::~Recorder() {
    Finish();
}

bool Recorder::Create(const std::string& path) {
    path_ = path;
    return WavWriter::Create(path, kUsualRate) != nullptr;
}

void Recorder::Start(int rate) {
    writer_ = WavWriter::Create(path_, rate);
    DrainOnTimer();
}

void Recorder::Finish() noexcept {
    loop_.CancelTimer(timer_);
    timer_ = TimerQueue::kNone;
    if (writer_ != nullptr) Drain();
    writer_.reset();
}

void Recorder::Drain() {
    while (const std::size_t count = tap_.Pop(buffer_)) {
        if (writer_ != nullptr) writer_->Write({buffer_.data(), count});
    }
}

void Recorder::DrainOnTimer() {
    timer_ = loop_.StartTimer(kDrainInterval, [this] {
        Drain();
        DrainOnTimer();
    });
}

}  // namespace host
