#include "runtime/package/KeyCodeNames.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace host {

namespace {

using namespace std::string_view_literals;

constexpr int kFunctionKeys = 24;

// "UI Events KeyboardEvent code Values", W3C Recommendation, section 3, but for the letters, digits and function keys
// that are counted. In the order of the bytes, for the search.
constexpr auto kNames = std::to_array<std::string_view>({
    // clang-format off
    "Again"sv, "AltLeft"sv, "AltRight"sv, "ArrowDown"sv, "ArrowLeft"sv, "ArrowRight"sv, "ArrowUp"sv,
    "AudioVolumeDown"sv, "AudioVolumeMute"sv, "AudioVolumeUp"sv,
    "Backquote"sv, "Backslash"sv, "Backspace"sv, "BracketLeft"sv, "BracketRight"sv,
    "BrowserBack"sv, "BrowserFavorites"sv, "BrowserForward"sv, "BrowserHome"sv, "BrowserRefresh"sv, "BrowserSearch"sv,
    "BrowserStop"sv,
    "CapsLock"sv, "Comma"sv, "ContextMenu"sv, "ControlLeft"sv, "ControlRight"sv, "Convert"sv, "Copy"sv, "Cut"sv,
    "Delete"sv, "Eject"sv, "End"sv, "Enter"sv, "Equal"sv, "Escape"sv, "Find"sv, "Fn"sv, "FnLock"sv, "Help"sv, "Home"sv,
    "Insert"sv, "IntlBackslash"sv, "IntlRo"sv, "IntlYen"sv, "KanaMode"sv,
    "Lang1"sv, "Lang2"sv, "Lang3"sv, "Lang4"sv, "Lang5"sv, "LaunchApp1"sv, "LaunchApp2"sv, "LaunchMail"sv,
    "MediaPlayPause"sv, "MediaSelect"sv, "MediaStop"sv, "MediaTrackNext"sv, "MediaTrackPrevious"sv,
    "MetaLeft"sv, "MetaRight"sv, "Minus"sv, "NonConvert"sv, "NumLock"sv,
    "NumpadAdd"sv, "NumpadBackspace"sv, "NumpadClear"sv, "NumpadClearEntry"sv, "NumpadComma"sv, "NumpadDecimal"sv,
    "NumpadDivide"sv, "NumpadEnter"sv, "NumpadEqual"sv, "NumpadHash"sv, "NumpadMemoryAdd"sv, "NumpadMemoryClear"sv,
    "NumpadMemoryRecall"sv, "NumpadMemoryStore"sv, "NumpadMemorySubtract"sv, "NumpadMultiply"sv, "NumpadParenLeft"sv,
    "NumpadParenRight"sv, "NumpadStar"sv, "NumpadSubtract"sv,
    "Open"sv, "PageDown"sv, "PageUp"sv, "Paste"sv, "Pause"sv, "Period"sv, "Power"sv, "PrintScreen"sv, "Props"sv,
    "Quote"sv, "ScrollLock"sv, "Select"sv, "Semicolon"sv, "ShiftLeft"sv, "ShiftRight"sv, "Slash"sv, "Sleep"sv,
    "Space"sv, "Tab"sv, "Undo"sv, "WakeUp"sv,
    // clang-format on
});

// `prefix` and one character of first..last.
bool IsCounted(std::string_view code, std::string_view prefix, char first, char last) {
    return code.size() == prefix.size() + 1 && code.substr(0, prefix.size()) == prefix && code.back() >= first &&
           code.back() <= last;
}

bool IsFunctionKey(std::string_view code) {
    if (code.size() < 2 || code.size() > 3 || code.front() != 'F' || code[1] == '0') return false;
    int number = 0;
    for (const char digit : code.substr(1)) {
        constexpr int kTen = 10;
        if (digit < '0' || digit > '9') return false;
        number = number * kTen + (digit - '0');
    }
    return number <= kFunctionKeys;
}

}  // namespace

bool IsKeyCode(std::string_view code) noexcept {
    return IsCounted(code, "Key", 'A', 'Z') || IsCounted(code, "Digit", '0', '9') ||
           IsCounted(code, "Numpad", '0', '9') || IsFunctionKey(code) ||
           std::binary_search(kNames.begin(), kNames.end(), code);
}

}  // namespace host
