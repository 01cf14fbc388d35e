// Any words on the command line are understood or refused in one line.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Require.h"
#include "launcher/CommandLine.h"

// One word a line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<const char*> words = {"brevant"};
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        words.push_back(text.data() + begin);
        if (end < text.size()) text[end] = '\0';
        begin = end + 1;
    }
    const host::CommandLine line =
        host::ReadCommandLine(static_cast<int>(words.size()), words.data(), {"desktop", "headless"}, "brevant 0");
    if (line.kind != host::CommandLine::Kind::kRun) {
        Require(!line.text.empty(), "what is shown or refused has words");
        const bool isOneLine = line.text.find('\n') == std::string::npos;
        Require(line.kind == host::CommandLine::Kind::kShow || isOneLine, "a refusal is one line");
        return 0;
    }
    const host::Options& options = line.options;
    const auto isFit = [](int side) { return side >= 120 && side <= 8192; };
    Require(isFit(options.screen.width) && isFit(options.screen.height), "a screen has a screen's size");
    Require(options.ringtoneVolume >= 0 && options.ringtoneVolume <= host::kLoudestRingtone, "a volume is a volume");
    Require(!options.backend || *options.backend == "desktop" || *options.backend == "headless",
            "a back end is one that there is");
    return 0;
}
