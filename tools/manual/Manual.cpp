// Writes what a system shows of the program's options: the manual page and the completions of bash, zsh and fish, into
// the folder of the first argument.

#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "launcher/CommandLine.h"
#include "launcher/Launcher.h"

namespace {

using Options = std::vector<host::OptionDescription>;

Options EveryOption() {
    return host::DescribeOptions(host::BackendNames());
}

enum class Wanted { kNothing, kName, kFile, kFolder, kOther };

Wanted WantedBy(const host::OptionDescription& option) {
    if (option.value.empty()) return Wanted::kNothing;
    if (option.value == "FILE") return Wanted::kFile;
    if (option.value == "DIR") return Wanted::kFolder;
    return option.value == "NAME" ? Wanted::kName : Wanted::kOther;
}

// One text of all of them.
std::string Text(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) text += part;
    return text;
}

void AddTo(std::string& list, std::string_view word, char separator) {
    if (!list.empty()) list += separator;
    list += word;
}

std::string Joined(const std::vector<std::string>& words) {
    std::string joined;
    for (const std::string& word : words) AddTo(joined, word, ' ');
    return joined;
}

std::string Replaced(std::string_view text, char from, std::string_view to) {
    std::string replaced;
    for (const char each : text) each == from ? replaced += to : replaced += each;
    return replaced;
}

// A dash that is typed, and a dot that begins no request (groff_man(7)).
std::string Roff(const std::string& text) {
    const std::string escaped = Replaced(Replaced(text, '\\', "\\e"), '-', "\\-");
    return escaped.front() == '.' ? Text({"\\&", escaped}) : escaped;
}

std::string ManualPage() {
    std::string page = ".TH BREVANT 1 \"\" \"brevant " BREVANT_RELEASE
                       "\" \"User Commands\"\n"
                       ".SH NAME\nbrevant \\- a four\\-hole ocarina to blow into\n"
                       ".SH SYNOPSIS\n.B brevant\n.RI [ option \\ ...]\n"
                       ".SH DESCRIPTION\n"
                       "Cover the holes with fingers, with the mouse or with keys, and blow into the microphone: a "
                       "clay ocarina sounds.\n"
                       "The help page of the program shows the sixteen fingerings.\n"
                       ".SH OPTIONS\n";
    for (const host::OptionDescription& option : EveryOption()) {
        page += Text({".TP\n.B ", Roff(option.name)});
        if (!option.value.empty()) page += Text({"\\fR \\fI", Roff(option.value)});
        page += Text({"\n", Roff(option.text), ".\n"});
    }
    return page +
           ".SH KEYS\n"
           ".TP\n.B R U F J\nCover the upper left, upper right, lower left and lower right hole.\n"
           ".TP\n.B Space\nBlows.\n"
           ".TP\n.B Escape\nThe phone's Back key: closes a page, and on the play screen the program.\n"
           ".TP\n.B Page Up, Page Down\nThe phone's volume keys.\n"
           ".TP\n.B Tab, Enter\nGo from button to button, and press one.\n"
           ".TP\n.B F9\nBegins a recording in the user's music folder, as FLAC, or ends it.\n"
           ".TP\n.B F11\nFull screen, or the window again.\n"
           ".SH FILES\n"
           ".TP\n.I $XDG_DATA_HOME/brevant/\nThe settings; ~/.local/share/brevant/ where that is not set.\n"
           ".TP\n.I $XDG_MUSIC_DIR\nThe recordings of F9, named by date and time; as user\\-dirs.dirs has it, or "
           "~/Music, "
           "where that is not set.\n"
           ".SH EXIT STATUS\n"
           ".TP\n.B 0\nAll is well.\n"
           ".TP\n.B 1\nSomething that was asked for got lost on the way: a full disk under a recording.\n"
           ".TP\n.B 2\nThe options, or a file that they name, cannot be used; nothing was started.\n"
           ".TP\n.B 3\nNo display can be reached.\n"
           ".SH EXAMPLES\n"
           ".TP\n.B brevant \\-\\-no\\-microphone\nPlay with the keyboard alone.\n"
           ".TP\n.B brevant \\-\\-record take.wav \\-\\-keep\\-performance take.performance\n"
           "Keep what is played, as sound and as what was done.\n"
           ".TP\n.B brevant \\-\\-backend headless \\-\\-performance take.performance \\-\\-record again.wav\n"
           "Render it again, far faster than it sounds.\n";
}

std::string BashCompletion() {
    std::string files;
    std::string folders;
    std::string others;
    std::string names;
    for (const host::OptionDescription& option : EveryOption()) {
        AddTo(names, option.name, ' ');
        if (WantedBy(option) == Wanted::kFile) AddTo(files, option.name, '|');
        if (WantedBy(option) == Wanted::kFolder) AddTo(folders, option.name, '|');
        if (WantedBy(option) == Wanted::kOther) AddTo(others, option.name, '|');
    }
    const auto completed = [](std::string_view cases, std::string_view how) {
        return Text({"        ", cases,
                     ")\n            compopt -o filenames\n            mapfile -t COMPREPLY < <(compgen ", how,
                     " -- \"$current\")\n            ;;\n"});
    };
    const std::string backends = Joined(host::BackendNames());
    return Text({R"(# bash completion of brevant
_brevant() {
    local current=$2 previous=$3
    case $previous in
        --backend) mapfile -t COMPREPLY < <(compgen -W ")",
                 backends, R"(" -- "$current") ;;
)",
                 completed(files, "-f"), completed(folders, "-d"), "        ", others, R"() ;;
        *) mapfile -t COMPREPLY < <(compgen -W ")",
                 names, R"(" -- "$current") ;;
    esac
}
complete -F _brevant brevant
)"});
}

std::string ZshCompletion() {
    std::string text = "#compdef brevant\n\n_arguments \\\n";
    const Options options = EveryOption();
    for (const host::OptionDescription& option : options) {
        // A quote ends the word, and a colon the text, in zsh's own notation (zshcompsys(1)).
        const std::string told = Replaced(Replaced(option.text, '\'', "'\\''"), ':', "\\:");
        text += Text({"    '", option.name, "[", told, "]"});
        if (WantedBy(option) == Wanted::kName) text += Text({":name:(", Joined(host::BackendNames()), ")"});
        if (WantedBy(option) == Wanted::kFile) text += ":file:_files";
        if (WantedBy(option) == Wanted::kFolder) text += ":folder:_files -/";
        if (WantedBy(option) == Wanted::kOther) text += Text({":", option.value, ": "});
        text += &option == &options.back() ? "'\n" : "' \\\n";
    }
    return text;
}

std::string FishCompletion() {
    std::string text = "# fish completion of brevant\ncomplete -c brevant -f\n";
    for (const host::OptionDescription& option : EveryOption()) {
        text +=
            Text({"complete -c brevant -l ", option.name.substr(2), " -d '", Replaced(option.text, '\'', "\\'"), "'"});
        if (WantedBy(option) == Wanted::kName) text += Text({" -x -a '", Joined(host::BackendNames()), "'"});
        if (WantedBy(option) == Wanted::kFile) text += " -r -F";
        if (WantedBy(option) == Wanted::kFolder) text += " -x -a '(__fish_complete_directories)'";
        if (WantedBy(option) == Wanted::kOther) text += " -x";
        text += '\n';
    }
    return text;
}

bool Write(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (file) return true;
    std::fprintf(stderr, "brevant_manual: %s cannot be written\n", path.c_str());
    return false;
}

}  // namespace

int main(int argc, char* argv[]) {
    if (argc != 2) {
        std::fputs("usage: brevant_manual FOLDER\n", stderr);
        return 2;
    }
    const std::string folder = std::string(argv[1]) + '/';
    const bool isWritten = Write(folder + "brevant.1", ManualPage()) &&
                           Write(folder + "completions/brevant.bash", BashCompletion()) &&
                           Write(folder + "completions/_brevant", ZshCompletion()) &&
                           Write(folder + "completions/brevant.fish", FishCompletion());
    return isWritten ? 0 : 1;
}
