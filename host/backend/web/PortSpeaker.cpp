#include "backend/web/PortSpeaker.h"

#include <algorithm>

#include "backend/web/Bridge.h"

namespace host {

namespace {

constexpr std::size_t kNumbersOfCommand = 5;

}  // namespace

void PortSpeaker::Open(SpeakerClient& client) {
    client_ = &client;
    news_.clear();
    clips_.fill({});
    const int rate = web_speaker_open();
    rate_ = rate > 0 ? rate : kRateWithoutSound;
    if (rate <= 0) client.OnSpeakerLost();
}

void PortSpeaker::Close() noexcept {
    if (client_ == nullptr) return;
    client_ = nullptr;
    web_speaker_close();
}

void PortSpeaker::HandOver(ClipNumber number, const ClipShape& shape, const float* frames) noexcept {
    clips_[number] = {frames, 0};
    web_speaker_clip(static_cast<int>(number), shape.length, shape.loopStart, shape.takes, shape.releaseFrames,
                     shape.periodFrames);
}

std::size_t PortSpeaker::Send(std::span<const MixCommand> commands) noexcept {
    if (commands.empty()) return 0;
    outgoing_.clear();
    for (const MixCommand& command : commands) {
        if (command.kind == MixCommand::Kind::kClipReady) {
            Clip& clip = clips_[command.clip];
            if (command.number > clip.sent) {
                web_speaker_frames(static_cast<int>(command.clip), clip.sent, clip.frames + clip.sent,
                                   command.number - clip.sent);
                clip.sent = command.number;
            }
        }
        outgoing_.insert(outgoing_.end(), {static_cast<double>(command.kind), static_cast<double>(command.voice),
                                           static_cast<double>(command.clip), static_cast<double>(command.number),
                                           static_cast<double>(command.gain)});
    }
    web_speaker_send(outgoing_.data(), static_cast<int>(outgoing_.size() / kNumbersOfCommand));
    return commands.size();
}

std::size_t PortSpeaker::TakeNews(std::span<MixNews> news) noexcept {
    const std::size_t count = std::min(news.size(), news_.size());
    std::copy_n(news_.begin(), count, news.begin());
    news_.erase(news_.begin(), news_.begin() + static_cast<std::ptrdiff_t>(count));
    return count;
}

std::uint64_t PortSpeaker::Underruns() const noexcept {
    return static_cast<std::uint64_t>(web_speaker_underruns());
}

void PortSpeaker::AddNews(const MixNews& news) {
    if (client_ != nullptr) news_.push_back(news);
}

void PortSpeaker::TellNews() noexcept {
    if (client_ != nullptr) client_->OnSpeakerNews();
}

void PortSpeaker::SetLost(bool isLost) noexcept {
    if (client_ == nullptr) return;
    isLost ? client_->OnSpeakerLost() : client_->OnSpeakerRestored();
}

}  // namespace host
