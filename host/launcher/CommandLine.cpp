#include "launcher/CommandLine.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <string_view>

namespace host {

namespace {

constexpr int kSmallestScreenSide = 120;
constexpr int kLargestScreenSide = 8192;

// WxH, both within what a phone or a tablet may have.
std::optional<PixelSize> ParseScreen(std::string_view text) {
    PixelSize size;
    const char* const end = text.data() + text.size();
    const auto width = std::from_chars(text.data(), end, size.width);
    if (width.ec != std::errc() || width.ptr == end || *width.ptr != 'x') return std::nullopt;
    const auto height = std::from_chars(width.ptr + 1, end, size.height);
    if (height.ec != std::errc() || height.ptr != end) return std::nullopt;
    const auto isFit = [](int side) { return side >= kSmallestScreenSide && side <= kLargestScreenSide; };
    if (!isFit(size.width) || !isFit(size.height)) return std::nullopt;
    return size;
}

// CLI11 explains over several lines at times; the launcher says one.
std::string OneLine(std::string text) {
    while (!text.empty() && text.back() == '\n') text.pop_back();
    for (char& character : text) {
        if (character == '\n') character = ' ';
    }
    return text;
}

}  // namespace

CommandLine ReadCommandLine(int argc, const char* const* argv, const std::vector<std::string>& backends) {
    CommandLine line;
    Options& options = line.options;
    CLI::App parser("Brevant, a four-hole ocarina: cover the holes, blow into the microphone.", "brevant");
    parser.set_version_flag("--version", std::string("brevant ") + BREVANT_VERSION, "Print the version");
    parser.set_help_flag("-h,--help", "Print this help");

    parser
        .add_option("--backend", options.backend, "What to run on; desktop where a display is reachable, else headless")
        ->check(CLI::IsMember(backends));
    std::string screen;
    parser.add_option("--screen", screen, "The phone's screen in its own pixels; 720x1280")
        ->type_name("WxH")
        ->check([&options](const std::string& text) {
            const auto size = ParseScreen(text);
            if (!size) {
                return '"' + text + "\" is no screen size such as 720x1280 with sides from " +
                       std::to_string(kSmallestScreenSide) + " to " + std::to_string(kLargestScreenSide);
            }
            options.screen = *size;
            return std::string();
        });
    parser.add_option("--data", options.dataFolder, "The data folder; $XDG_DATA_HOME/brevant/")->type_name("DIR");
    parser.add_option("--performance", options.performance, "Play the touches, keys and breath of a performance file")
        ->type_name("FILE");
    parser.add_option("--breath", options.breath, "What the microphone hears once it is started, then silence")
        ->type_name("FILE.wav");
    parser.add_option("--record", options.record, "Write what the speaker plays")->type_name("FILE.wav");
    parser
        .add_option("--keep-performance", options.keepPerformance,
                    "Write what the player does as a performance file that gives the same tones again")
        ->type_name("FILE");
    parser.add_option("--screenshots", options.screenshots, "Where screenshots go")->type_name("DIR");
    parser.add_option("--trace", options.trace, "Write one JSON object a line for each thing that happens")
        ->type_name("FILE");
    parser.add_flag("--trace-timers", options.hasTraceTimers, "Timers too");
    parser.add_option("--ringtone-volume", options.ringtoneVolume, "The phone's ringtone volume, 0 to 15; 11")
        ->type_name("N")
        ->check(CLI::Range(0, kLoudestRingtone));
    parser.add_option("--language", options.language, "The language of the texts; from the locale by default")
        ->type_name("xx");
    std::vector<std::string> rest;
    parser.add_option("arguments", rest, "Handed on to the application")->type_name("");

    try {
        parser.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        line.kind = CommandLine::Kind::kShow;
        line.text = parser.help();
    } catch (const CLI::CallForVersion& version) {
        line.kind = CommandLine::Kind::kShow;
        line.text = std::string(version.what()) + '\n';
    } catch (const CLI::ParseError& error) {
        line.kind = CommandLine::Kind::kRefuse;
        line.text = OneLine(error.what());
    }
    options.rest.emplace_back(argc > 0 ? argv[0] : "brevant");
    options.rest.insert(options.rest.end(), rest.begin(), rest.end());
    return line;
}

}  // namespace host
