#pragma once

#include "runtime/soundfile/Framing.h"

namespace host {

/// ExamineFraming for a file that begins like an Ogg one.
[[nodiscard]] Framing ExamineOggFraming(ByteSource& source);

}  // namespace host
