#pragma once

#include <cstddef>
#include <functional>
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

    /// False with the problem noted in the file. The file must have been loaded.
    [[nodiscard]] bool Read(LayoutControl& layout);

private:
    // How the design's units inside a container come to the phone's pixels.
    struct Mapping {
        double originX = 0;
        double originY = 0;
        double scaleX = 1;
        double scaleY = 1;
    };

    [[nodiscard]] bool ReadDesign(const pugi::xml_node& element, Mapping& mapping);
    [[nodiscard]] bool ReadControl(const pugi::xml_node& element, const Mapping& mapping, PixelRect parent,
                                   LayoutControl& control);
    [[nodiscard]] bool ReadName(const pugi::xml_node& element, LayoutControl& control);
    [[nodiscard]] bool ReadBounds(const pugi::xml_node& element, const Mapping& mapping, PixelRect& place,
                                  Mapping& inner);
    [[nodiscard]] bool ReadLook(const pugi::xml_node& element, LayoutControl& control);
    [[nodiscard]] bool ReadText(const pugi::xml_node& element, LayoutControl& control);

    // An attribute that is not there leaves the value as it is.
    [[nodiscard]] bool ReadColor(const pugi::xml_node& element, const char* name, Rgba& color);
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
    std::set<std::string> names_;
};

}  // namespace host
