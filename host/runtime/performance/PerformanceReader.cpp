#include "runtime/performance/PerformanceReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <functional>
#include <map>
#include <optional>
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

/// A line's words, and the first thing that is wrong with it. Whoever finds a fault notes it and goes on with any
/// value: the line's action is not used then.
class Words {
public:
    explicit Words(std::vector<std::string_view> words) : words_(std::move(words)) {}

    [[nodiscard]] std::size_t size() const noexcept { return words_.size(); }
    /// Empty where the line has no more words.
    [[nodiscard]] std::string_view operator[](std::size_t index) const {
        return index < words_.size() ? words_[index] : std::string_view();
    }
    void RemoveFirst() { words_.erase(words_.begin()); }

    void Refuse(std::string reason) {
        if (fault_.empty()) fault_ = std::move(reason);
    }
    [[nodiscard]] const std::string& Fault() const noexcept { return fault_; }

private:
    std::vector<std::string_view> words_;
    std::string fault_;
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

double NumberWithin(Words& words, std::string_view word, double lowest, double highest, const char* what) {
    const auto value = ParseNumber(word);
    if (!value || *value < lowest || *value > highest) {
        // Not a stream, which would bring a page all of the library's locales: a fifth of what it loads.
        constexpr std::size_t kLongest = 80;
        std::array<char, kLongest> range{};
        std::snprintf(range.data(), range.size(), "%s must be a number from %g to %g, not ", what, lowest, highest);
        words.Refuse(range.data() + Quoted(word));
        return lowest;
    }
    return *value;
}

int IntegerWithin(Words& words, std::string_view word, int lowest, int highest, const char* what) {
    int value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || value < lowest || value > highest) {
        words.Refuse(std::string(what) + " must be a whole number from " + std::to_string(lowest) + " to " +
                     std::to_string(highest) + ", not " + Quoted(word));
        return lowest;
    }
    return value;
}

// The peak of a block of silence, and the highest that there is.
constexpr int kSilence = 128;
constexpr int kLoudest = 255;

double Coordinate(Words& words, std::string_view word) {
    constexpr double kFarthest = 100'000;
    return NumberWithin(words, word, -kFarthest, kFarthest, "a coordinate");
}

Microseconds ParseTime(Words& words, std::string_view word) {
    const std::size_t point = word.find('.');
    const std::string_view whole = word.substr(0, point);
    std::int64_t milliseconds = 0;
    const auto [end, error] = std::from_chars(whole.data(), whole.data() + whole.size(), milliseconds);
    bool isGood = error == std::errc() && end == whole.data() + whole.size() && !whole.empty() &&
                  whole.front() != '-' && milliseconds <= kLongestMilliseconds;
    Microseconds rest = 0;
    if (isGood && point != std::string_view::npos) {
        std::string decimals(word.substr(point + 1));
        isGood = !decimals.empty() && decimals.size() <= kDecimalsOfMillisecond &&
                 decimals.find_first_not_of("0123456789") == std::string::npos;
        decimals.resize(kDecimalsOfMillisecond, '0');
        std::from_chars(decimals.data(), decimals.data() + decimals.size(), rest);
    }
    if (!isGood) {
        words.Refuse("a line begins with a time in milliseconds such as 2600 or +250, not " + Quoted(word));
        return 0;
    }
    return milliseconds * kMicrosecondsPerMillisecond + rest;
}

Rgba Color(Words& words, std::string_view word) {
    const auto color = ParseColor(word);
    if (!color) words.Refuse("a colour is written #RRGGBB or #RRGGBBAA, not " + Quoted(word));
    return color.value_or(Rgba{});
}

PointF OptionalFraction(Words& words) {
    constexpr std::size_t kFractionX = 2;
    if (words.size() == kFractionX) return {0.5, 0.5};
    if (words.size() != kFractionX + 2) {
        words.Refuse(std::string(words[0]) + " takes a control's name and no or two fractions");
    }
    return {NumberWithin(words, words[kFractionX], 0, 1, "a fraction"),
            NumberWithin(words, words[kFractionX + 1], 0, 1, "a fraction")};
}

void ExpectWords(Words& words, std::size_t count, const char* form) {
    if (words.size() != count) words.Refuse(std::string("expected: ") + form);
}

PerformanceAction ParseTouch(Words& words) {
    constexpr const char* kForm = "touch FINGER down X Y, touch FINGER move X Y or touch FINGER up";
    constexpr std::size_t kWithPosition = 5;
    constexpr std::size_t kWithout = 3;
    if (words.size() < kWithout) words.Refuse(std::string("expected: ") + kForm);
    TouchAction action;
    action.finger = IntegerWithin(words, words[1], 0, kLastFinger, "a finger");
    if (words[2] == "up") {
        ExpectWords(words, kWithout, kForm);
        action.phase = TouchPhase::kUp;
        return action;
    }
    if (words[2] != "down" && words[2] != "move") words.Refuse(std::string("expected: ") + kForm);
    ExpectWords(words, kWithPosition, kForm);
    action.phase = words[2] == "down" ? TouchPhase::kDown : TouchPhase::kMove;
    action.position = {Coordinate(words, words[3]), Coordinate(words, words[4])};
    return action;
}

PerformanceAction ParseKey(Words& words) {
    constexpr const char* kForm = "key back press, key back release, key CODE press or key CODE release";
    ExpectWords(words, 3, kForm);
    if (words[2] != "press" && words[2] != "release") words.Refuse(std::string("expected: ") + kForm);
    const KeyDirection direction = words[2] == "press" ? KeyDirection::kPress : KeyDirection::kRelease;
    if (const auto phoneKey = PhoneKeyNamed(words[1])) return KeyAction{*phoneKey, direction};
    if (!IsKeyCode(words[1])) words.Refuse("no key has the code " + Quoted(words[1]));
    return KeyAction{std::string(words[1]), direction};
}

PerformanceAction ParseDevice(Words& words, DeviceChange change) {
    ExpectWords(words, 2, "lose or restore, then speaker or microphone");
    if (words[1] == "speaker") return DeviceAction{Device::kSpeaker, change};
    if (words[1] != "microphone") words.Refuse("the devices are speaker and microphone, not " + Quoted(words[1]));
    return DeviceAction{Device::kMicrophone, change};
}

PerformanceAction ParseScreenshot(Words& words) {
    constexpr std::string_view kEnding = ".png";
    ExpectWords(words, 2, "screenshot FILE.png");
    const std::string_view file = words[1];
    if (file.size() <= kEnding.size() || file.substr(file.size() - kEnding.size()) != kEnding) {
        words.Refuse("a screenshot's file ends in .png, unlike " + Quoted(file));
    }
    return ScreenshotAction{std::string(file)};
}

PerformanceAction ParseState(Words& words, StateChange change) {
    ExpectWords(words, 1, "the word alone");
    return StateAction{change};
}

using ActionParser = std::function<PerformanceAction(Words&)>;

const std::map<std::string_view, ActionParser>& ActionParsers() {
    static const std::map<std::string_view, ActionParser> parsers = {
        {"touch", ParseTouch},
        {"press",
         [](Words& words) {
             if (words.size() < 2) words.Refuse("expected: press NAME [FX FY]");
             return PressAction{std::string(words[1]), OptionalFraction(words)};
         }},
        {"tap",
         [](Words& words) {
             if (words.size() < 2) words.Refuse("expected: tap NAME [FX FY]");
             return TapAction{std::string(words[1]), OptionalFraction(words)};
         }},
        {"release",
         [](Words& words) {
             ExpectWords(words, 2, "release NAME");
             return ReleaseAction{std::string(words[1])};
         }},
        {"key", ParseKey},
        {"breath",
         [](Words& words) {
             ExpectWords(words, 2, "breath LEVEL");
             return BreathAction{NumberWithin(words, words[1], 0, 1, "a breath's level")};
         }},
        {"peak",
         [](Words& words) {
             ExpectWords(words, 2, "peak N");
             return PeakAction{static_cast<std::uint8_t>(IntegerWithin(words, words[1], kSilence, kLoudest, "a peak"))};
         }},
        {"ringtone",
         [](Words& words) {
             ExpectWords(words, 2, "ringtone N");
             return RingtoneAction{IntegerWithin(words, words[1], 0, kLoudestRingtone, "the ringtone volume")};
         }},
        {"pick",
         [](Words& words) {
             ExpectWords(words, 3, "pick NAME #RRGGBB[AA]");
             return PickAction{std::string(words[1]), Color(words, words[2])};
         }},
        {"background", [](Words& words) { return ParseState(words, StateChange::kBackground); }},
        {"foreground", [](Words& words) { return ParseState(words, StateChange::kForeground); }},
        {"screen-off", [](Words& words) { return ParseState(words, StateChange::kScreenOff); }},
        {"screen-on", [](Words& words) { return ParseState(words, StateChange::kScreenOn); }},
        {"lose", [](Words& words) { return ParseDevice(words, DeviceChange::kLost); }},
        {"restore", [](Words& words) { return ParseDevice(words, DeviceChange::kRestored); }},
        {"screenshot", ParseScreenshot},
        {"quit",
         [](Words& words) {
             ExpectWords(words, 1, "quit alone");
             return QuitAction{};
         }},
    };
    return parsers;
}

// One line's step, or nothing for a line without an action. `previous` is the time of the line before. What is wrong
// with the line goes to `fault`.
std::optional<Performance::Step> ParseLine(std::string_view line, Microseconds previous, std::string& fault) {
    Words words(SplitWords(line));
    if (words.size() == 0) return std::nullopt;

    Performance::Step step;
    const std::string_view written = words[0];
    const bool isRelative = written.front() == '+';
    const std::string_view time = isRelative ? written.substr(1) : written;
    if (time.empty()) words.Refuse("a + is followed by milliseconds");
    step.time = ParseTime(words, time) + (isRelative ? previous : 0);
    if (step.time < previous) words.Refuse("the time " + Quoted(written) + " lies before that of the line before");
    if (words.size() < 2) words.Refuse("an action is missing after the time");

    words.RemoveFirst();
    const auto parser = ActionParsers().find(words[0]);
    if (parser == ActionParsers().end()) {
        words.Refuse("unknown action " + Quoted(words[0]));
    } else {
        step.action = parser->second(words);
    }
    fault = words.Fault();
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
        std::string fault;
        std::optional<Performance::Step> step;
        if (IsUtf8(line)) {
            step = ParseLine(line, previous, fault);
        } else {
            fault = "the line is not UTF-8 text";
        }
        if (!fault.empty()) {
            problem = name;
            problem.append(":").append(std::to_string(number)).append(": ").append(fault);
            return nullptr;
        }
        if (!step) continue;
        step->line = number;
        previous = step->time;
        steps.push_back(std::move(*step));
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
