#pragma once

/// What a child screen reports to the screen that opened it: a user event of this id, without arguments. The owner
/// closes the child when it receives one; a child never closes itself.
inline constexpr long REQUEST_HELP_CLOSED = 731;
inline constexpr long REQUEST_COLOR_CONFIRMED = 733;
inline constexpr long REQUEST_COLOR_CANCELED = 734;
inline constexpr long REQUEST_SETUP_CLOSED = 771;
inline constexpr long REQUEST_SPLASH_DONE = 1001;
