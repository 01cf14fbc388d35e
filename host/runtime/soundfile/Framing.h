#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "runtime/soundfile/ByteSource.h"

namespace host {

/// What the structure of a sound file tells without decoding it.
struct Framing {
    std::string_view fault;  ///< what is wrong with the file; empty when nothing is
    /// True when the structure proves that the file decodes to the end that it promises. A file without that proof and
    /// without a fault must be decoded to know.
    bool isProof = false;
    std::vector<std::string> comments{};  ///< "NAME=value", as an Ogg file has them
};

/// Looks at the structure of a WAV or Ogg Vorbis file: a decoder takes a file whose end is missing, or that has a
/// damaged place, for a shorter one. Other kinds of files are a fault.
[[nodiscard]] Framing ExamineFraming(ByteSource& source);

}  // namespace host
