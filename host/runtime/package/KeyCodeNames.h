#pragma once

#include <string_view>

namespace host {

/// Whether `code` names a key's position as the W3C's "UI Events KeyboardEvent code Values" does (KeyR, Space, Escape).
/// Any thread.
[[nodiscard]] bool IsKeyCode(std::string_view code) noexcept;

}  // namespace host
