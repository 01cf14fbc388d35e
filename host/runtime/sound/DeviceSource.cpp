#include "runtime/sound/DeviceSource.h"

#include <algorithm>
#include <array>

#include "runtime/sound/PhoneFormat.h"

namespace host {

namespace {

// 5 s at 48000 Hz. A UI thread that stands still for longer loses what comes then; the blocks before that are too old
// to be wanted as well.
constexpr std::size_t kFramesInRing = std::size_t{1} << 18U;

constexpr std::size_t kFramesAtOnce = 2048;
constexpr int kDeviceChannels = 1;
constexpr int kTellingSilenceSeconds = 3;

}  // namespace

DeviceSource::DeviceSource(Microphone& microphone, EventLoop& loop, OwnTones& ownTones)
    : microphone_(microphone), loop_(loop), ownTones_(ownTones), frames_(kFramesInRing), heard_(loop, [this] {
          TakeFrames();
      }) {}

void DeviceSource::Start(BlockSink& sink) {
    Stop();
    sink_ = &sink;
    DropUnread();
    if (isDeviceAllowed_) microphone_.Start(*this);
}

void DeviceSource::AllowDevice() {
    isDeviceAllowed_ = true;
    if (sink_ != nullptr) microphone_.Start(*this);
}

void DeviceSource::Stop() noexcept {
    if (sink_ == nullptr) return;
    sink_ = nullptr;
    if (isDeviceAllowed_) microphone_.Stop();
}

void DeviceSource::OnMicrophoneOpened(int rate) noexcept {
    DropUnread();
    rate_ = rate;
    converter_ = PhoneConverter::Make(rate, kDeviceChannels);
    if (converter_ == nullptr) return;
    converter_->MakeUpForDelay();
    sink_->OnSourceRestored();
}

void DeviceSource::OnMicrophoneLost() noexcept {
    sink_->OnSourceLost();
}

void DeviceSource::OnFramesHeard(std::span<const float> frames) noexcept {
    const std::size_t count = std::min(frames.size(), frames_.Room());
    frames_.Push(frames.first(count));
    if (count < frames.size()) isOverflown_.store(true, std::memory_order_release);
    heard_.Raise();
}

void DeviceSource::TakeFrames() {
    if (sink_ == nullptr || converter_ == nullptr) return;
    converter_->SetOwnTones(ownTones_.HeardLately(loop_.Now()));
    std::array<float, kFramesAtOnce> heard;
    while (const std::size_t count = frames_.Pop(heard)) {
        WatchForSilence(std::span<const float>(heard).first(count));
        converter_->Convert(std::span<const float>(heard).first(count), PhoneConverter::Input::kGoesOn, bytes_);
    }
    auto from = bytes_.begin();
    for (; bytes_.end() - from >= static_cast<std::ptrdiff_t>(kBlockBytes); from += kBlockBytes) {
        Block block;
        std::copy_n(from, kBlockBytes, block.begin());
        sink_->OnBlock(block);
    }
    bytes_.erase(bytes_.begin(), from);
    // What comes now does not go on where the block that is not full was cut off.
    if (!isOverflown_.exchange(false, std::memory_order_acq_rel)) return;
    bytes_.clear();
    converter_->DropUnfinished();
}

void DeviceSource::WatchForSilence(std::span<const float> frames) {
    const std::int64_t before = silentFrames_;
    for (const float frame : frames) silentFrames_ = frame == 0 ? silentFrames_ + 1 : 0;
    const std::int64_t telling = std::int64_t{kTellingSilenceSeconds} * rate_;
    if (before < telling && silentFrames_ >= telling) sink_->OnSourceSilent();
}

void DeviceSource::DropUnread() noexcept {
    std::array<float, kFramesAtOnce> dropped;
    while (frames_.Pop(dropped) > 0) continue;
    bytes_.clear();
    silentFrames_ = 0;
}

}  // namespace host
