#pragma once

#include <string>
#include <vector>

namespace measure {

struct Sound {
    std::vector<float> samples;  ///< full scale at 1
    int rate = 0;                ///< frames a second
};

/// Decodes a whole mono file. Throws std::runtime_error, naming the file, if it cannot.
Sound ReadSound(const std::string& path);

}  // namespace measure
