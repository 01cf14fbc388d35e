#include "runtime/sound/ToneComments.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "runtime/package/Values.h"

namespace host {

namespace {

constexpr std::size_t kMostTakes = 16;
constexpr double kLongestReleaseSeconds = 5;
// What a tone can be; a period of the lowest one is some 2000 frames.
constexpr double kLowestHz = 20;
constexpr double kHighestHz = 5000;

std::optional<std::uint32_t> ParseFrames(std::string_view text, std::int64_t most) {
    const auto number = ParseNumber(text);
    if (!number || *number < 0 || *number > static_cast<double>(most) || *number != std::floor(*number)) return {};
    return static_cast<std::uint32_t>(*number);
}

bool Assign(std::uint32_t& frames, std::string_view text, std::int64_t most) {
    const auto number = ParseFrames(text, most);
    frames = number.value_or(0);
    return number.has_value();
}

bool AssignTakes(std::vector<std::uint32_t>& takes, std::string_view text, std::int64_t most) {
    const auto numbers = ParseNumbers(text);
    if (!numbers || numbers->size() >= kMostTakes) return false;
    takes.clear();
    for (const double number : *numbers) {
        if (number < 0 || number > static_cast<double>(most) || number != std::floor(number)) return false;
        takes.push_back(static_cast<std::uint32_t>(number));
    }
    return true;
}

bool AssignWithin(std::optional<double>& value, std::string_view text, double least, double most) {
    value = ParseNumber(text);
    return value && *value >= least && *value <= most;
}

// False when the comment cannot be true of any recording of `frames`.
bool TakeComment(ToneComments& tone, std::string_view name, std::string_view value, std::int64_t frames) {
    if (name == "LOOPSTART") return Assign(tone.loopStart, value, frames - 1);
    if (name == "LOOPLENGTH") return Assign(tone.loopLength, value, frames) && tone.loopLength > 0;
    if (name == "TAKES") return AssignTakes(tone.takes, value, frames);
    if (name == "RELEASE") return AssignWithin(tone.releaseSeconds, value, 0, kLongestReleaseSeconds);
    if (name == "PITCH") return AssignWithin(tone.pitchHz, value, kLowestHz, kHighestHz);
    return true;
}

// The decoder reads the file once, from its beginning to its end.
bool AreTakesInOrder(const ToneComments& tone, std::int64_t frames) {
    std::int64_t end = std::int64_t{tone.loopStart} + tone.loopLength;
    for (const std::uint32_t take : tone.takes) {
        if (take < end) return false;
        end = std::int64_t{take} + tone.loopStart;
    }
    return end <= frames && (tone.takes.empty() || tone.loopStart > 0);
}

}  // namespace

ToneComments ReadToneComments(const std::vector<std::string>& comments, std::int64_t frames, std::string& fault) {
    ToneComments nothing;
    nothing.loopLength = static_cast<std::uint32_t>(frames);
    ToneComments tone;
    for (const std::string& comment : comments) {
        const std::size_t equals = std::min(comment.find('='), comment.size());
        const std::string_view name = std::string_view(comment).substr(0, equals);
        const std::string_view value = std::string_view(comment).substr(std::min(equals + 1, comment.size()));
        if (TakeComment(tone, name, value, frames)) continue;
        fault = "its comment " + comment + " makes no sense";
        return nothing;
    }
    if (tone.loopLength == 0) tone.loopLength = static_cast<std::uint32_t>(frames) - tone.loopStart;
    if (AreTakesInOrder(tone, frames)) return tone;
    fault = "its comments LOOPSTART, LOOPLENGTH and TAKES do not fit its length";
    return nothing;
}

}  // namespace host
