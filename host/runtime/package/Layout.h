#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "backend/Geometry.h"
#include "backend/Painter.h"

namespace host {

/// A text as a control shows it; sizes in the phone's pixels.
struct TextLook {
    std::string text;
    double size = 24;
    double smallestSize = 24;  ///< down to this it shrinks where it does not fit; then it ends in an ellipsis
    Rgba color{0, 0, 0, 255};
    FontWeight weight = FontWeight::kNormal;
    HorizontalAlign align = HorizontalAlign::kLeft;
    VerticalAlign verticalAlign = VerticalAlign::kMiddle;
    TextWrap wrap = TextWrap::kOneLine;

    friend bool operator==(const TextLook&, const TextLook&) = default;
};

/// A filled box with an edge; sizes in the phone's pixels.
struct BoxLook {
    Rgba background;
    std::optional<Rgba> gradientBottom;  ///< with it, the background runs vertically from its own colour to this one
    double corner = 0;                   ///< radius
    Rgba border;
    double borderWidth = 0;
    /// Button: what lies around it. The border is drawn only where the background is hardly told from this colour.
    std::optional<Rgba> borderAgainst;
};

/// No edge of a control lies further than this from the screen's corner, in the phone's pixels.
inline constexpr int kFarthestEdge = 100'000;

enum class ControlKind { kForm, kPopup, kLabel, kButton, kPanel, kCheckButton, kColorPicker };

/// A control of a layout and what is in it, scaled to the phone's screen. A plain value, made by LayoutReader.
struct LayoutControl {
    ControlKind kind = ControlKind::kForm;
    std::string name;
    PixelRect bounds;                     ///< in the parent, a form's or popup's on the screen; the phone's pixels
    std::optional<PixelRect> clientArea;  ///< Form: what the application draws on, in the form; otherwise all of it
    bool isVisible = true;
    bool takesTouches = true;
    BoxLook box;
    TextLook text;
    std::string picture;                   ///< file name in images/; empty without one
    std::string pressedPicture;            ///< Button
    std::string drawnPicture;              ///< Form, Popup: what the application draws on it; decoded ahead
    std::optional<Rgba> pressedColor;      ///< Button
    std::optional<Rgba> pressedTextColor;  ///< Button
    Rgba checkedColor;                     ///< CheckButton
    std::string spokenName;                ///< said in place of its text or picture; empty for none
    bool isHeading = false;                ///< Label, Button: its text stands over what follows
    bool needsKeyboard = false;            ///< shown only where keys are bound
    std::vector<LayoutControl> children;
};

}  // namespace host
