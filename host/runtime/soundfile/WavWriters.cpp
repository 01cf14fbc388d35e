// The one format that needs no library: what a page has.

#include <utility>

#include "runtime/soundfile/SoundWriter.h"
#include "runtime/soundfile/WavWriter.h"

namespace host {

bool CanWrite(SoundFormat format) {
    return format == SoundFormat::kWav;
}

std::string_view SoundEndings() {
    return ".wav";
}

std::unique_ptr<SoundWriter> CreateSoundWriter(SoundFormat /*format*/, std::unique_ptr<OutputFile> file, int rate) {
    return std::make_unique<WavWriter>(std::move(file), rate);
}

}  // namespace host
