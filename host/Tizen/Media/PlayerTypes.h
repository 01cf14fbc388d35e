#pragma once

namespace Tizen {
namespace Media {

/// What a player is doing. The numbers are fixed: applications compare with them. This phone's players open at once, do
/// not pause, and do not fail once they are open: OPENING, PAUSED and ERROR are never theirs.
enum PlayerState {
    PLAYER_STATE_INITIALIZED = 0,  ///< no file is open
    PLAYER_STATE_OPENING = 1,
    PLAYER_STATE_OPENED = 2,
    PLAYER_STATE_ENDOFCLIP = 3,  ///< the end of the recording has been reported; nothing was asked for since
    PLAYER_STATE_STOPPED = 4,
    PLAYER_STATE_PAUSED = 5,
    PLAYER_STATE_PLAYING = 6,
    PLAYER_STATE_CLOSED = 7,
    PLAYER_STATE_ERROR = 8
};

/// Why a player failed by itself.
enum PlayerErrorReason {
    PLAYER_ERROR_NONE = 0,
    PLAYER_ERROR_FAILED = 1,
    PLAYER_ERROR_DEVICE_UNAVAILABLE = 2,
    PLAYER_ERROR_UNSUPPORTED_FORMAT = 3
};

}  // namespace Media
}  // namespace Tizen
