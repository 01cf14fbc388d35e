#pragma once

#include <string>
#include <string_view>

#include "backend/Storage.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/package/Package.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/BoxNode.h"
#include "runtime/sound/Sound.h"

namespace host {

/// What the host itself tells the player, on a plate of its own over whatever the application shows: the keys that
/// play, a microphone that hears nothing, a missing speaker, the volume, and what becomes of a take, with a mark while
/// it runs. It takes no touches. UI thread only.
class Notices final : private SoundWatcher {
public:
    /// Everything must outlive it.
    Notices(Screen& screen, Sound& sound, EventLoop& loop, const Package& package, Storage& storage);
    ~Notices();
    Notices(const Notices&) = delete;
    Notices& operator=(const Notices&) = delete;

    /// From now on the keys are named once nobody has done anything for 5 s on a screen that keys play on. The first
    /// finger or key takes that away for this run, a tone for ever.
    void OfferKeys();
    /// Notes in the data folder what need not be told again. A note that cannot be written is told again.
    void Save();

private:
    // SoundWatcher
    void OnTone() override;
    void OnRingtoneVolume(int volume) override;
    void OnMicrophoneSilent() override;
    void OnMicrophoneGone() override;
    void OnMicrophoneGoneNoMore() override;
    void OnSpeakerGone() override;
    void OnSpeakerGoneNoMore() override;
    void OnTakeStarted() override;
    void OnTakeEnded(const std::string& name) override;
    void OnTakeLost(const std::string& folder) override;

    void OnUse();
    void WatchForKeys();
    void DropKeys();
    /// Only the first of the two things that can be wrong with a microphone is told, and once.
    void TellOfMicrophone(std::string_view textId);
    void TellOfTake(std::string text);
    /// Shows what there is to show: the volume before anything else, then what became of a take.
    void Update();
    [[nodiscard]] std::string TextOf(std::string_view id) const;

    Screen& screen_;
    Sound& sound_;
    EventLoop& loop_;
    const Package& package_;
    Storage& storage_;
    Node overlay_;  ///< holds the others
    BoxNode plate_;
    BoxNode mark_;            ///< shows while a take runs
    std::string volume_;      ///< empty when it does not show
    std::string take_;        ///< likewise
    std::string microphone_;  ///< likewise
    std::string speaker_;     ///< likewise
    std::string keys_;        ///< likewise
    bool isMicrophoneTold_ = false;
    bool hasPlayed_ = false;       ///< a tone has sounded, now or in an earlier run
    bool isPlayingNoted_ = false;  ///< in the data folder
    int idleChecks_ = 0;
    TimerQueue::Id volumeTimer_ = TimerQueue::kNone;
    TimerQueue::Id takeTimer_ = TimerQueue::kNone;
    TimerQueue::Id microphoneTimer_ = TimerQueue::kNone;
    TimerQueue::Id goneTimer_ = TimerQueue::kNone;
    TimerQueue::Id speakerTimer_ = TimerQueue::kNone;
    TimerQueue::Id keysTimer_ = TimerQueue::kNone;
};

}  // namespace host
