// A settings file of any bytes: what is written is read back, and every other byte stays.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "Require.h"
#include "runtime/settings/SettingsDocument.h"

namespace {

using host::SettingsDocument;

std::string TextOf(const SettingsDocument& document) {
    const auto content = document.Content();
    return {reinterpret_cast<const char*>(content.data()), content.size()};
}

// How many bytes at both ends together are the same in both, at most all of the shorter one.
std::size_t CommonBytes(std::string_view before, std::string_view after) {
    const std::size_t most = std::min(before.size(), after.size());
    const auto front = static_cast<std::size_t>(
        std::mismatch(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(most), after.begin()).first -
        before.begin());
    std::size_t back = 0;
    while (back < most - front && before[before.size() - 1 - back] == after[after.size() - 1 - back]) ++back;
    return front + back;
}

// Takes the first line off the input.
std::string TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string line(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

}  // namespace

// Three lines, a section's name, an entry's and a value, and then the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string section = TakeLine(rest);
    const std::string key = TakeLine(rest);
    const std::string value = TakeLine(rest);
    SettingsDocument document(std::as_bytes(std::span(rest)));
    Require(TextOf(document) == rest, "what is not changed stays to the byte");

    using Outcome = SettingsDocument::Outcome;
    const auto knownBefore = document.SectionNames();
    const Outcome added = document.AddSection(section);
    Require((added == Outcome::kDone) == (TextOf(document) != rest), "a refusal changes nothing");
    Require(CommonBytes(rest, TextOf(document)) == rest.size(), "a section is only added");
    Require(added == Outcome::kInvalid || document.HasSection(section), "a section that was added is there");
    Require(document.SectionNames().size() == knownBefore.size() + (added == Outcome::kDone ? 1 : 0),
            "it is one section, and none is lost");

    const std::string before = TextOf(document);
    std::string old;
    const bool wasThere = document.Find(section, key, old) == Outcome::kDone;
    const Outcome written = wasThere ? document.SetValue(section, key, value) : document.AddValue(section, key, value);
    const std::string after = TextOf(document);
    if (written != Outcome::kDone) {
        Require(after == before, "a refusal changes nothing");
        return 0;
    }
    std::string found;
    Require(document.Find(section, key, found) == Outcome::kDone, "what is written is there");
    // Blanks around a value are no part of it.
    const std::size_t first = value.find_first_not_of(" \t\r");
    const std::string trimmed =
        first == value.npos ? std::string() : value.substr(first, value.find_last_not_of(" \t\r") + 1 - first);
    Require(found == trimmed, "what is written is read back");
    Require(CommonBytes(before, after) + (wasThere ? old.size() : 0) >= before.size(), "every other byte stays");
    Require(document.SectionNames() == SettingsDocument(std::as_bytes(std::span(after))).SectionNames(),
            "what was written reads the same from the disk");
    return 0;
}
