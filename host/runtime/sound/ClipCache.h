#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "backend/Storage.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/sound/Clip.h"
#include "runtime/sound/ClipDecoder.h"

namespace host {

/// The recordings that were opened lately, decoded once and shared. A file that has changed since is decoded anew. Of
/// a file whose structure proves that it is whole, the first fraction of a second is decoded when it is opened, the
/// rest in slices soon after, far ahead of its being played, so that no single step of the UI thread is long. Any other
/// file is decoded to its end when it is opened. UI thread only.
class ClipCache {
public:
    ClipCache(Storage& storage, EventLoop& loop, ClipListener& listener);
    ~ClipCache();
    ClipCache(const ClipCache&) = delete;
    ClipCache& operator=(const ClipCache&) = delete;

    /// The rate of the clips; before the first Open.
    void SetRate(int rate) { rate_ = rate; }

    /// kUnsupported for a file that does not decode to its end, or is longer than a minute. Such a file is not read
    /// again before it changes.
    enum class Outcome { kOpened, kMissing, kUnsupported };
    [[nodiscard]] Outcome Open(const std::string& path, std::shared_ptr<const Clip>& clip);

    /// Clips that nobody plays are given up beyond this, the one that was opened longest ago first.
    static constexpr std::size_t kLimitBytes = 64U << 20U;

private:
    struct Entry {
        std::string path;
        FileStamp stamp;
        std::shared_ptr<const Clip> clip;
    };
    using Entries = std::list<Entry>;

    Outcome Refuse(const std::string& path, const FileStamp& stamp);
    void Remove(Entries::iterator entry);
    void KeepWithinLimit();
    void DecodeOnTimer();
    void DecodeSlice();
    [[nodiscard]] std::size_t SliceFrames() const;

    Storage& storage_;
    EventLoop& loop_;
    ClipListener& listener_;
    int rate_ = 0;
    Entries entries_;  ///< the one opened last in front
    std::map<std::string, Entries::iterator> byPath_;
    std::map<std::string, FileStamp> refused_;
    std::size_t bytes_ = 0;
    std::list<std::unique_ptr<ClipDecoder>> unfinished_;
    TimerQueue::Id timer_ = TimerQueue::kNone;
};

}  // namespace host
