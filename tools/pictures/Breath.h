#pragma once

#include <string>

namespace pictures {

/// The breath meter's sixteen steps and the sign beside it.
void DrawBreathMeter(const std::string& folder);
/// The hint of the first start: blow here.
void DrawBlowHint(const std::string& folder);

}  // namespace pictures
