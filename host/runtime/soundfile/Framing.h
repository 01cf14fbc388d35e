#pragma once

#include <string_view>

#include "runtime/soundfile/ByteSource.h"

namespace host {

/// Looks whether a sound file is whole, without decoding it: a decoder takes a file whose end is missing, or that has a
/// damaged place, for a shorter one. Returns what is wrong, or an empty text. Kinds of files other than WAV, FLAC and
/// Ogg Vorbis are wrong too; FLAC is left to its decoder, which checks each of its frames.
[[nodiscard]] std::string_view FindFramingFault(ByteSource& source);

}  // namespace host
