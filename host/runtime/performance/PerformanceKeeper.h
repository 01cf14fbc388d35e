#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

#include "backend/Storage.h"
#include "runtime/Console.h"
#include "runtime/Options.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/performance/Performance.h"
#include "runtime/screen/input/InputWatcher.h"
#include "runtime/sound/BlockWatcher.h"

namespace host {

/// Writes what is done to the phone, and the breath as it is heard, as a performance that gives the same tones at the
/// same times when it is played: a bug report, or a take to be rendered again. A line is in the file at most a second
/// after it happened. UI thread only.
class PerformanceKeeper final : public InputWatcher, public BlockWatcher {
public:
    /// `file` is still empty; `path` is for messages.
    PerformanceKeeper(EventLoop& loop, Console& console, std::unique_ptr<OutputFile> file, std::string path);
    ~PerformanceKeeper();
    PerformanceKeeper(const PerformanceKeeper&) = delete;
    PerformanceKeeper& operator=(const PerformanceKeeper&) = delete;

    /// Writes what the options say of the phone; times count from now, and nothing is kept before.
    void Start(const Options& options);
    /// What is done to the phone beside fingers, keys and breath.
    void Keep(const PerformanceAction& action);
    /// The application ends: writes the last line and closes the file. A loss is reported.
    void Finish();

    // InputWatcher
    void OnFingerUsed(const FingerId& finger, TouchPhase phase, std::optional<PointF> place) override;
    void OnKeyUsed(std::string_view code, KeyPhase phase) override;
    void OnPhoneKeyUsed(PhoneKey key, KeyPhase phase) override;
    void OnAllLifted() override;

    // BlockWatcher
    void OnBlockHeard(const Block& block) override;

private:
    struct Line {
        Microseconds time = 0;  ///< since the start
        PerformanceAction action;
    };
    using Key = std::variant<PhoneKey, std::string>;

    [[nodiscard]] Microseconds Now() const { return loop_.Now() - start_; }
    void KeepKey(Key key, KeyPhase phase);
    /// The number that a new finger gets in the file; there is a free one.
    [[nodiscard]] int NumberFor(const FingerId& finger) const;
    void LiftFinger(int number);
    /// Behind all lines that are not later.
    void Add(Microseconds time, PerformanceAction action);
    void WriteUntil(Microseconds time);
    void WriteOnTimer();
    void Append(const std::string& text);

    EventLoop& loop_;
    Console& console_;
    std::unique_ptr<OutputFile> file_;  ///< null once it is closed
    std::string path_;
    bool hasStarted_ = false;
    Microseconds start_ = 0;
    Microseconds written_ = 0;         ///< the last line's time
    std::vector<Line> lines_;          ///< not written yet, in the order of their times
    std::map<FingerId, int> fingers_;  ///< the numbers of those that are down
    std::vector<Key> keys_;            ///< those that are down
    std::uint8_t peak_;
    TimerQueue::Id timer_ = TimerQueue::kNone;
};

}  // namespace host
