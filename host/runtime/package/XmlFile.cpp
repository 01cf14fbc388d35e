#include "runtime/package/XmlFile.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::size_t kLargestFile = std::size_t{4} * 1024 * 1024;

}  // namespace

std::string XmlFile::Library() {
    constexpr int kMajor = 1000;  // 1130 is 1.13.
    constexpr int kMinor = 10;
    return "pugixml " + std::to_string(PUGIXML_VERSION / kMajor) + '.' +
           std::to_string(PUGIXML_VERSION % kMajor / kMinor);
}

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
    problems_.push_back(path_ + ':' + std::to_string(LineOf(offset)) + ": " + std::string(reason));
    return false;
}

// A file may have as many problems as elements, so the lines are not counted anew for each.
std::size_t XmlFile::LineOf(std::ptrdiff_t offset) {
    if (lineEnds_.empty()) {
        for (auto at = content_.begin(); (at = std::find(at, content_.end(), std::byte{'\n'})) != content_.end();
             ++at) {
            lineEnds_.push_back(at - content_.begin());
        }
    }
    const auto end = std::lower_bound(lineEnds_.begin(), lineEnds_.end(), offset);
    return 1 + static_cast<std::size_t>(end - lineEnds_.begin());
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
