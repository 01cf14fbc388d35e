#include "runtime/package/Package.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

#include "runtime/package/KeyCodeNames.h"
#include "runtime/package/LayoutReader.h"
#include "runtime/package/Values.h"
#include "runtime/package/XmlFile.h"

namespace host {

namespace {

constexpr std::string_view kFallbackLanguage = "en";
constexpr std::string_view kXmlSuffix = ".xml";
constexpr std::size_t kLargestPicture = std::size_t{32} * 1024 * 1024;

bool IsPlainFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\\\0", 3)) == name.npos;
}

bool Contains(const LayoutControl& control, std::string_view name) {
    return control.name == name || std::any_of(control.children.begin(), control.children.end(),
                                               [name](const LayoutControl& child) { return Contains(child, name); });
}

std::optional<PhoneKey> PhoneKeyOf(std::string_view name) {
    if (name == "back") return PhoneKey::kBack;
    if (name == "volume-up") return PhoneKey::kVolumeUp;
    if (name == "volume-down") return PhoneKey::kVolumeDown;
    return std::nullopt;
}

// Adds the texts to those that are there, which stay.
bool ReadStrings(XmlFile& file, std::string_view language, std::map<std::string, std::string, std::less<>>& strings) {
    const pugi::xml_node root = file.Root();
    if (!file.HasOnly(root, {"language"})) return false;
    if (root.attribute("language").value() != language) {
        return file.Fail(root, "language of <strings> is \"" + std::string(language) + "\", as the file's name says");
    }
    std::map<std::string, std::string, std::less<>> read;
    for (const pugi::xml_node element : root.children()) {
        if (std::string_view(element.name()) != "string") {
            return file.Fail(element, "<strings> holds <string> elements and nothing else");
        }
        if (!file.HasOnly(element, {"id"})) return false;
        const std::string id = element.attribute("id").value();
        if (id.empty()) return file.Fail(element, "a <string> without an id");
        std::string text;
        for (const pugi::xml_node part : element.children()) {
            if (part.type() == pugi::node_element) return file.Fail(part, "a <string> holds nothing but text");
            text += part.value();
        }
        if (!read.emplace(id, std::move(text)).second) return file.Fail(element, "a second text with the id " + id);
    }
    strings.merge(read);
    return true;
}

// The one effect of a <key>; false with the problem noted.
bool ReadEffect(XmlFile& file, const pugi::xml_node& element, KeyBinding& binding) {
    const auto touch = element.attribute("touch");
    const auto at = element.attribute("at");
    const auto breath = element.attribute("breath");
    const auto phone = element.attribute("phone");
    if (int{!touch.empty()} + int{!breath.empty()} + int{!phone.empty()} != 1 || (at && !touch)) {
        return file.Fail(element, "a <key> has one of touch (with at), breath and phone");
    }
    const auto isFraction = [](double value) { return value >= 0 && value <= 1; };
    if (touch) {
        constexpr double kCenter = 0.5;
        TouchBinding effect{touch.value(), {kCenter, kCenter}};
        if (at) {
            const auto place = ParseNumbers(at.value());
            if (!place || place->size() != 2 || !isFraction((*place)[0]) || !isFraction((*place)[1])) {
                return file.Fail(element, "at of <key> is two numbers of 0 to 1, like 0.25,0.75");
            }
            effect.fraction = {(*place)[0], (*place)[1]};
        }
        binding.effect = std::move(effect);
    } else if (breath) {
        const auto level = ParseNumber(breath.value());
        if (!level || !isFraction(*level)) return file.Fail(element, "breath of <key> is a number of 0 to 1");
        binding.effect = BreathBinding{*level};
    } else {
        const auto key = PhoneKeyOf(phone.value());
        if (!key) return file.Fail(element, "phone of <key> is back or volume-up or volume-down");
        binding.effect = *key;
    }
    return true;
}

}  // namespace

bool Package::ChooseLanguage(const Storage& storage, const Options& options, std::string& language,
                             std::string& problem) {
    const std::vector<std::string> files = storage.List(storage.PackageRoot() + "strings/");
    const auto hasTexts = [&files](const std::string& name) {
        return std::find(files.begin(), files.end(), name + std::string(kXmlSuffix)) != files.end();
    };
    language = options.language ? *options.language : options.preferredLanguage;
    if (hasTexts(language)) return true;
    if (!options.language) {
        language = kFallbackLanguage;
        return true;
    }
    problem = "--language: there are no texts in \"" + language + "\"; there are";
    for (const std::string& file : files) {
        if (file.size() > kXmlSuffix.size()) problem += ' ' + file.substr(0, file.size() - kXmlSuffix.size());
    }
    return false;
}

bool Package::Load(Storage& storage, Painter& painter, std::string_view language, PixelSize screen, Console& console,
                   std::string& problem) {
    storage_ = &storage;
    painter_ = &painter;
    console_ = &console;
    return LoadStrings(language, problem) && LoadLayouts(screen, problem) && LoadKeys(problem);
}

bool Package::LoadStrings(std::string_view language, std::string& problem) {
    const auto load = [this, &problem](std::string_view name) {
        XmlFile file(storage_->PackageRoot() + "strings/" + std::string(name) + std::string(kXmlSuffix));
        if (file.Load(*storage_, "strings") && ReadStrings(file, name, strings_)) return true;
        problem = file.Problem();
        return false;
    };
    const std::string ownFile = std::string(language) + std::string(kXmlSuffix);
    const bool hasOwn = language != kFallbackLanguage && IsPlainFileName(ownFile) &&
                        storage_->Stat(storage_->PackageRoot() + "strings/" + ownFile).has_value();
    // The chosen language first: what it has is not replaced.
    return (!hasOwn || load(language)) && load(kFallbackLanguage);
}

bool Package::LoadLayouts(PixelSize screen, std::string& problem) {
    const std::string folder = storage_->PackageRoot() + "layouts/";
    LayoutReferences references;
    references.findString = [this](std::string_view id) { return FindString(id); };
    references.hasPicture = [this](const std::string& fileName) { return HasPicture(fileName); };
    for (const std::string& name : storage_->List(folder)) {
        if (name.size() <= kXmlSuffix.size() || name.substr(name.size() - kXmlSuffix.size()) != kXmlSuffix) continue;
        XmlFile file(folder + name);
        LayoutControl layout;
        bool isRead = file.Load(*storage_) && LayoutReader(file, screen, references).Read(layout);
        if (isRead && layout.name + std::string(kXmlSuffix) != name) {
            isRead = file.Fail(file.Root(), "the layout is named " + layout.name + ", unlike its file");
        }
        if (!isRead) {
            problem = file.Problem();
            return false;
        }
        layouts_.emplace(layout.name, std::move(layout));
    }
    if (layouts_.empty()) problem = folder + ": there are no layouts";
    return !layouts_.empty();
}

bool Package::LoadKeys(std::string& problem) {
    XmlFile file(storage_->PackageRoot() + "keys.xml");
    const auto read = [this, &file](const pugi::xml_node& element) {
        if (std::string_view(element.name()) != "key")
            return file.Fail(element, "<keys> holds <key> elements and nothing else");
        if (!file.HasOnly(element, {"code", "touch", "at", "breath", "phone"})) return false;
        KeyBinding binding;
        binding.code = element.attribute("code").value();
        if (!IsKeyCode(binding.code)) return file.Fail(element, "no key has the code \"" + binding.code + '"');
        if (std::any_of(keys_.begin(), keys_.end(),
                        [&](const KeyBinding& other) { return other.code == binding.code; })) {
            return file.Fail(element, "a second <key> with the code " + binding.code);
        }
        if (!ReadEffect(file, element, binding)) return false;
        const auto* touch = std::get_if<TouchBinding>(&binding.effect);
        if (touch != nullptr && !HasControl(touch->control)) {
            return file.Fail(element, "no layout has a control " + touch->control);
        }
        keys_.push_back(std::move(binding));
        return true;
    };
    bool isRead = file.Load(*storage_, "keys");
    if (isRead) {
        const auto elements = file.Root().children();
        isRead = file.HasOnly(file.Root(), {}) && std::all_of(elements.begin(), elements.end(), read);
    }
    if (!isRead) problem = file.Problem();
    return isRead;
}

const LayoutControl* Package::FindLayout(std::string_view name) const {
    const auto found = layouts_.find(name);
    return found == layouts_.end() ? nullptr : &found->second;
}

bool Package::HasControl(std::string_view name) const {
    return std::any_of(layouts_.begin(), layouts_.end(),
                       [name](const auto& layout) { return Contains(layout.second, name); });
}

const std::string* Package::FindString(std::string_view id) const {
    const auto found = strings_.find(id);
    return found == strings_.end() ? nullptr : &found->second;
}

bool Package::HasPicture(const std::string& fileName) const {
    return IsPlainFileName(fileName) && storage_->Stat(storage_->PackageRoot() + "images/" + fileName).has_value();
}

std::shared_ptr<const Picture> Package::FindPicture(const std::string& fileName) const {
    const auto found = pictures_.find(fileName);
    if (found != pictures_.end()) return found->second;
    if (!HasPicture(fileName)) return nullptr;
    const std::string path = storage_->PackageRoot() + "images/" + fileName;
    std::vector<std::byte> content;
    std::shared_ptr<const Picture> picture;
    if (storage_->Read(path, kLargestPicture, content) == ReadOutcome::kRead)
        picture = painter_->DecodePicture(content);
    if (!picture) console_->SayOnce(path + ": the picture does not decode");
    return pictures_.emplace(fileName, std::move(picture)).first->second;
}

}  // namespace host
