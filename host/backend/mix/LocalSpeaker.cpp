#include "backend/mix/LocalSpeaker.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::size_t kCommands = 1024;
constexpr std::size_t kNews = 1024;

}  // namespace

LocalSpeaker::LocalSpeaker() : commands_(kCommands), news_(kNews) {}

void LocalSpeaker::HandOver(ClipNumber number, const ClipShape& shape, const float* frames) noexcept {
    // The mix looks at it when a command names it: the ring makes it visible before that command.
    mix_.SetClip(number, shape, frames);
}

std::size_t LocalSpeaker::Send(std::span<const MixCommand> commands) noexcept {
    const std::size_t count = std::min(commands.size(), commands_.Room());
    commands_.Push(commands.first(count));
    return count;
}

std::size_t LocalSpeaker::TakeNews(std::span<MixNews> news) noexcept {
    return news_.Pop(news);
}

void LocalSpeaker::Pull(std::span<float> frames) noexcept {
    MixCommand command;
    // A command has at most one piece of news: none is obeyed that could not report it.
    while (news_.Room() > 0 && commands_.Pop({&command, 1}) == 1) mix_.Obey(command, *this);
    mix_.Render(frames, *this);
    if (isDeviceLost_) std::fill(frames.begin(), frames.end(), 0.0F);
    if (news_.Room() < kNews) client_->OnSpeakerNews();
    client_->OnFramesPlayed(frames);
}

void LocalSpeaker::StartMix(SpeakerClient& client, int rate, int periodFrames) {
    MixCommand command;
    while (commands_.Pop({&command, 1}) == 1) continue;
    MixNews news;
    while (news_.Pop({&news, 1}) == 1) continue;
    mix_.Prepare(rate, periodFrames);
    client_ = &client;
    isDeviceLost_ = false;
}

void LocalSpeaker::LoseDevice() noexcept {
    isDeviceLost_ = true;
    client_->OnSpeakerLost();
}

void LocalSpeaker::RestoreDevice(int periodFrames) noexcept {
    isDeviceLost_ = false;
    mix_.SetPeriod(periodFrames);
    client_->OnSpeakerRestored();
}

bool LocalSpeaker::Report(const MixNews& news) noexcept {
    if (news_.Room() == 0) return false;
    news_.Push({&news, 1});
    return true;
}

}  // namespace host
