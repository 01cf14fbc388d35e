#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A settings file's text: `[Section]` lines and `Name=Value` lines, spaces around either ignored, UTF-8. It is edited
/// line by line, so that everything it does not understand (comments, strange lines, line ends, bytes that are no text)
/// stays as it is to the byte. Of sections or entries of one name the first counts. Any thread; files are not its
/// business.
class SettingsDocument {
public:
    /// Takes any bytes.
    explicit SettingsDocument(std::span<const std::byte> content = {});

    /// In the file's order, each name once.
    [[nodiscard]] std::vector<std::string> SectionNames() const;
    [[nodiscard]] bool HasSection(std::string_view section) const;

    enum class Outcome { kDone, kInvalid, kNoSection, kNoEntry, kExists };

    /// kNoSection or kNoEntry leave `value` as it is.
    [[nodiscard]] Outcome Find(std::string_view section, std::string_view key, std::string& value) const;
    /// At the end of the file. kInvalid for a name that could not be read back.
    [[nodiscard]] Outcome AddSection(std::string_view section);
    /// Puts `value` in the entry's place. kInvalid for a value that could not be read back as one line.
    [[nodiscard]] Outcome SetValue(std::string_view section, std::string_view key, std::string_view value);
    /// Adds an entry behind the last one of the section.
    [[nodiscard]] Outcome AddValue(std::string_view section, std::string_view key, std::string_view value);

    [[nodiscard]] std::vector<std::byte> Content() const;

private:
    // A stretch of the text.
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    [[nodiscard]] std::string_view TextOf(Range range) const;
    // The line that begins at `position`, with its line end, which the last one may lack.
    [[nodiscard]] Range LineAt(std::size_t position) const;
    // The lines from the one behind the section's header to the one before the next header.
    [[nodiscard]] bool FindBlock(std::string_view section, Range& block) const;
    [[nodiscard]] Outcome FindLine(std::string_view section, std::string_view key, Range& line) const;
    void InsertLine(std::size_t position, std::string_view line);

    std::string text_;
    std::string_view lineEnd_;
};

}  // namespace host
