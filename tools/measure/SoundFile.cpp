#include "measure/SoundFile.h"

#include <sndfile.h>

#include <memory>
#include <stdexcept>

namespace measure {

Sound ReadSound(const std::string& path) {
    SF_INFO info{};
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> file(sf_open(path.c_str(), SFM_READ, &info), sf_close);
    if (!file || info.channels != 1) throw std::runtime_error(path + ": it is no sound of one channel");
    Sound sound{std::vector<float>(static_cast<std::size_t>(info.frames)), info.samplerate};
    if (sf_readf_float(file.get(), sound.samples.data(), info.frames) != info.frames) {
        throw std::runtime_error(path + ": it does not decode to its end");
    }
    return sound;
}

}  // namespace measure
