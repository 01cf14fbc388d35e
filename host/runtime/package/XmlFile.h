#pragma once

#include <cstddef>
#include <initializer_list>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "backend/Storage.h"

namespace host {

/// One XML file of the package, and what is wrong with it, each as "FILE:LINE: reason".
class XmlFile {
public:
    /// The library that parses, with its version.
    [[nodiscard]] static std::string Library();

    explicit XmlFile(std::string path) : path_(std::move(path)) {}

    /// False with the problem noted when the file cannot be read, is no XML, or its root element is not `rootName` (any
    /// name will do where that is empty).
    [[nodiscard]] bool Load(const Storage& storage, std::string_view rootName = {});
    [[nodiscard]] pugi::xml_node Root() const { return document_.document_element(); }

    /// Notes a problem at the node's line. Always false, so that a reader can return it.
    bool Fail(const pugi::xml_node& node, std::string_view reason);
    /// False with the problem noted when the element has an attribute that is none of `names`.
    [[nodiscard]] bool HasOnly(const pugi::xml_node& element, std::initializer_list<std::string_view> names);
    /// In the order in which they were found; none when all is well.
    [[nodiscard]] const std::vector<std::string>& Problems() const { return problems_; }

private:
    bool FailAt(std::ptrdiff_t offset, std::string_view reason);
    [[nodiscard]] std::size_t LineOf(std::ptrdiff_t offset);

    std::string path_;
    std::vector<std::byte> content_;
    std::vector<std::ptrdiff_t> lineEnds_;  ///< offsets, found when the first problem needs them
    pugi::xml_document document_;
    std::vector<std::string> problems_;
};

}  // namespace host
