// The formats of a machine that has libsndfile and libvorbis.

#include <utility>

#include "runtime/soundfile/FlacWriter.h"
#include "runtime/soundfile/SoundWriter.h"
#include "runtime/soundfile/VorbisWriter.h"
#include "runtime/soundfile/WavWriter.h"

namespace host {

bool CanWrite(SoundFormat /*format*/) {
    return true;
}

std::string_view SoundEndings() {
    return ".wav, .flac or .ogg";
}

std::unique_ptr<SoundWriter> CreateSoundWriter(SoundFormat format, std::unique_ptr<OutputFile> file, int rate) {
    switch (format) {
        case SoundFormat::kFlac:
            return std::make_unique<FlacWriter>(std::move(file), rate);
        case SoundFormat::kOggVorbis:
            return std::make_unique<VorbisWriter>(std::move(file), rate);
        case SoundFormat::kWav:
            break;
    }
    return std::make_unique<WavWriter>(std::move(file), rate);
}

}  // namespace host
