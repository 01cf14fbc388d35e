#include "runtime/package/ToneTable.h"

#include "runtime/package/Values.h"
#include "runtime/package/XmlFile.h"

namespace host {

namespace {

constexpr int kMostMidi = 127;

}  // namespace

void ToneTable::Load(const Storage& storage, std::vector<std::string>& problems) {
    XmlFile file(storage.PackageRoot() + "tones.xml");
    const auto read = [this, &file](const pugi::xml_node& element) {
        if (std::string_view(element.name()) != "tone")
            return file.Fail(element, "<tones> holds <tone> elements and nothing else");
        if (!file.HasOnly(element, {"file", "note"})) return false;
        const std::string name = element.attribute("file").value();
        if (name.empty()) return file.Fail(element, "a <tone> names its file");
        const auto note = ParseWhole(element.attribute("note").value(), 0, kMostMidi);
        if (!note) return file.Fail(element, "a note is a number from 0 to 127");
        return notes_.emplace(name, *note).second || file.Fail(element, "a second <tone> of the file " + name);
    };
    if (file.Load(storage, "tones") && file.HasOnly(file.Root(), {"program"})) {
        if (const auto program = file.Root().attribute("program")) {
            const auto number = ParseWhole(program.value(), 1, kMostMidi + 1);
            if (number) program_ = *number - 1;
            if (!number) file.Fail(file.Root(), "a program is a number from 1 to 128");
        }
        for (const pugi::xml_node element : file.Root().children()) read(element);
    }
    problems.insert(problems.end(), file.Problems().begin(), file.Problems().end());
}

int ToneTable::NoteOf(std::string_view file) const {
    const auto found = notes_.find(file);
    return found == notes_.end() ? -1 : found->second;
}

}  // namespace host
