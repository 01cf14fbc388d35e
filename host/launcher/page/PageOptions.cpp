#include "launcher/page/PageOptions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>

namespace host {

namespace {

constexpr int kSmallestScreenSide = 120;
constexpr int kLargestScreenSide = 8192;

std::optional<int> ParseNumber(std::string_view text, int least, int most) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < least || number > most) return {};
    return number;
}

bool SetScreen(Options& options, const std::string& text) {
    const std::size_t cross = std::min(text.find('x'), text.size());
    const auto width = ParseNumber(std::string_view(text).substr(0, cross), kSmallestScreenSide, kLargestScreenSide);
    const auto height = cross == text.size() ? std::nullopt
                                             : ParseNumber(std::string_view(text).substr(cross + 1),
                                                           kSmallestScreenSide, kLargestScreenSide);
    if (!width || !height) return false;
    options.screen = {*width, *height};
    return true;
}

bool SetVolume(Options& options, const std::string& text) {
    const auto volume = ParseNumber(text, 0, kLoudestRingtone);
    if (volume) options.ringtoneVolume = *volume;
    return volume.has_value();
}

/// True when the value is one.
using Setter = bool (*)(Options& options, const std::string& value);
template <std::optional<std::string> Options::*kMember>
bool SetText(Options& options, const std::string& value) {
    options.*kMember = value;
    return !value.empty();
}

struct Entry {
    std::string_view name;
    Setter set;
};
constexpr std::array kEntries = std::to_array<Entry>({
    {"--backend", SetText<&Options::backend>},
    {"--screen", SetScreen},
    {"--language", SetText<&Options::language>},
    {"--ringtone-volume", SetVolume},
    {"--breath", SetText<&Options::breath>},
    {"--performance", SetText<&Options::performance>},
    {"--keep-performance", SetText<&Options::keepPerformance>},
    {"--record", SetText<&Options::record>},
    {"--trace", SetText<&Options::trace>},
});

}  // namespace

PageOptions ReadPageOptions(const std::vector<std::string>& arguments) {
    PageOptions page;
    for (const std::string& argument : arguments) {
        if (argument == "--no-microphone" || argument == "--trace-timers") {
            (argument == "--no-microphone" ? page.options.usesMicrophone : page.options.hasTraceTimers) =
                argument == "--trace-timers";
            continue;
        }
        const std::size_t equals = std::min(argument.find('='), argument.size());
        const std::string_view name = std::string_view(argument).substr(0, equals);
        const Entry* found = nullptr;
        for (const Entry& entry : kEntries) {
            if (entry.name == name) found = &entry;
        }
        if (found == nullptr) {
            page.problem = argument + ": there is no such option";
        } else if (equals == argument.size() || !found->set(page.options, argument.substr(equals + 1))) {
            page.problem = argument + ": that is no value for it";
        }
        if (!page.problem.empty()) break;
    }
    return page;
}

}  // namespace host
