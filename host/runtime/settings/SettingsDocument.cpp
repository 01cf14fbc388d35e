#include "runtime/settings/SettingsDocument.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

namespace host {

namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kInnerBlanks = " \t";
constexpr std::string_view kLineBreaks = "\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";  // some editors open a UTF-8 file with it

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

// A line's content without line end and surrounding blanks.
std::string_view ContentOf(std::string_view line) {
    if (line.ends_with('\n')) line.remove_suffix(1);
    return Trimmed(line);
}

bool IsComment(std::string_view content) {
    return content.starts_with('#') || content.starts_with(';');
}

std::optional<std::string_view> SectionOf(std::string_view line) {
    const std::string_view content = ContentOf(line);
    if (content.size() < 2 || !content.starts_with('[') || !content.ends_with(']')) return std::nullopt;
    return Trimmed(content.substr(1, content.size() - 2));
}

bool IsEntry(std::string_view line, std::string_view key) {
    const std::string_view content = ContentOf(line);
    const std::size_t equals = content.find('=');
    return equals != std::string_view::npos && !IsComment(content) && Trimmed(content.substr(0, equals)) == key;
}

// Of an entry's line.
std::string_view ValueOf(std::string_view line) {
    const std::string_view content = ContentOf(line);
    return Trimmed(content.substr(content.find('=') + 1));
}

bool IsOneLine(std::string_view text) {
    return text.find_first_of(kLineBreaks) == std::string_view::npos;
}

bool IsSectionName(std::string_view name) {
    return !name.empty() && Trimmed(name) == name && IsOneLine(name);
}

bool IsKey(std::string_view name) {
    return IsSectionName(name) && name.find('=') == std::string_view::npos && !IsComment(name) &&
           !name.starts_with('[');
}

}  // namespace

SettingsDocument::SettingsDocument(std::span<const std::byte> content)
    : text_(reinterpret_cast<const char*>(content.data()), content.size()), lineEnd_("\n") {
    if (TextOf(LineAt(0)).ends_with("\r\n")) lineEnd_ = "\r\n";
}

std::string_view SettingsDocument::TextOf(Range range) const {
    return std::string_view(text_).substr(range.begin, range.end - range.begin);
}

SettingsDocument::Range SettingsDocument::LineAt(std::size_t position) const {
    if (position == 0 && text_.starts_with(kByteOrderMark)) position = kByteOrderMark.size();
    const std::size_t lineBreak = text_.find('\n', position);
    return {position, lineBreak == std::string::npos ? text_.size() : lineBreak + 1};
}

std::vector<std::string> SettingsDocument::SectionNames() const {
    std::vector<std::string> names;
    std::unordered_set<std::string_view> known;
    Range line;
    while (line.end < text_.size()) {
        line = LineAt(line.end);
        const auto name = SectionOf(TextOf(line));
        if (name && known.insert(*name).second) names.emplace_back(*name);
    }
    return names;
}

bool SettingsDocument::HasSection(std::string_view section) const {
    Range block;
    return FindBlock(section, block);
}

bool SettingsDocument::FindBlock(std::string_view section, Range& block) const {
    Range line;
    bool isFound = false;
    while (line.end < text_.size()) {
        line = LineAt(line.end);
        const auto name = SectionOf(TextOf(line));
        if (isFound && name) return true;
        if (name == section) {
            isFound = true;
            block.begin = line.end;
        }
        block.end = line.end;
    }
    return isFound;
}

SettingsDocument::Outcome SettingsDocument::FindLine(std::string_view section, std::string_view key,
                                                     Range& line) const {
    Range block;
    if (!FindBlock(section, block)) return Outcome::kNoSection;
    for (std::size_t position = block.begin; position < block.end; position = line.end) {
        line = LineAt(position);
        if (IsEntry(TextOf(line), key)) return Outcome::kDone;
    }
    return Outcome::kNoEntry;
}

SettingsDocument::Outcome SettingsDocument::Find(std::string_view section, std::string_view key,
                                                 std::string& value) const {
    Range line;
    const Outcome outcome = FindLine(section, key, line);
    if (outcome != Outcome::kDone) return outcome;
    value = ValueOf(TextOf(line));
    return Outcome::kDone;
}

SettingsDocument::Outcome SettingsDocument::AddSection(std::string_view section) {
    if (!IsSectionName(section)) return Outcome::kInvalid;
    if (HasSection(section)) return Outcome::kExists;
    std::string line(1, '[');
    line.append(section);
    line += ']';
    InsertLine(text_.size(), line);
    return Outcome::kDone;
}

SettingsDocument::Outcome SettingsDocument::SetValue(std::string_view section, std::string_view key,
                                                     std::string_view value) {
    if (!IsOneLine(value)) return Outcome::kInvalid;
    Range line;
    const Outcome outcome = FindLine(section, key, line);
    if (outcome != Outcome::kDone) return outcome;
    const std::string_view old = ValueOf(TextOf(line));
    std::size_t begin = static_cast<std::size_t>(old.data() - text_.data());
    if (old.empty()) {
        const std::size_t behindEquals = text_.find('=', line.begin) + 1;
        begin = std::min(text_.find_first_not_of(kInnerBlanks, behindEquals), text_.size());
    }
    text_.replace(begin, old.size(), value);
    return Outcome::kDone;
}

SettingsDocument::Outcome SettingsDocument::AddValue(std::string_view section, std::string_view key,
                                                     std::string_view value) {
    if (!IsKey(key) || !IsOneLine(value)) return Outcome::kInvalid;
    Range line;
    const Outcome outcome = FindLine(section, key, line);
    if (outcome == Outcome::kDone) return Outcome::kExists;
    if (outcome == Outcome::kNoSection) return outcome;

    // Behind the last line that says something: empty lines at a section's end set the next one apart and stay there.
    Range block;
    if (!FindBlock(section, block)) return Outcome::kNoSection;
    std::size_t behind = block.begin;
    for (std::size_t position = block.begin; position < block.end; position = line.end) {
        line = LineAt(position);
        if (!ContentOf(TextOf(line)).empty()) behind = line.end;
    }
    InsertLine(behind, std::string(key) + "=" + std::string(value));
    return Outcome::kDone;
}

void SettingsDocument::InsertLine(std::size_t position, std::string_view line) {
    std::string inserted(line);
    inserted += lineEnd_;
    const std::string_view before = std::string_view(text_).substr(0, position);
    if (!before.empty() && before != kByteOrderMark && !before.ends_with('\n')) inserted.insert(0, lineEnd_);
    text_.insert(position, inserted);
}

std::vector<std::byte> SettingsDocument::Content() const {
    const auto* bytes = reinterpret_cast<const std::byte*>(text_.data());
    return {bytes, bytes + text_.size()};
}

}  // namespace host
