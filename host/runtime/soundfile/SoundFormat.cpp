#include "runtime/soundfile/SoundWriter.h"

#include <array>
#include <cstddef>
#include <string>

namespace host {

std::optional<SoundFormat> SoundFormatOf(std::string_view path) {
    const std::string_view name = path.substr(path.find_last_of('/') + 1);
    const std::size_t point = name.find_last_of('.');
    if (point == std::string_view::npos) return SoundFormat::kWav;
    std::string ending(name.substr(point + 1));
    // Not std::tolower, which follows the locale.
    for (char& letter : ending) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    struct Known {
        std::string_view ending;
        SoundFormat format;
    };
    constexpr std::array<Known, 4> kKnown{{{"wav", SoundFormat::kWav},
                                           {"flac", SoundFormat::kFlac},
                                           {"ogg", SoundFormat::kOggVorbis},
                                           {"oga", SoundFormat::kOggVorbis}}};
    for (const Known& known : kKnown) {
        if (known.ending == ending && CanWrite(known.format)) return known.format;
    }
    return std::nullopt;
}

}  // namespace host
