#include "launcher/page/PageOptions.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "runtime/package/Values.h"

namespace host {

namespace {

bool SetScreen(Options& options, const std::string& text) {
    const auto screen = ParseScreen(text);
    if (screen) options.screen = *screen;
    return screen.has_value();
}

bool SetVolume(Options& options, const std::string& text) {
    const auto volume = ParseWhole(text, 0, kLoudestRingtone);
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
