#include "launcher/CommandLine.h"

#include <CLI/CLI.hpp>

namespace host {

namespace {

// CLI11 explains over several lines at times; the launcher says one.
std::string OneLine(std::string text) {
    while (!text.empty() && text.back() == '\n') text.pop_back();
    for (char& character : text) {
        if (character == '\n') character = ' ';
    }
    return text;
}

// Adds every option to the parser; what is parsed goes to `options`, which must outlive it, as must `rest`.
void AddOptions(CLI::App& parser, const std::vector<std::string>& backends, Options& options,
                std::vector<std::string>& rest, const std::string& version) {
    parser.set_help_flag("-h,--help", "Print this help");
    parser.set_version_flag("--version", version, "Print the version, and what it stands on");
    parser.add_option("--backend", options.backend, "desktop or headless; desktop on a display")
        ->type_name("NAME")
        ->check(CLI::IsMember(backends).description(""));
    parser
        .add_option_function<std::string>(
            "--screen", [&options](const std::string& text) { options.screen = *ParseScreen(text); },
            "The phone's screen in its own pixels; 720x1280")
        ->type_name("WxH")
        ->check([](const std::string& text) {
            if (ParseScreen(text)) return std::string();
            return '"' + text + "\" is no screen size such as 720x1280 with sides from " +
                   std::to_string(kSmallestScreenSide) + " to " + std::to_string(kLargestScreenSide);
        });
    parser.add_option("--language", options.language, "The language of the texts; the locale's")->type_name("xx");
    parser.add_option("--ringtone-volume", options.ringtoneVolume, "The phone's ringtone volume, 0 to 15; 11")
        ->type_name("N")
        ->check(CLI::Range(0, kLoudestRingtone).description(""));
    parser.add_option("--data", options.dataFolder, "The settings' folder; $XDG_DATA_HOME/brevant")->type_name("DIR");
    parser.add_flag_callback(
        "--no-microphone", [&options] { options.usesMicrophone = false; },
        "Leave the microphone alone; the space bar blows");
    parser.add_option("--breath", options.breath, "A sound that the microphone hears, then silence")->type_name("FILE");
    parser.add_option("--performance", options.performance, "Play a performance's touches, keys and breath")
        ->type_name("FILE");
    parser.add_option("--keep-performance", options.keepPerformance, "Write what is done as a performance")
        ->type_name("FILE");
    parser.add_option("--record", options.record, "Write what the speaker plays: .wav, .flac, .ogg")->type_name("FILE");
    parser.add_flag("--midi", options.hasMidi, "Send tones and breath to a MIDI sequencer port");
    parser.add_option("--midi-file", options.midiFile, "Write tones and breath as a MIDI file")->type_name("FILE");
    parser.add_option("--screenshots", options.screenshots, "Where screenshots go; the working folder")
        ->type_name("DIR");
    parser.add_option("--trace", options.trace, "Write all that happens, a JSON object a line")->type_name("FILE");
    parser.add_flag("--trace-timers", options.hasTraceTimers, "Timers, too");
    parser.add_option("arguments", rest, "Handed on to the application")->type_name("")->group("");
}

}  // namespace

CommandLine ReadCommandLine(int argc, const char* const* argv, const std::vector<std::string>& backends,
                            const std::string& version) {
    CommandLine line;
    Options& options = line.options;
    std::vector<std::string> rest;
    CLI::App parser("Brevant, a four-hole ocarina: cover the holes, blow into the microphone.", "brevant");
    // So that the page fits a terminal of 80 columns.
    constexpr std::size_t kColumnWidth = 28;
    parser.get_formatter()->column_width(kColumnWidth);
    AddOptions(parser, backends, options, rest, version);
    parser.footer("Keys: R U F J cover the holes, Space blows, F9 records, F11 fills the screen.");

    try {
        parser.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        line.kind = CommandLine::Kind::kShow;
        line.text = parser.help();
        // CLI11 leaves two empty lines above the footer, and the page is to fit a terminal of 24 rows with the prompt.
        if (const std::size_t gap = line.text.rfind("\n\n\n"); gap != std::string::npos) line.text.erase(gap, 1);
    } catch (const CLI::CallForVersion& called) {
        line.kind = CommandLine::Kind::kShow;
        line.text = called.what();
    } catch (const CLI::ParseError& error) {
        line.kind = CommandLine::Kind::kRefuse;
        line.text = OneLine(error.what());
    }
    options.rest.emplace_back(argc > 0 ? argv[0] : "brevant");
    options.rest.insert(options.rest.end(), rest.begin(), rest.end());
    return line;
}

std::string OptionsLibraryVersion() {
    return CLI11_VERSION;
}

std::vector<OptionDescription> DescribeOptions(const std::vector<std::string>& backends) {
    Options options;
    std::vector<std::string> rest;
    CLI::App parser;
    AddOptions(parser, backends, options, rest, "");
    std::vector<OptionDescription> descriptions;
    for (const CLI::Option* option : parser.get_options()) {
        const std::string name = option->get_name();
        if (name.rfind("--", 0) != 0) continue;
        const bool takesValue = option->get_items_expected_max() > 0;
        descriptions.push_back({name, takesValue ? option->get_type_name() : "", option->get_description()});
    }
    return descriptions;
}

}  // namespace host
