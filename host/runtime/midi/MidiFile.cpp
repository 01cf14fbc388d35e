#include "runtime/midi/MidiFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace host {

namespace {

// "Standard MIDI Files 1.0": a header chunk and one track chunk; numbers have their highest byte first.
constexpr unsigned kBitsOfByte = 8;
constexpr int kTicksOfQuarter = 500;
constexpr int kMicrosecondsOfQuarter = 500'000;  // so that a tick is a millisecond
constexpr std::uint64_t kTrackLengthAt = 18;
constexpr std::uint64_t kTrackAt = 22;
constexpr std::array<std::byte, 4> kEndOfTrack{std::byte{0}, std::byte{0xFF}, std::byte{0x2F}, std::byte{0}};
constexpr std::int64_t kLongestDelta = 0x0FFFFFFF;
constexpr Microseconds kWriteInterval = 500 * kMicrosecondsPerMillisecond;

void AddNumber(std::vector<std::byte>& bytes, std::uint32_t value, unsigned count) {
    constexpr std::uint32_t kByte = 0xFF;
    for (unsigned i = count; i > 0; --i)
        bytes.push_back(static_cast<std::byte>((value >> ((i - 1) * kBitsOfByte)) & kByte));
}

void AddText(std::vector<std::byte>& bytes, std::string_view text) {
    for (const char letter : text) bytes.push_back(static_cast<std::byte>(letter));
}

std::vector<std::byte> Beginning() {
    constexpr unsigned kWord = 2;
    constexpr unsigned kLong = 4;
    constexpr std::uint32_t kHeaderBytes = 6;
    std::vector<std::byte> bytes;
    AddText(bytes, "MThd");
    AddNumber(bytes, kHeaderBytes, kLong);
    AddNumber(bytes, 0, kWord);  // The format.
    AddNumber(bytes, 1, kWord);  // Tracks.
    AddNumber(bytes, kTicksOfQuarter, kWord);
    AddText(bytes, "MTrk");
    AddNumber(bytes, kEndOfTrack.size(), kLong);
    bytes.insert(bytes.end(), kEndOfTrack.begin(), kEndOfTrack.end());
    return bytes;
}

}  // namespace

MidiFile::MidiFile(EventLoop& loop, Console& console, std::unique_ptr<OutputFile> file, std::string path)
    : loop_(loop), console_(console), file_(std::move(file)), path_(std::move(path)), start_(loop.Now()) {
    constexpr std::uint32_t kMeta = 0xFF;
    constexpr std::uint32_t kTempo = 0x51;
    constexpr unsigned kTempoBytes = 3;
    if (!file_->Append(Beginning())) ReportLoss();
    trackBytes_ = kEndOfTrack.size();
    AddNumber(events_, 0, 1);
    AddNumber(events_, kMeta, 1);
    AddNumber(events_, kTempo, 1);
    AddNumber(events_, kTempoBytes, 1);
    AddNumber(events_, kMicrosecondsOfQuarter, kTempoBytes);
    Write();
    WriteOnTimer();
}

MidiFile::~MidiFile() {
    loop_.CancelTimer(timer_);
}

void MidiFile::Take(std::span<const std::uint8_t> message) {
    if (file_ == nullptr) return;
    AddDelta();
    for (const std::uint8_t byte : message) events_.push_back(std::byte{byte});
}

void MidiFile::AddDelta() {
    // Every tick is counted from the start, so that no error adds up.
    const std::int64_t tick = (loop_.Now() - start_) / kMicrosecondsPerMillisecond;
    const auto delta = static_cast<std::uint32_t>(std::clamp<std::int64_t>(tick - lastTick_, 0, kLongestDelta));
    lastTick_ = tick;
    // Seven bits a byte, the highest first; all but the last have the eighth bit set.
    constexpr unsigned kBits = 7;
    constexpr std::uint32_t kGoesOn = 0x80;
    unsigned shift = 3 * kBits;
    while (shift > 0 && (delta >> shift) == 0) shift -= kBits;
    for (; shift > 0; shift -= kBits) AddNumber(events_, ((delta >> shift) & (kGoesOn - 1)) | kGoesOn, 1);
    AddNumber(events_, delta & (kGoesOn - 1), 1);
}

void MidiFile::WriteOnTimer() {
    timer_ = loop_.StartTimer(kWriteInterval, [this] {
        Write();
        WriteOnTimer();
    });
}

void MidiFile::Write() {
    if (file_ == nullptr || events_.empty()) return;
    const std::uint64_t endAt = kTrackAt + trackBytes_ - kEndOfTrack.size();
    const auto added = static_cast<std::uint32_t>(events_.size());
    events_.insert(events_.end(), kEndOfTrack.begin(), kEndOfTrack.end());
    const std::span<const std::byte> bytes = events_;
    std::vector<std::byte> length;
    AddNumber(length, trackBytes_ + added, sizeof trackBytes_);
    // In this order the track ends well between any two steps: first what lies behind its end, then its length, and the
    // old end last.
    const bool isWritten = file_->Append(bytes.subspan(kEndOfTrack.size())) &&
                           file_->Overwrite(kTrackLengthAt, length) &&
                           file_->Overwrite(endAt, bytes.first(kEndOfTrack.size()));
    trackBytes_ += added;
    events_.clear();
    if (!isWritten) ReportLoss();
}

void MidiFile::ReportLoss() {
    console_.ReportLoss(path_ + ": the MIDI file is cut: " + file_->Problem());
    file_.reset();
}

void MidiFile::Finish() {
    loop_.CancelTimer(std::exchange(timer_, TimerQueue::kNone));
    Write();
    if (file_ != nullptr && !file_->Close()) ReportLoss();
    file_.reset();
}

}  // namespace host
