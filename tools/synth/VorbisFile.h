#pragma once

#include "Loop.h"

#include <string>
#include <vector>

namespace synth {

// Writes a sound as a mono Ogg Vorbis file that is the same to the byte whenever it is written.
class VorbisFile {
public:
    // `serial` names the stream inside the file. The comments are "NAME=value" each. Throws std::runtime_error, naming
    // the file, when it cannot be written.
    static void Write(const std::string& path, const Loop& sound, const std::vector<std::string>& comments, int serial);
};

}  // namespace synth
