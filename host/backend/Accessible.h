#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "backend/Geometry.h"

namespace host {

// What the screen shows, in words: for a screen reader, a Braille display or a keyboard in place of eyes and fingers.

enum class AccessibleRole { kText, kHeading, kButton, kSwitch, kSlider };

/// One thing on the screen. A plain value.
struct AccessibleItem {
    std::uint64_t id = 0;  ///< the same as long as the thing exists; no two things share one
    AccessibleRole role = AccessibleRole::kText;
    std::string name;   ///< in the language of the texts, UTF-8; never empty
    PixelRect bounds;   ///< in the window's device pixels
    bool isOn = false;  ///< kSwitch
    // kSlider: least <= value <= most.
    int value = 0;
    int least = 0;
    int most = 0;

    friend bool operator==(const AccessibleItem&, const AccessibleItem&) = default;
};

enum class AccessibleKind { kForm, kDialog };

/// The topmost screen; what lies under a dialog cannot be reached. A plain value.
struct AccessibleScreen {
    AccessibleKind kind = AccessibleKind::kForm;
    /// Whether keys play on it: the space bar then blows and presses nothing.
    bool isPlayedOn = false;
    std::vector<AccessibleItem> items;  ///< in the order in which they are read

    friend bool operator==(const AccessibleScreen&, const AccessibleScreen&) = default;
};

/// The screen as a back end's accessibility finds it. What it says changes only with what the window shows, so it is
/// asked after a Window::Present. UI thread only.
class Accessible {
public:
    [[nodiscard]] virtual AccessibleScreen DescribeScreen() const = 0;
    /// Presses a button, turns a switch. False when that thing cannot be pressed now, or is not there any more.
    virtual bool Activate(std::uint64_t id) = 0;
    /// Moves a slider; a value beyond its ends goes to the nearer one. False when there is no such slider.
    virtual bool SetValue(std::uint64_t id, int value) = 0;

protected:
    ~Accessible() = default;
};

}  // namespace host
