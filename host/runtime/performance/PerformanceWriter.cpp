#include "runtime/performance/PerformanceWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace host {

namespace {

constexpr std::int64_t kThousand = 1000;

/// A number of thousandths with its decimals. Printf's own decimals follow the locale.
std::string Decimal(std::int64_t thousandths) {
    std::string text = thousandths < 0 ? "-" : "";
    const std::int64_t size = std::abs(thousandths);
    text += std::to_string(size / kThousand);
    std::string decimals = std::to_string(kThousand + size % kThousand);
    decimals.front() = '.';
    while (decimals.back() == '0') decimals.pop_back();
    return decimals == "." ? text : text + decimals;
}

std::string Number(double value) {
    return Decimal(std::llround(value * static_cast<double>(kThousand)));
}

std::string Fraction(const PointF& fraction) {
    return ' ' + Number(fraction.x) + ' ' + Number(fraction.y);
}

std::string TextOf(const TouchAction& action) {
    const std::string finger = "touch " + std::to_string(action.finger);
    // The grammar knows no finger that is taken away; it is one that lifts.
    if (action.phase == TouchPhase::kUp || action.phase == TouchPhase::kCancel) return finger + " up";
    return finger + (action.phase == TouchPhase::kDown ? " down " : " move ") + Number(action.position.x) + ' ' +
           Number(action.position.y);
}

std::string TextOf(const PressAction& action) {
    return "press " + action.control + Fraction(action.fraction);
}

std::string TextOf(const ReleaseAction& action) {
    return "release " + action.control;
}

std::string TextOf(const TapAction& action) {
    return "tap " + action.control + Fraction(action.fraction);
}

std::string TextOf(const KeyAction& action) {
    const auto* const phoneKey = std::get_if<PhoneKey>(&action.key);
    const std::string name = phoneKey != nullptr ? std::string(NameOf(*phoneKey)) : std::get<std::string>(action.key);
    return "key " + name + (action.direction == KeyDirection::kPress ? " press" : " release");
}

std::string TextOf(const BreathAction& action) {
    return "breath " + Number(action.level);
}

std::string TextOf(const PeakAction& action) {
    return "peak " + std::to_string(action.peak);
}

std::string TextOf(const RingtoneAction& action) {
    return "ringtone " + std::to_string(action.volume);
}

std::string TextOf(const PickAction& action) {
    std::array<char, 16> color{};
    std::snprintf(color.data(), color.size(), "#%02X%02X%02X%02X", unsigned{action.color.red},
                  unsigned{action.color.green}, unsigned{action.color.blue}, unsigned{action.color.alpha});
    return "pick " + action.control + ' ' + color.data();
}

std::string TextOf(const StateAction& action) {
    switch (action.change) {
        case StateChange::kBackground:
            return "background";
        case StateChange::kForeground:
            return "foreground";
        case StateChange::kScreenOff:
            return "screen-off";
        case StateChange::kScreenOn:
            break;
    }
    return "screen-on";
}

std::string TextOf(const DeviceAction& action) {
    return std::string(action.change == DeviceChange::kLost ? "lose " : "restore ") +
           (action.device == Device::kSpeaker ? "speaker" : "microphone");
}

std::string TextOf(const ScreenshotAction& action) {
    return "screenshot " + action.file;
}

std::string TextOf(const QuitAction&) {
    return "quit";
}

}  // namespace

std::string PerformanceLine(Microseconds time, const PerformanceAction& action) {
    return Decimal(time) + ' ' + std::visit([](const auto& each) { return TextOf(each); }, action) + '\n';
}

}  // namespace host
