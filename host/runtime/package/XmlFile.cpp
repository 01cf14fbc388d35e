#include "runtime/package/XmlFile.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::size_t kLargestFile = std::size_t{4} * 1024 * 1024;

}  // namespace

bool XmlFile::Load(const Storage& storage, std::string_view rootName) {
    const ReadOutcome outcome = storage.Read(path_, kLargestFile, content_);
    if (outcome != ReadOutcome::kRead) {
        problems_.push_back(path_ + ": " + std::string(ReasonOf(outcome)));
        return false;
    }
    const auto parsed =
        document_.load_buffer(content_.data(), content_.size(), pugi::parse_default, pugi::encoding_utf8);
    if (!parsed) return FailAt(parsed.offset, parsed.description());
    if (!rootName.empty() && Root().name() != rootName) {
        return Fail(Root(), "the root element must be <" + std::string(rootName) + ">");
    }
    return true;
}

bool XmlFile::Fail(const pugi::xml_node& node, std::string_view reason) {
    return FailAt(node.offset_debug(), reason);
}

bool XmlFile::FailAt(std::ptrdiff_t offset, std::string_view reason) {
    const auto end =
        content_.begin() + std::clamp<std::ptrdiff_t>(offset, 0, static_cast<std::ptrdiff_t>(content_.size()));
    const auto line = 1 + std::count(content_.begin(), end, std::byte{'\n'});
    problems_.push_back(path_ + ':' + std::to_string(line) + ": " + std::string(reason));
    return false;
}

bool XmlFile::HasOnly(const pugi::xml_node& element, std::initializer_list<std::string_view> names) {
    for (const pugi::xml_attribute attribute : element.attributes()) {
        if (std::find(names.begin(), names.end(), attribute.name()) == names.end()) {
            return Fail(element, std::string("unknown attribute ") + attribute.name() + " of <" + element.name() + ">");
        }
    }
    return true;
}

}  // namespace host
