#pragma once

#include <stdexcept>

#include "Tizen/Base/String.h"
#include "Tizen/Media/IPlayerEventListener.h"
#include "Tizen/Media/Player.h"

/// A player as the ocarina has it, without the ocarina. UI thread only.
class PlayerForBench final : private Tizen::Media::IPlayerEventListener {
public:
    PlayerForBench() { player_.Construct(*this); }

    /// The change of a note, as the ocarina makes it.
    void Change(const Tizen::Base::String& path) {
        constexpr int kVolume = 80;
        player_.Stop();
        player_.Close();
        if (player_.OpenFile(path, false) != E_SUCCESS) throw std::runtime_error(path.ToUtf8() + " does not open");
        player_.SetVolume(kVolume);
        player_.Play();
    }
    void End() {
        player_.Stop();
        player_.Close();
    }

private:
    void OnPlayerOpened(result) override {}
    void OnPlayerEndOfClip() override {}
    void OnPlayerSeekCompleted(result) override {}
    void OnPlayerBuffering(int) override {}
    void OnPlayerErrorOccurred(Tizen::Media::PlayerErrorReason) override {}
    void OnPlayerInterrupted() override {}
    void OnPlayerReleased() override {}

    Tizen::Media::Player player_;
};
