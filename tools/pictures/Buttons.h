#pragma once

#include <string>

namespace pictures {

/// The four frames of the menu button, normal and pressed.
void DrawMenuFrames(const std::string& folder);
/// The help and the setup button, normal and pressed.
void DrawMenuButtons(const std::string& folder);
/// The pencil on the setup screen's colour swatches.
void DrawEditSign(const std::string& folder);

}  // namespace pictures
