#include "Tizen/Io/Registry.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "Tizen/Base/Collection/ArrayList.h"
#include "Tizen/Base/Collection/SingleObjectDeleter.h"
#include "runtime/Runtime.h"
#include "runtime/settings/SettingsDocument.h"

namespace Tizen {
namespace Io {

using host::Runtime;
using host::SettingsDocument;
using Tizen::Base::String;
using Tizen::Base::Collection::ArrayList;
using Tizen::Base::Collection::IList;
using Tizen::Base::Collection::SingleObjectDeleter;

namespace {

// A settings file has a few hundred bytes; this only keeps a stray file from being taken for one.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

result ToResult(SettingsDocument::Outcome outcome) {
    switch (outcome) {
        case SettingsDocument::Outcome::kDone:
            return E_SUCCESS;
        case SettingsDocument::Outcome::kInvalid:
            return E_INVALID_ARG;
        case SettingsDocument::Outcome::kNoSection:
            return E_SECTION_NOT_FOUND;
        case SettingsDocument::Outcome::kNoEntry:
            return E_KEY_NOT_FOUND;
        case SettingsDocument::Outcome::kExists:
            return E_OBJ_ALREADY_EXIST;
    }
    return E_FAILURE;
}

// A file may hold NULs, in names and in values.
String ToText(const std::string& bytes) {
    return String::FromUtf8(bytes.data(), static_cast<int>(bytes.size()));
}

// Does once more what was done to the document that was read. The file may have been changed by another program since.
template <typename Changes>
SettingsDocument Repeated(const Changes& changes, std::span<const std::byte> content) {
    using Outcome = SettingsDocument::Outcome;
    SettingsDocument document(content);
    for (const auto& change : changes) {
        if (!document.HasSection(change.section)) static_cast<void>(document.AddSection(change.section));
        if (change.key.empty()) continue;
        if (document.SetValue(change.section, change.key, change.value) == Outcome::kDone) continue;
        static_cast<void>(document.AddValue(change.section, change.key, change.value));
    }
    return document;
}

void Say(const std::string& path, const char* problem) {
    Runtime::Current().GetConsole().SayOnce("settings file " + path + ": " + problem);
}

// Empty, unless another program has made it meanwhile.
bool MakeFile(host::Storage& storage, const std::string& path) {
    return storage.Update(path, kMostBytes, [](std::span<const std::byte> content) {
        return std::vector<std::byte>(content.begin(), content.end());
    });
}

}  // namespace

struct Registry::Opened {
    struct Change {
        std::string section;
        std::string key;  // empty for a new section
        std::string value;
    };

    std::string path;
    SettingsDocument document;
    std::vector<Change> unwritten;
};

Registry::Registry() = default;

Registry::~Registry() = default;

result Registry::Construct(const String& path, bool createIfMissing) {
    if (pOpened_ != nullptr) return E_INVALID_STATE;
    auto pOpened = std::make_unique<Opened>();
    pOpened->path = path.ToUtf8();
    host::Storage& storage = Runtime::Current().GetStorage();
    if (storage.DataRoot().empty()) return E_IO;  // There is no place for files, which was told at the start.
    std::vector<std::byte> content;
    switch (storage.Read(pOpened->path, kMostBytes, content)) {
        case host::ReadOutcome::kRead:
            pOpened->document = SettingsDocument(content);
            break;
        case host::ReadOutcome::kMissing:
            if (!createIfMissing) return E_FILE_NOT_FOUND;
            if (!MakeFile(storage, pOpened->path)) {
                Say(pOpened->path, "cannot be made; settings are not kept");
                return E_IO;
            }
            break;
        case host::ReadOutcome::kTooLarge:
            Say(pOpened->path, "too large for settings; it is left alone and the defaults are used");
            return E_IO;
        case host::ReadOutcome::kNotAFile:
        case host::ReadOutcome::kFailed:
            Say(pOpened->path, "cannot be read; it is left alone and the defaults are used");
            return E_IO;
    }
    pOpened_ = std::move(pOpened);
    return E_SUCCESS;
}

IList* Registry::GetAllSectionNamesN() const {
    auto pNames = std::make_unique<ArrayList>(SingleObjectDeleter);
    if (pOpened_ != nullptr) {
        for (const std::string& name : pOpened_->document.SectionNames()) pNames->Add(new String(ToText(name)));
    }
    return pNames.release();
}

result Registry::AddSection(const String& section) {
    if (pOpened_ == nullptr) return E_INVALID_STATE;
    const SettingsDocument::Outcome outcome = pOpened_->document.AddSection(section.ToUtf8());
    if (outcome == SettingsDocument::Outcome::kDone) pOpened_->unwritten.push_back({section.ToUtf8(), {}, {}});
    return ToResult(outcome);
}

result Registry::GetValue(const String& section, const String& key, String& value) const {
    if (pOpened_ == nullptr) return E_INVALID_STATE;
    std::string text;
    const SettingsDocument::Outcome outcome = pOpened_->document.Find(section.ToUtf8(), key.ToUtf8(), text);
    if (outcome == SettingsDocument::Outcome::kDone) value = ToText(text);
    return ToResult(outcome);
}

result Registry::SetValue(const String& section, const String& key, const String& value) {
    return Write(section, key, value, Entry::kPresent);
}

result Registry::AddValue(const String& section, const String& key, const String& value) {
    return Write(section, key, value, Entry::kNew);
}

result Registry::Write(const String& section, const String& key, const String& value, Entry entry) {
    if (pOpened_ == nullptr) return E_INVALID_STATE;
    Opened::Change change{section.ToUtf8(), key.ToUtf8(), value.ToUtf8()};
    SettingsDocument& document = pOpened_->document;
    const SettingsDocument::Outcome outcome = entry == Entry::kNew
                                                  ? document.AddValue(change.section, change.key, change.value)
                                                  : document.SetValue(change.section, change.key, change.value);
    if (outcome != SettingsDocument::Outcome::kDone) return ToResult(outcome);
    pOpened_->unwritten.push_back(std::move(change));
    return E_SUCCESS;
}

result Registry::Flush() {
    if (pOpened_ == nullptr) return E_INVALID_STATE;
    if (pOpened_->unwritten.empty()) return E_SUCCESS;
    const auto edit = [this](std::span<const std::byte> content) -> std::optional<std::vector<std::byte>> {
        pOpened_->document = Repeated(pOpened_->unwritten, content);
        std::vector<std::byte> edited = pOpened_->document.Content();
        // A file that has grown beyond what is read would be lost to the next access.
        if (edited.size() > kMostBytes) return std::nullopt;
        return edited;
    };
    if (!Runtime::Current().GetStorage().Update(pOpened_->path, kMostBytes, edit)) {
        Say(pOpened_->path, "cannot be written; the settings in it stay as they were");
        return E_IO;
    }
    for (const Opened::Change& change : pOpened_->unwritten) {
        if (change.key.empty()) continue;
        Runtime::Current()
            .GetTrace()
            .Add("settings", "write")
            .Text("section", change.section)
            .Text("key", change.key)
            .Text("value", change.value);
    }
    pOpened_->unwritten.clear();
    return E_SUCCESS;
}

}  // namespace Io
}  // namespace Tizen
