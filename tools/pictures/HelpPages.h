#pragma once

#include <string>

namespace pictures {

/// The help page's pictures: how to hold and blow, and the sixteen fingerings by pitch, from the ocarina's own table.
void DrawHelpPages(const std::string& folder);

}  // namespace pictures
