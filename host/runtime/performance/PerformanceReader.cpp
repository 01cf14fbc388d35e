#include "runtime/performance/PerformanceReader.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "runtime/Options.h"
#include "runtime/package/KeyCodeNames.h"
#include "runtime/package/Values.h"

namespace host {

namespace {

// A performance of hours has some hundred thousand bytes; this only keeps a stray file from being taken for one.
constexpr std::size_t kLargestFile = std::size_t{64} << 20;

constexpr int kLastFinger = 9;
constexpr std::size_t kDecimalsOfMillisecond = 3;
constexpr std::int64_t kLongestMilliseconds = 24LL * 60 * 60 * 1000;

// Thrown within this file alone; Parse turns it into its result.
class Malformed : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::string Quoted(std::string_view word) {
    return '"' + std::string(word) + '"';
}

bool IsBlank(char character) {
    return character == ' ' || character == '\t' || character == '\r';
}

// The words up to the comment. A # begins one wherever the line does not ask for a colour: the fourth word of a pick
// begins with the # of its colour.
std::vector<std::string_view> SplitWords(std::string_view line) {
    constexpr std::size_t kColorOfPick = 3;
    std::vector<std::string_view> words;
    std::size_t position = 0;
    while (position < line.size() && line[position] != '#') {
        if (IsBlank(line[position])) {
            ++position;
            continue;
        }
        const std::size_t begin = position;
        while (position < line.size() && !IsBlank(line[position]) && line[position] != '#') ++position;
        words.push_back(line.substr(begin, position - begin));
        const std::size_t next = std::min(line.find_first_not_of(" \t\r", position), line.size());
        const bool isColor = words.size() == kColorOfPick && words[1] == "pick" && next > position;
        if (!isColor || next == line.size() || line[next] != '#') continue;
        position = next + 1;
        while (position < line.size() && !IsBlank(line[position]) && line[position] != '#') ++position;
        words.push_back(line.substr(next, position - next));
    }
    return words;
}

double NumberWithin(std::string_view word, double lowest, double highest, const char* what) {
    const auto value = ParseNumber(word);
    if (!value || *value < lowest || *value > highest) {
        std::ostringstream reason;
        reason << what << " must be a number from " << lowest << " to " << highest << ", not " << Quoted(word);
        throw Malformed(reason.str());
    }
    return *value;
}

int IntegerWithin(std::string_view word, int lowest, int highest, const char* what) {
    int value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || value < lowest || value > highest) {
        throw Malformed(std::string(what) + " must be a whole number from " + std::to_string(lowest) + " to " +
                        std::to_string(highest) + ", not " + Quoted(word));
    }
    return value;
}

// The peak of a block of silence, and the highest that there is.
constexpr int kSilence = 128;
constexpr int kLoudest = 255;

double Coordinate(std::string_view word) {
    constexpr double kFarthest = 100'000;
    return NumberWithin(word, -kFarthest, kFarthest, "a coordinate");
}

Microseconds ParseTime(std::string_view word) {
    const std::size_t point = word.find('.');
    const std::string_view whole = word.substr(0, point);
    std::int64_t milliseconds = 0;
    const auto [end, error] = std::from_chars(whole.data(), whole.data() + whole.size(), milliseconds);
    bool isGood = error == std::errc() && end == whole.data() + whole.size() && whole.front() != '-' &&
                  milliseconds <= kLongestMilliseconds;
    Microseconds rest = 0;
    if (isGood && point != std::string_view::npos) {
        std::string decimals(word.substr(point + 1));
        isGood = !decimals.empty() && decimals.size() <= kDecimalsOfMillisecond &&
                 decimals.find_first_not_of("0123456789") == std::string::npos;
        decimals.resize(kDecimalsOfMillisecond, '0');
        std::from_chars(decimals.data(), decimals.data() + decimals.size(), rest);
    }
    if (!isGood) throw Malformed("a line begins with a time in milliseconds such as 2600 or +250, not " + Quoted(word));
    return milliseconds * kMicrosecondsPerMillisecond + rest;
}

Rgba Color(std::string_view word) {
    const auto color = ParseColor(word);
    if (!color) throw Malformed("a colour is written #RRGGBB or #RRGGBBAA, not " + Quoted(word));
    return *color;
}

using Words = std::vector<std::string_view>;

PointF OptionalFraction(const Words& words) {
    constexpr std::size_t kFractionX = 2;
    if (words.size() == kFractionX) return {0.5, 0.5};
    if (words.size() != kFractionX + 2)
        throw Malformed(std::string(words[0]) + " takes a control's name and no or two fractions");
    return {NumberWithin(words[kFractionX], 0, 1, "a fraction"),
            NumberWithin(words[kFractionX + 1], 0, 1, "a fraction")};
}

void ExpectWords(const Words& words, std::size_t count, const char* form) {
    if (words.size() != count) throw Malformed(std::string("expected: ") + form);
}

PerformanceAction ParseTouch(const Words& words) {
    constexpr const char* kForm = "touch FINGER down X Y, touch FINGER move X Y or touch FINGER up";
    constexpr std::size_t kWithPosition = 5;
    constexpr std::size_t kWithout = 3;
    if (words.size() < kWithout) throw Malformed(std::string("expected: ") + kForm);
    TouchAction action;
    action.finger = IntegerWithin(words[1], 0, kLastFinger, "a finger");
    if (words[2] == "up") {
        ExpectWords(words, kWithout, kForm);
        action.phase = TouchPhase::kUp;
        return action;
    }
    if (words[2] != "down" && words[2] != "move") throw Malformed(std::string("expected: ") + kForm);
    ExpectWords(words, kWithPosition, kForm);
    action.phase = words[2] == "down" ? TouchPhase::kDown : TouchPhase::kMove;
    action.position = {Coordinate(words[3]), Coordinate(words[4])};
    return action;
}

PerformanceAction ParseKey(const Words& words) {
    constexpr const char* kForm = "key back press, key back release, key CODE press or key CODE release";
    ExpectWords(words, 3, kForm);
    if (words[2] != "press" && words[2] != "release") throw Malformed(std::string("expected: ") + kForm);
    const KeyDirection direction = words[2] == "press" ? KeyDirection::kPress : KeyDirection::kRelease;
    if (const auto phoneKey = PhoneKeyNamed(words[1])) return KeyAction{*phoneKey, direction};
    if (!IsKeyCode(words[1])) throw Malformed("no key has the code " + Quoted(words[1]));
    return KeyAction{std::string(words[1]), direction};
}

PerformanceAction ParseDevice(const Words& words, DeviceChange change) {
    ExpectWords(words, 2, "lose or restore, then speaker or microphone");
    if (words[1] == "speaker") return DeviceAction{Device::kSpeaker, change};
    if (words[1] == "microphone") return DeviceAction{Device::kMicrophone, change};
    throw Malformed("the devices are speaker and microphone, not " + Quoted(words[1]));
}

PerformanceAction ParseScreenshot(const Words& words) {
    constexpr std::string_view kEnding = ".png";
    ExpectWords(words, 2, "screenshot FILE.png");
    const std::string_view file = words[1];
    if (file.size() <= kEnding.size() || file.substr(file.size() - kEnding.size()) != kEnding) {
        throw Malformed("a screenshot's file ends in .png, unlike " + Quoted(file));
    }
    return ScreenshotAction{std::string(file)};
}

PerformanceAction ParseState(const Words& words, StateChange change) {
    ExpectWords(words, 1, "the word alone");
    return StateAction{change};
}

using ActionParser = std::function<PerformanceAction(const Words&)>;

const std::map<std::string_view, ActionParser>& ActionParsers() {
    static const std::map<std::string_view, ActionParser> parsers = {
        {"touch", ParseTouch},
        {"press",
         [](const Words& words) {
             if (words.size() < 2) throw Malformed("expected: press NAME [FX FY]");
             return PressAction{std::string(words[1]), OptionalFraction(words)};
         }},
        {"tap",
         [](const Words& words) {
             if (words.size() < 2) throw Malformed("expected: tap NAME [FX FY]");
             return TapAction{std::string(words[1]), OptionalFraction(words)};
         }},
        {"release",
         [](const Words& words) {
             ExpectWords(words, 2, "release NAME");
             return ReleaseAction{std::string(words[1])};
         }},
        {"key", ParseKey},
        {"breath",
         [](const Words& words) {
             ExpectWords(words, 2, "breath LEVEL");
             return BreathAction{NumberWithin(words[1], 0, 1, "a breath's level")};
         }},
        {"peak",
         [](const Words& words) {
             ExpectWords(words, 2, "peak N");
             return PeakAction{static_cast<std::uint8_t>(IntegerWithin(words[1], kSilence, kLoudest, "a peak"))};
         }},
        {"ringtone",
         [](const Words& words) {
             ExpectWords(words, 2, "ringtone N");
             return RingtoneAction{IntegerWithin(words[1], 0, kLoudestRingtone, "the ringtone volume")};
         }},
        {"pick",
         [](const Words& words) {
             ExpectWords(words, 3, "pick NAME #RRGGBB[AA]");
             return PickAction{std::string(words[1]), Color(words[2])};
         }},
        {"background", [](const Words& words) { return ParseState(words, StateChange::kBackground); }},
        {"foreground", [](const Words& words) { return ParseState(words, StateChange::kForeground); }},
        {"screen-off", [](const Words& words) { return ParseState(words, StateChange::kScreenOff); }},
        {"screen-on", [](const Words& words) { return ParseState(words, StateChange::kScreenOn); }},
        {"lose", [](const Words& words) { return ParseDevice(words, DeviceChange::kLost); }},
        {"restore", [](const Words& words) { return ParseDevice(words, DeviceChange::kRestored); }},
        {"screenshot", ParseScreenshot},
        {"quit",
         [](const Words& words) {
             ExpectWords(words, 1, "quit alone");
             return QuitAction{};
         }},
    };
    return parsers;
}

// One line's step, or nothing for a line without an action. `previous` is the time of the line before.
std::optional<Performance::Step> ParseLine(std::string_view line, Microseconds previous) {
    const Words all = SplitWords(line);
    if (all.empty()) return std::nullopt;

    Performance::Step step;
    const bool isRelative = all[0].front() == '+';
    const std::string_view time = isRelative ? all[0].substr(1) : all[0];
    if (time.empty()) throw Malformed("a + is followed by milliseconds");
    step.time = ParseTime(time) + (isRelative ? previous : 0);
    if (step.time < previous) throw Malformed("the time " + Quoted(all[0]) + " lies before that of the line before");
    if (all.size() < 2) throw Malformed("an action is missing after the time");

    const Words words(all.begin() + 1, all.end());
    const auto parser = ActionParsers().find(words[0]);
    if (parser == ActionParsers().end()) throw Malformed("unknown action " + Quoted(words[0]));
    step.action = parser->second(words);
    return step;
}

bool IsUtf8(std::string_view text) {
    // The shape of the sequences alone (RFC 3629): enough to tell a text from a picture or a sound.
    std::size_t following = 0;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte == 0) return false;
        if (following > 0) {
            if ((byte & 0xC0U) != 0x80U) return false;
            --following;
        } else if (byte >= 0x80U) {
            if ((byte & 0xE0U) == 0xC0U) {
                following = 1;
            } else if ((byte & 0xF0U) == 0xE0U) {
                following = 2;
            } else if ((byte & 0xF8U) == 0xF0U) {
                following = 3;
            } else {
                return false;
            }
        }
    }
    return following == 0;
}

}  // namespace

std::shared_ptr<const Performance> ParsePerformance(std::string_view text, const std::string& name,
                                                    std::string& problem) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.substr(0, kByteOrderMark.size()) == kByteOrderMark) text.remove_prefix(kByteOrderMark.size());

    std::vector<Performance::Step> steps;
    Microseconds previous = 0;
    int number = 0;
    while (!text.empty()) {
        ++number;
        const std::size_t end = text.find('\n');
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        try {
            if (!IsUtf8(line)) throw Malformed("the line is not UTF-8 text");
            auto step = ParseLine(line, previous);
            if (!step) continue;
            step->line = number;
            previous = step->time;
            steps.push_back(std::move(*step));
        } catch (const Malformed& malformed) {
            problem = name + ':' + std::to_string(number) + ": " + malformed.what();
            return nullptr;
        }
    }
    return std::make_shared<const Performance>(name, std::move(steps));
}

std::shared_ptr<const Performance> LoadPerformance(const Storage& storage, const std::string& path,
                                                   std::string& problem) {
    std::vector<std::byte> content;
    const ReadOutcome outcome = storage.Read(path, kLargestFile, content);
    if (outcome != ReadOutcome::kRead) {
        problem = path + ": the performance cannot be played: " + std::string(ReasonOf(outcome));
        return nullptr;
    }
    return ParsePerformance({reinterpret_cast<const char*>(content.data()), content.size()}, path, problem);
}

}  // namespace host
