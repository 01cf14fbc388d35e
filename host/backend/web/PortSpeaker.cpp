#include "backend/web/PortSpeaker.h"

#include <algorithm>
#include <utility>

#include "backend/web/Bridge.h"

namespace host {

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
    std::size_t count = 0;
    for (const MixCommand& command : commands) {
        if (command.kind == MixCommand::Kind::kClipReady) SendFrames(command.clip, command.number);
        double* const numbers = &outgoing_[count * kNumbersOfCommand];
        numbers[0] = static_cast<double>(command.kind);
        numbers[1] = command.voice;
        numbers[2] = command.clip;
        numbers[3] = command.number;
        numbers[4] = static_cast<double>(command.gain);
        if (++count == kMostTogether) web_speaker_send(outgoing_.data(), static_cast<int>(std::exchange(count, 0)));
    }
    if (count > 0) web_speaker_send(outgoing_.data(), static_cast<int>(count));
    return commands.size();
}

void PortSpeaker::SendFrames(ClipNumber number, std::uint32_t ready) noexcept {
    Clip& clip = clips_[number];
    if (ready <= clip.sent) return;
    web_speaker_frames(static_cast<int>(number), clip.sent, clip.frames + clip.sent, ready - clip.sent);
    clip.sent = ready;
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

void PortSpeaker::TellPlayed(std::size_t count) noexcept {
    if (client_ != nullptr) client_->OnFramesPlayed(PlayedBuffer().first(std::min(count, played_.size())));
}

void PortSpeaker::SetLost(bool isLost) noexcept {
    if (client_ == nullptr) return;
    if (isLost) {
        client_->OnSpeakerLost();
    } else {
        client_->OnSpeakerRestored();
    }
}

}  // namespace host
