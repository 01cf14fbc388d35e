#include "runtime/package/LayoutReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "runtime/package/Values.h"

namespace host {

namespace {

// Sets of control kinds, one bit each.
constexpr unsigned Bit(ControlKind kind) {
    return 1U << static_cast<unsigned>(kind);
}
constexpr unsigned kForm = Bit(ControlKind::kForm);
constexpr unsigned kPopup = Bit(ControlKind::kPopup);
constexpr unsigned kLabel = Bit(ControlKind::kLabel);
constexpr unsigned kButton = Bit(ControlKind::kButton);
constexpr unsigned kPanel = Bit(ControlKind::kPanel);
constexpr unsigned kCheckButton = Bit(ControlKind::kCheckButton);
constexpr unsigned kColorPicker = Bit(ControlKind::kColorPicker);
constexpr unsigned kRoots = kForm | kPopup;
constexpr unsigned kInner = kLabel | kButton | kPanel | kCheckButton | kColorPicker;
constexpr unsigned kTexts = kLabel | kButton | kCheckButton;
constexpr unsigned kBordered = kPopup | kPanel | kLabel | kButton;

struct KindName {
    const char* name;
    ControlKind kind;
};
constexpr std::array<KindName, 7> kKindNames{{{"Form", ControlKind::kForm},
                                              {"Popup", ControlKind::kPopup},
                                              {"Label", ControlKind::kLabel},
                                              {"Button", ControlKind::kButton},
                                              {"Panel", ControlKind::kPanel},
                                              {"CheckButton", ControlKind::kCheckButton},
                                              {"ColorPicker", ControlKind::kColorPicker}}};

struct AttributeRule {
    const char* name;
    unsigned kinds;
};
constexpr std::array<AttributeRule, 35> kAttributes{{
    {"name", kRoots | kInner},
    {"design", kRoots},
    {"bounds", kPopup | kInner},
    {"client", kForm},
    {"visible", kInner},
    {"touch", kInner},
    {"needs", kInner},
    {"spoken", kInner},
    {"heading", kLabel | kButton},
    {"shape", kInner},
    {"horizontal", kRoots | kInner},
    {"vertical", kRoots | kInner},
    {"share", kInner},
    {"gravity", kInner},
    {"draws", kRoots},
    {"background", kRoots | kPanel | kLabel},
    {"corner", kBordered},
    {"border", kBordered},
    {"border-against", kButton},
    {"border-width", kBordered},
    {"picture", kLabel | kButton | kPanel},
    {"picture-pressed", kButton},
    {"text", kTexts},
    {"text-size", kTexts},
    {"text-color", kTexts},
    {"bold", kTexts},
    {"align", kTexts},
    {"valign", kTexts},
    {"wrap", kLabel},
    {"min-text-size", kTexts},
    {"color", kButton | kCheckButton},
    {"color-pressed", kButton},
    {"text-color-pressed", kButton},
    {"gradient", kButton},
    {"color-checked", kCheckButton},
}};

std::optional<ControlKind> KindOf(std::string_view elementName) {
    for (const KindName& candidate : kKindNames) {
        if (elementName == candidate.name) return candidate.kind;
    }
    return std::nullopt;
}

bool IsAllowed(std::string_view attribute, ControlKind kind) {
    return std::any_of(kAttributes.begin(), kAttributes.end(), [&](const AttributeRule& rule) {
        return attribute == rule.name && (rule.kinds & Bit(kind)) != 0;
    });
}

// How deep controls may lie in each other, and how far from 0 a design's number may be: a layout beyond either is a
// mistake, and would cost the stack or the memory of surfaces that nobody sees.
constexpr int kDeepest = 64;
constexpr double kFarthest = 10'000;

// The surfaces of so much take a quarter of a gigabyte on a phone's screen.
constexpr std::int64_t kMostScreens = 64;

bool IsNear(double begin, double size) {
    return std::abs(begin) <= kFarthestEdge && std::abs(begin + size) <= kFarthestEdge;
}

int Rounded(double value) {
    return static_cast<int>(std::lround(value));
}

}  // namespace

bool LayoutReader::Read(LayoutControl& layout) {
    const pugi::xml_node root = file_.Root();
    const auto kind = KindOf(root.name());
    if (!kind || (Bit(*kind) & kRoots) == 0) return file_.Fail(root, "the root element must be <Form> or <Popup>");
    Mapping mapping;
    return ReadDesign(root, mapping) && ReadControl(root, mapping, {}, 1, layout);
}

bool LayoutReader::ReadDesign(const pugi::xml_node& element, Mapping& mapping) {
    std::string text = element.attribute("design").value();
    std::replace(text.begin(), text.end(), 'x', ',');
    const auto size = ParseNumbers(text);
    const auto isFit = [](double side) { return side >= 1 && side <= kFarthest; };
    if (!size || size->size() != 2 || !isFit((*size)[0]) || !isFit((*size)[1])) {
        return FailValue(element, "design", "the size of the screen it was drawn for, like 720x1280");
    }
    mapping.x = {0, screen_.width / (*size)[0], (*size)[0]};
    mapping.y = {0, screen_.height / (*size)[1], (*size)[1]};
    smallerScale_ = std::min(mapping.x.scale, mapping.y.scale);
    return true;
}

bool LayoutReader::ReadControl(const pugi::xml_node& element, const Mapping& mapping, PixelRect parent, int depth,
                               LayoutControl& control) {
    if (depth > kDeepest) {
        return file_.Fail(element, "controls lie at most " + std::to_string(kDeepest) + " deep in each other");
    }
    const auto kind = KindOf(element.name());
    if (!kind) return file_.Fail(element, std::string("unknown control <") + element.name() + ">");
    control.kind = *kind;
    for (const pugi::xml_attribute attribute : element.attributes()) {
        if (IsAllowed(attribute.name(), control.kind)) continue;
        return file_.Fail(element,
                          std::string("unknown attribute ") + attribute.name() + " of <" + element.name() + ">");
    }

    PixelRect place{0, 0, screen_.width, screen_.height};
    Mapping inner = mapping;
    if (!ReadName(element, control)) return false;
    if (control.kind == ControlKind::kForm) {
        // Its controls lie where the design has them, whatever part of it the application draws on.
        Mapping ofClient;
        if (element.attribute("client") &&
            !ReadPlace(element, "client", mapping, control.clientArea.emplace(), ofClient)) {
            return false;
        }
    } else if (!ReadPlace(element, "bounds", mapping, place, inner)) {
        return false;
    }
    control.bounds = {place.x - parent.x, place.y - parent.y, place.width, place.height};
    if (!ReadLook(element, control) || !ReadText(element, control)) return false;

    for (const pugi::xml_node child : element.children()) {
        control.children.emplace_back();
        if (!ReadChild(child, element, inner, place, depth + 1, control.children.back())) control.children.pop_back();
    }
    return true;
}

bool LayoutReader::ReadChild(const pugi::xml_node& child, const pugi::xml_node& element, const Mapping& mapping,
                             PixelRect parent, int depth, LayoutControl& control) {
    if (child.type() != pugi::node_element) return file_.Fail(child, "a layout holds no text between its elements");
    if ((Bit(*KindOf(element.name())) & (kRoots | kPanel)) == 0) {
        return file_.Fail(child, std::string("a <") + element.name() + "> contains nothing");
    }
    const auto kind = KindOf(child.name());
    if (kind && (Bit(*kind) & kInner) == 0) {
        return file_.Fail(child, std::string("a <") + child.name() + "> lies in nothing else");
    }
    return ReadControl(child, mapping, parent, depth, control);
}

bool LayoutReader::ReadName(const pugi::xml_node& element, LayoutControl& control) {
    control.name = element.attribute("name").value();
    if (control.name.empty()) return file_.Fail(element, std::string("a <") + element.name() + "> without a name");
    if (!names_.insert(control.name).second) return file_.Fail(element, "a second control named " + control.name);
    return true;
}

bool LayoutReader::ReadPlace(const pugi::xml_node& element, const char* name, const Mapping& mapping, PixelRect& place,
                             Mapping& inner) {
    static constexpr std::pair<const char*, Shape> kShapes[] = {
        {"box", Shape::kBox}, {"round", Shape::kRound}, {"circle", Shape::kCircle}};
    static constexpr std::pair<const char*, Hold> kHorizontals[] = {{"stretch", Hold::kStretch},
                                                                    {"left", Hold::kBegin},
                                                                    {"center", Hold::kMiddle},
                                                                    {"right", Hold::kEnd},
                                                                    {"sides", Hold::kSides}};
    static constexpr std::pair<const char*, Hold> kVerticals[] = {{"stretch", Hold::kStretch},
                                                                  {"top", Hold::kBegin},
                                                                  {"middle", Hold::kMiddle},
                                                                  {"bottom", Hold::kEnd},
                                                                  {"sides", Hold::kSides}};
    constexpr std::size_t kSides = 4;

    const auto numbers = ParseNumbers(element.attribute(name).value());
    if (!numbers || numbers->size() != kSides || (*numbers)[2] <= 0 || (*numbers)[3] <= 0) {
        return FailValue(element, name, "x,y,width,height");
    }
    if (std::any_of(numbers->begin(), numbers->end(), [](double number) { return std::abs(number) > kFarthest; })) {
        return FailValue(element, name, "of numbers no further than 10000 from 0");
    }
    Shape shape = Shape::kBox;
    Hold horizontal = Hold::kStretch;
    Hold vertical = Hold::kStretch;
    if (!ReadChoice(element, "shape", kShapes, shape) || !ReadChoice(element, "horizontal", kHorizontals, horizontal) ||
        !ReadChoice(element, "vertical", kVerticals, vertical)) {
        return false;
    }
    Span x = PlaceAlong(mapping.x, (*numbers)[0], (*numbers)[2], horizontal);
    Span y = PlaceAlong(mapping.y, (*numbers)[1], (*numbers)[3], vertical);
    if (shape == Shape::kRound) {
        // It lies in the middle of what its box would be.
        const double width = (*numbers)[2] * smallerScale_;
        const double height = (*numbers)[3] * smallerScale_;
        x = {x.begin + (x.size - width) / 2, width};
        y = {y.begin + (y.size - height) / 2, height};
    }
    if (shape == Shape::kCircle && !PlaceCircle(element, x, y)) return false;
    // Written so that what is no number is refused, too.
    if (!IsNear(x.begin, x.size) || !IsNear(y.begin, y.size)) {
        return file_.Fail(element, std::string("the <") + element.name() + "> lies too far from the screen");
    }
    if (shape == Shape::kBox) {
        // The edges are rounded and not the sizes, so that neighbours still meet.
        place.x = Rounded(x.begin);
        place.y = Rounded(y.begin);
        place.width = Rounded(x.begin + x.size) - place.x;
        place.height = Rounded(y.begin + y.size) - place.y;
    } else {
        // Here the sizes count: a circle stays one.
        place = {Rounded(x.begin), Rounded(y.begin), Rounded(x.size), Rounded(y.size)};
    }
    inner.x = {x.begin, x.size / (*numbers)[2], (*numbers)[2]};
    inner.y = {y.begin, y.size / (*numbers)[3], (*numbers)[3]};
    place.width = std::max(place.width, 1);
    place.height = std::max(place.height, 1);
    pixels_ += place.Area();
    if (pixels_ <= kMostScreens * PixelRect{0, 0, screen_.width, screen_.height}.Area()) return true;
    pixels_ -= place.Area();
    return file_.Fail(element, "the controls of a layout cover at most " + std::to_string(kMostScreens) +
                                   " screens together, which this <" + element.name() + "> exceeds");
}

LayoutReader::Span LayoutReader::PlaceAlong(const Axis& axis, double begin, double size, Hold hold) const {
    const double held = size * smallerScale_;
    const double container = axis.units * axis.scale;
    const double after = (axis.units - begin - size) * smallerScale_;
    switch (hold) {
        case Hold::kStretch:
            break;
        case Hold::kBegin:
            return {axis.origin + begin * smallerScale_, held};
        case Hold::kMiddle:
            return {axis.origin + container / 2 + (begin - axis.units / 2) * smallerScale_, held};
        case Hold::kEnd:
            return {axis.origin + container - after - held, held};
        case Hold::kSides:
            return {axis.origin + begin * smallerScale_, std::max(1.0, container - begin * smallerScale_ - after)};
    }
    return {axis.origin + begin * axis.scale, size * axis.scale};
}

bool LayoutReader::PlaceCircle(const pugi::xml_node& element, Span& x, Span& y) {
    static constexpr std::pair<const char*, VerticalAlign> kGravities[] = {
        {"top", VerticalAlign::kTop}, {"middle", VerticalAlign::kMiddle}, {"bottom", VerticalAlign::kBottom}};
    VerticalAlign gravity = VerticalAlign::kMiddle;
    if (!ReadChoice(element, "gravity", kGravities, gravity)) return false;
    double share = 1;
    if (const auto attribute = element.attribute("share")) {
        const auto parsed = ParseNumber(attribute.value());
        if (!parsed || *parsed <= 0 || *parsed > 1) return FailValue(element, "share", "above 0 and at most 1");
        share = *parsed;
    }
    // The largest circle goes where the gravity pulls it; circles of other shares in the same box share its middle.
    const double largest = std::min(x.size, y.size);
    const double spare = y.size - largest;
    const double top = gravity == VerticalAlign::kTop ? 0 : gravity == VerticalAlign::kBottom ? spare : spare / 2;
    const double diameter = largest * share;
    x = {x.begin + (x.size - diameter) / 2, diameter};
    y = {y.begin + top + (largest - diameter) / 2, diameter};
    return true;
}

bool LayoutReader::ReadLook(const pugi::xml_node& element, LayoutControl& control) {
    static constexpr std::pair<const char*, bool> kTouches[] = {{"own", true}, {"none", false}};
    static constexpr std::pair<const char*, bool> kNeeds[] = {{"keyboard", true}};
    BoxLook& box = control.box;
    const bool isRead =
        ReadFlag(element, "visible", control.isVisible) && ReadFlag(element, "heading", control.isHeading) &&
        ReadChoice(element, "needs", kNeeds, control.needsKeyboard) &&
        ReadChoice(element, "touch", kTouches, control.takesTouches) &&
        ReadColor(element, "background", box.background) && ReadColor(element, "color", box.background) &&
        ReadLength(element, "corner", box.corner) && ReadColor(element, "border", box.border) &&
        ReadLength(element, "border-width", box.borderWidth) &&
        ReadOptionalColor(element, "border-against", box.borderAgainst) &&
        ReadPicture(element, "picture", control.picture) && ReadPicture(element, "draws", control.drawnPicture) &&
        ReadPicture(element, "picture-pressed", control.pressedPicture) && ReadGradient(element, box);
    if (!isRead) return false;
    control.checkedColor = box.background;
    return ReadOptionalColor(element, "color-pressed", control.pressedColor) &&
           ReadColor(element, "color-checked", control.checkedColor);
}

bool LayoutReader::ReadText(const pugi::xml_node& element, LayoutControl& control) {
    static constexpr std::pair<const char*, HorizontalAlign> kAligns[] = {
        {"left", HorizontalAlign::kLeft}, {"center", HorizontalAlign::kCenter}, {"right", HorizontalAlign::kRight}};
    static constexpr std::pair<const char*, VerticalAlign> kVerticalAligns[] = {
        {"top", VerticalAlign::kTop}, {"middle", VerticalAlign::kMiddle}, {"bottom", VerticalAlign::kBottom}};
    TextLook& text = control.text;
    for (const auto& [attribute, target] : {std::pair{"text", &text.text}, std::pair{"spoken", &control.spokenName}}) {
        const auto id = element.attribute(attribute);
        if (!id) continue;
        const std::string* found = references_.findString(id.value());
        if (found == nullptr) {
            file_.Fail(element, std::string("no text has the id ") + id.value());
            return true;
        }
        *target = *found;
    }
    text.size *= smallerScale_;
    if (control.kind == ControlKind::kButton) text.align = HorizontalAlign::kCenter;
    bool isBold = false;
    bool wraps = false;
    if (!ReadLength(element, "text-size", text.size)) return false;
    text.smallestSize = text.size;
    if (!ReadLength(element, "min-text-size", text.smallestSize) || !ReadColor(element, "text-color", text.color) ||
        !ReadFlag(element, "bold", isBold) || !ReadFlag(element, "wrap", wraps) ||
        !ReadChoice(element, "align", kAligns, text.align) ||
        !ReadChoice(element, "valign", kVerticalAligns, text.verticalAlign)) {
        return false;
    }
    text.smallestSize = std::min(text.smallestSize, text.size);
    if (text.size <= 0 || text.smallestSize <= 0) return file_.Fail(element, "a text needs a size");
    text.weight = isBold ? FontWeight::kBold : FontWeight::kNormal;
    text.wrap = wraps ? TextWrap::kWords : TextWrap::kOneLine;
    return ReadOptionalColor(element, "text-color-pressed", control.pressedTextColor);
}

bool LayoutReader::ReadColor(const pugi::xml_node& element, const char* name, Rgba& color) {
    const auto attribute = element.attribute(name);
    if (!attribute) return true;
    const auto parsed = ParseColor(attribute.value());
    if (!parsed) return FailValue(element, name, "#RRGGBB or #RRGGBBAA");
    color = *parsed;
    return true;
}

bool LayoutReader::ReadOptionalColor(const pugi::xml_node& element, const char* name, std::optional<Rgba>& color) {
    if (!element.attribute(name)) return true;
    return ReadColor(element, name, color.emplace());
}

bool LayoutReader::ReadLength(const pugi::xml_node& element, const char* name, double& length) {
    const auto attribute = element.attribute(name);
    if (!attribute) return true;
    const auto parsed = ParseNumber(attribute.value());
    if (!parsed || *parsed < 0) return FailValue(element, name, "a number that is not negative");
    length = *parsed * smallerScale_;
    return true;
}

bool LayoutReader::ReadFlag(const pugi::xml_node& element, const char* name, bool& flag) {
    static constexpr std::pair<const char*, bool> kFlags[] = {{"true", true}, {"false", false}};
    return ReadChoice(element, name, kFlags, flag);
}

bool LayoutReader::ReadPicture(const pugi::xml_node& element, const char* name, std::string& fileName) {
    const auto attribute = element.attribute(name);
    if (!attribute) return true;
    fileName = attribute.value();
    if (references_.hasPicture(fileName)) return true;
    file_.Fail(element, "there is no picture " + fileName);
    fileName.clear();
    return true;
}

bool LayoutReader::ReadGradient(const pugi::xml_node& element, BoxLook& box) {
    const auto attribute = element.attribute("gradient");
    if (!attribute) return true;
    const std::string_view text = attribute.value();
    const std::size_t comma = text.find(',');
    if (comma != std::string_view::npos) {
        const auto top = ParseColor(text.substr(0, comma));
        const auto bottom = ParseColor(text.substr(comma + 1));
        if (top && bottom) {
            box.background = *top;
            box.gradientBottom = *bottom;
            return true;
        }
    }
    return FailValue(element, "gradient", "two colours, like #RRGGBB,#RRGGBB");
}

template <typename Value, std::size_t count>
bool LayoutReader::ReadChoice(const pugi::xml_node& element, const char* name,
                              const std::pair<const char*, Value> (&choices)[count], Value& value) {
    const auto attribute = element.attribute(name);
    if (!attribute) return true;
    std::string expected;
    for (const auto& [text, choice] : choices) {
        if (std::string_view(attribute.value()) == text) {
            value = choice;
            return true;
        }
        expected += expected.empty() ? text : std::string(" or ") + text;
    }
    return FailValue(element, name, expected.c_str());
}

bool LayoutReader::FailValue(const pugi::xml_node& element, const char* name, const char* expected) {
    const auto attribute = element.attribute(name);
    const std::string subject = std::string(name) + " of <" + element.name() + ">";
    if (!attribute) return file_.Fail(element, subject + " is missing: it is " + expected);
    return file_.Fail(element, subject + " is " + expected + ", not \"" + attribute.value() + '"');
}

}  // namespace host
