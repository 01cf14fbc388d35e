#pragma once

#include <string_view>

#include "backend/desktop/SdlLibrary.h"

namespace host {

/// The W3C's name of the key at a position ("UI Events KeyboardEvent code Values"); empty for one that has none.
[[nodiscard]] std::string_view KeyCodeOf(SDL_Scancode scancode);

}  // namespace host
