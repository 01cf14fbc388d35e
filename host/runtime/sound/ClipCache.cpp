#include "runtime/sound/ClipCache.h"

#include <algorithm>
#include <utility>

namespace host {

namespace {

// Room for a minute in every format that a tone is kept in; whatever is larger is no tone.
constexpr std::size_t kLargestFileBytes = 32U << 20U;

// A slice costs under a millisecond with resampling, a third of that without. Fifteen times as fast as it is played,
// the slices leave the tone's beginning behind at once, also when several clips take turns.
constexpr int kSliceMilliseconds = 150;
constexpr Microseconds kSliceInterval = 10 * kMicrosecondsPerMillisecond;

}  // namespace

ClipCache::ClipCache(Storage& storage, EventLoop& loop, ClipListener& listener)
    : storage_(storage), loop_(loop), listener_(listener) {}

ClipCache::~ClipCache() {
    loop_.CancelTimer(timer_);
}

ClipCache::Outcome ClipCache::Open(const std::string& path, std::shared_ptr<const Clip>& clip) {
    const auto stamp = storage_.Stat(path);
    const auto known = byPath_.find(path);
    if (known != byPath_.end()) {
        if (stamp == known->second->stamp) {
            entries_.splice(entries_.begin(), entries_, known->second);
            clip = known->second->clip;
            return Outcome::kOpened;
        }
        Remove(known->second);
    }
    if (!stamp) return Outcome::kMissing;
    const auto refused = refused_.find(path);
    if (refused != refused_.end() && refused->second == *stamp) return Outcome::kUnsupported;

    std::vector<std::byte> content;
    switch (storage_.Read(path, kLargestFileBytes, content)) {
        case ReadOutcome::kRead:
            break;
        case ReadOutcome::kMissing:
            return Outcome::kMissing;
        case ReadOutcome::kTooLarge:
        case ReadOutcome::kNotAFile:
        case ReadOutcome::kFailed:
            return Outcome::kUnsupported;
    }
    auto decoder = ClipDecoder::Open(std::move(content), rate_);
    if (decoder == nullptr) return Refuse(path, *stamp);
    // A tone may begin in its sustained part.
    const std::size_t framesAtFirst = decoder->GetClip()->Shape().loopStart + SliceFrames();
    const std::size_t framesNow = decoder->IsProvedWhole() ? framesAtFirst : decoder->GetClip()->Length();
    if (!decoder->Advance(framesNow)) return Refuse(path, *stamp);

    clip = decoder->GetClip();
    entries_.push_front({path, *stamp, clip});
    byPath_.emplace(path, entries_.begin());
    bytes_ += clip->Bytes();
    KeepWithinLimit();
    if (!decoder->IsDone()) {
        unfinished_.push_back(std::move(decoder));
        DecodeOnTimer();
    }
    return Outcome::kOpened;
}

ClipCache::Outcome ClipCache::Refuse(const std::string& path, const FileStamp& stamp) {
    refused_.insert_or_assign(path, stamp);
    return Outcome::kUnsupported;
}

void ClipCache::Remove(Entries::iterator entry) {
    bytes_ -= entry->clip->Bytes();
    byPath_.erase(entry->path);
    entries_.erase(entry);
}

void ClipCache::KeepWithinLimit() {
    while (bytes_ > kLimitBytes && entries_.size() > 1) Remove(std::prev(entries_.end()));
}

void ClipCache::DecodeOnTimer() {
    if (timer_ != TimerQueue::kNone) return;
    timer_ = loop_.StartTimer(kSliceInterval, [this] {
        timer_ = TimerQueue::kNone;
        DecodeSlice();
        if (!unfinished_.empty()) DecodeOnTimer();
    });
}

void ClipCache::DecodeSlice() {
    std::unique_ptr<ClipDecoder> decoder = std::move(unfinished_.front());
    unfinished_.pop_front();
    const std::shared_ptr<const Clip> clip = decoder->GetClip();
    if (decoder->Advance(SliceFrames())) {
        if (!decoder->IsDone()) unfinished_.push_back(std::move(decoder));
        return listener_.OnClipGrew(*clip);
    }
    // The structure was that of a whole file, but a packet holds no sound: only a file made for that is known to be so.
    // The clip is silent from here on, and does not open again.
    const auto entry =
        std::find_if(entries_.begin(), entries_.end(), [&](const Entry& each) { return each.clip == clip; });
    if (entry == entries_.end()) return;
    refused_.insert_or_assign(entry->path, entry->stamp);
    Remove(entry);
}

std::size_t ClipCache::SliceFrames() const {
    constexpr int kMillisecondsPerSecond = 1000;
    return static_cast<std::size_t>(rate_) * kSliceMilliseconds / kMillisecondsPerSecond;
}

}  // namespace host
