#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// What a recording's comments say of its tone. LOOPSTART and LOOPLENGTH are the names that other players of loops
/// know, too; both are counted in frames of the file. The rest is the project's own.
struct ToneComments {
    std::uint32_t loopStart = 0;           ///< LOOPSTART: where the sustained part begins
    std::uint32_t loopLength = 0;          ///< LOOPLENGTH: the frame behind it is heard like the one at `loopStart`
    std::vector<std::uint32_t> takes;      ///< TAKES=a,b: where further beginnings start, each `loopStart` frames long
    std::optional<double> releaseSeconds;  ///< RELEASE: from 90 to 10 % of the level when the tone ends
    std::optional<double> pitchHz;         ///< PITCH: of the sustained part
};

/// Reads "NAME=value" comments of a recording of `frames`; what is not said is a loop over the whole recording, without
/// release and pitch. Comments of other names are nobody's concern here. When one of them cannot be true, nothing
/// counts as said, and `fault` names it ("its comment PITCH=abc makes no sense").
[[nodiscard]] ToneComments ReadToneComments(const std::vector<std::string>& comments, std::int64_t frames,
                                            std::string& fault);

}  // namespace host
