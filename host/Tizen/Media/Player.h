#pragma once

#include <memory>

#include "Tizen/Base/String.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Media/IPlayerEventListener.h"
#include "Tizen/Media/PlayerTypes.h"

namespace Tizen {
namespace Media {

/// Where a video player would paint. This phone plays sound alone: there is none.
class VideoBuffer;

/// Plays one recording at a time from a file. UI thread only. An operation that the player's state does not allow gives
/// E_INVALID_STATE and changes nothing. A player may be deleted at any moment, also in its listener's notification.
class Player {
public:
    Player();
    virtual ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// `listener` must outlive the player. `pBuffer` is null: E_UNSUPPORTED_FORMAT else.
    result Construct(IPlayerEventListener& listener, const VideoBuffer* pBuffer = nullptr);

    /// Opens a recording of at most a minute; allowed while nothing is open, and after an error. E_FILE_NOT_FOUND, or
    /// E_UNSUPPORTED_FORMAT when the file does not decode to its end; the state is as before then. An asynchronous open
    /// is not to be had on this phone: E_INVALID_ARG.
    result OpenFile(const Tizen::Base::String& path, bool isAsync = false);
    /// Ends the sound, if any, and gives the file back.
    result Close();

    /// Plays from the beginning.
    result Play();
    result Stop();

    /// 0 (silent) to 100 (as recorded), in equal steps of amplitude; E_OUT_OF_RANGE else. It holds for later files too.
    result SetVolume(int volume);
    int GetVolume() const;
    PlayerState GetState() const;

private:
    struct Session;

    std::unique_ptr<Session> session_;  ///< null before Construct
};

}  // namespace Media
}  // namespace Tizen
