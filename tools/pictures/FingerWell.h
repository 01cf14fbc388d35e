#pragma once

#include <string>

namespace pictures {

/// The finger well that lies over each hole of the play screen.
void DrawFingerWell(const std::string& folder);

}  // namespace pictures
