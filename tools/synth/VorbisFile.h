#pragma once

#include "Loop.h"

#include <cstdint>
#include <string>

namespace synth {

// Writes a loop as a mono Ogg Vorbis file that is the same to the byte whenever it is written.
class VorbisFile {
public:
    // `serial` names the stream inside the file; the encoder would take one from the clock.
    // Returns the step, of full scale, that the encoder has added where the end meets the beginning: it cannot know
    // that the sound goes on, so its errors on the two sides have nothing to do with each other. Throws
    // std::runtime_error, naming the file, when it cannot be written, or does not decode to as many frames.
    static double Write(const std::string& path, const Loop& loop, std::uint32_t serial);
};

}  // namespace synth
