#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "runtime/package/Layout.h"
#include "runtime/package/XmlFile.h"

namespace host {

/// What a layout refers to elsewhere in the package.
struct LayoutReferences {
    /// Null for an unknown id.
    std::function<const std::string*(std::string_view id)> findString;
    std::function<bool(const std::string& fileName)> hasPicture;
};

/// Reads one layout file and scales it to the phone's screen. For one file and one reading.
class LayoutReader {
public:
    /// The references must outlive the reader.
    LayoutReader(XmlFile& file, PixelSize screen, const LayoutReferences& references)
        : file_(file), screen_(screen), references_(references) {}

    /// What is wrong is noted in the file, which must have been loaded. A control that cannot be made is left out with
    /// what it contains, and a text or a picture that is not there is, too; false when nothing is left of the layout.
    [[nodiscard]] bool Read(LayoutControl& layout);

private:
    // How the design's units inside a container come to the phone's pixels along one axis.
    struct Axis {
        double origin = 0;  ///< where the container begins, in pixels
        double scale = 1;   ///< pixels a unit
        double units = 0;   ///< the container's size
    };
    struct Mapping {
        Axis x;
        Axis y;
    };
    // A control's extent along one axis, in pixels.
    struct Span {
        double begin = 0;
        double size = 0;
    };
    // What a control's place along one axis holds on to when the screen has other proportions than the design.
    enum class Hold {
        kStretch,  ///< place and size follow the container's scale
        kBegin,    ///< the distance to the container's left or upper side and the size follow the smaller scale
        kMiddle,   ///< the same with the distance to its middle
        kEnd,      ///< the same with the distance to its right or lower side
        kSides     ///< the distances to both sides follow the smaller scale, the size is what is left
    };
    enum class Shape {
        kBox,
        kRound,  ///< the size follows the smaller scale
        kCircle  ///< the largest circle in the box, or a share of it
    };

    [[nodiscard]] bool ReadDesign(const pugi::xml_node& element, Mapping& mapping);
    [[nodiscard]] bool ReadControl(const pugi::xml_node& element, const Mapping& mapping, PixelRect parent, int depth,
                                   LayoutControl& control);
    [[nodiscard]] bool ReadChild(const pugi::xml_node& child, const pugi::xml_node& element, const Mapping& mapping,
                                 PixelRect parent, int depth, LayoutControl& control);
    [[nodiscard]] bool ReadName(const pugi::xml_node& element, LayoutControl& control);
    [[nodiscard]] Span PlaceAlong(const Axis& axis, double begin, double size, Hold hold) const;
    [[nodiscard]] bool PlaceCircle(const pugi::xml_node& element, Span& x, Span& y);
    /// Of the attribute `name`, which is bounds or client.
    [[nodiscard]] bool ReadPlace(const pugi::xml_node& element, const char* name, const Mapping& mapping,
                                 PixelRect& place, Mapping& inner);
    [[nodiscard]] bool ReadLook(const pugi::xml_node& element, LayoutControl& control);
    [[nodiscard]] bool ReadText(const pugi::xml_node& element, LayoutControl& control);

    // An attribute that is not there leaves the value as it is.
    [[nodiscard]] bool ReadColor(const pugi::xml_node& element, const char* name, Rgba& color);
    [[nodiscard]] bool ReadOptionalColor(const pugi::xml_node& element, const char* name, std::optional<Rgba>& color);
    [[nodiscard]] bool ReadLength(const pugi::xml_node& element, const char* name, double& length);
    [[nodiscard]] bool ReadFlag(const pugi::xml_node& element, const char* name, bool& flag);
    [[nodiscard]] bool ReadPicture(const pugi::xml_node& element, const char* name, std::string& fileName);
    [[nodiscard]] bool ReadGradient(const pugi::xml_node& element, BoxLook& box);
    template <typename Value, std::size_t count>
    [[nodiscard]] bool ReadChoice(const pugi::xml_node& element, const char* name,
                                  const std::pair<const char*, Value> (&choices)[count], Value& value);
    bool FailValue(const pugi::xml_node& element, const char* name, const char* expected);

    XmlFile& file_;
    PixelSize screen_;
    const LayoutReferences& references_;
    double smallerScale_ = 1;
    std::int64_t pixels_ = 0;  ///< of all controls so far
    std::set<std::string> names_;
};

}  // namespace host
