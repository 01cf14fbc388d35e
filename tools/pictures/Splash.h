#pragma once

#include <string>

namespace pictures {

/// The intro: the ocarina and its name.
void DrawSplash(const std::string& folder);

}  // namespace pictures
