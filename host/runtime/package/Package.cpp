#include "runtime/package/Package.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "png/PngPicture.h"
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

// A pixel 0xAARRGGBB.
Rgba FromArgb(std::uint32_t pixel) {
    constexpr int kAlphaShift = 24;
    constexpr int kRedShift = 16;
    constexpr int kGreenShift = 8;
    const auto channel = [pixel](int shift) { return static_cast<std::uint8_t>(pixel >> shift); };
    return {channel(kRedShift), channel(kGreenShift), channel(0), channel(kAlphaShift)};
}

bool Contains(const LayoutControl& control, std::string_view name) {
    return control.name == name || std::any_of(control.children.begin(), control.children.end(),
                                               [name](const LayoutControl& child) { return Contains(child, name); });
}

// Adds the texts to those that are there, which stay. What is no text is noted and left out.
void ReadStrings(XmlFile& file, std::string_view language, std::map<std::string, std::string, std::less<>>& strings) {
    const pugi::xml_node root = file.Root();
    if (!file.HasOnly(root, {"language"})) return;
    if (root.attribute("language").value() != language) {
        file.Fail(root, "language of <strings> is \"" + std::string(language) + "\", as the file's name says");
        return;
    }
    std::map<std::string, std::string, std::less<>> read;
    const auto readOne = [&file, &read](const pugi::xml_node& element) {
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
        return read.emplace(id, std::move(text)).second || file.Fail(element, "a second text with the id " + id);
    };
    for (const pugi::xml_node element : root.children()) readOne(element);
    strings.merge(read);
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
        const auto key = PhoneKeyNamed(phone.value());
        if (!key) return file.Fail(element, "phone of <key> is back or volume-up or volume-down");
        binding.effect = *key;
    }
    return true;
}

}  // namespace

std::string Package::XmlLibrary() {
    return XmlFile::Library();
}

bool Package::ChooseLanguage(const Storage& storage, const Options& options, std::string& language,
                             std::string& problem) {
    const std::vector<std::string> files = storage.List(storage.PackageRoot() + "strings/");
    const auto hasTexts = [&files](const std::string& name) {
        return std::find(files.begin(), files.end(), name + std::string(kXmlSuffix)) != files.end();
    };
    language = options.language ? *options.language : options.preferredLanguage;
    // A package without English is told of when its texts are read.
    if (language == kFallbackLanguage || hasTexts(language)) return true;
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

std::vector<std::string> Package::Load(Storage& storage, Painter& painter, std::string_view language, PixelSize screen,
                                       Console& console) {
    storage_ = &storage;
    painter_ = &painter;
    console_ = &console;
    Problems problems;
    LoadStrings(language, problems);
    LoadLayouts(screen, problems);
    LoadKeys(problems);
    return problems;
}

void Package::LoadStrings(std::string_view language, Problems& problems) {
    const auto load = [this, &problems](std::string_view name) {
        XmlFile file(storage_->PackageRoot() + "strings/" + std::string(name) + std::string(kXmlSuffix));
        if (file.Load(*storage_, "strings")) ReadStrings(file, name, strings_);
        problems.insert(problems.end(), file.Problems().begin(), file.Problems().end());
    };
    const std::string ownFile = std::string(language) + std::string(kXmlSuffix);
    const bool hasOwn = language != kFallbackLanguage && IsPlainFileName(ownFile) &&
                        storage_->Stat(storage_->PackageRoot() + "strings/" + ownFile).has_value();
    // The chosen language first: what it has is not replaced.
    if (hasOwn) load(language);
    load(kFallbackLanguage);
}

void Package::LoadLayouts(PixelSize screen, Problems& problems) {
    const std::string folder = storage_->PackageRoot() + "layouts/";
    LayoutReferences references;
    references.findString = [this](std::string_view id) { return FindString(id); };
    references.hasPicture = [this](const std::string& fileName) { return HasPicture(fileName); };
    for (const std::string& name : storage_->List(folder)) {
        if (name.size() <= kXmlSuffix.size() || name.substr(name.size() - kXmlSuffix.size()) != kXmlSuffix) continue;
        const std::string expectedName = name.substr(0, name.size() - kXmlSuffix.size());
        XmlFile file(folder + name);
        LayoutControl layout;
        bool isRead = file.Load(*storage_) && LayoutReader(file, screen, references).Read(layout);
        if (isRead && layout.name != expectedName) {
            isRead = file.Fail(file.Root(), "the layout is named " + layout.name + ", unlike its file");
        }
        problems.insert(problems.end(), file.Problems().begin(), file.Problems().end());
        if (isRead) {
            if (!layout.drawnPicture.empty()) toDecode_.push_front(layout.drawnPicture);
            layouts_.emplace(layout.name, std::move(layout));
        } else {
            brokenLayouts_.insert(expectedName);
        }
    }
}

void Package::LoadKeys(Problems& problems) {
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
    if (file.Load(*storage_, "keys") && file.HasOnly(file.Root(), {})) {
        for (const pugi::xml_node element : file.Root().children()) read(element);
    }
    problems.insert(problems.end(), file.Problems().begin(), file.Problems().end());
}

const LayoutControl* Package::FindLayout(std::string_view name) const {
    const auto found = layouts_.find(name);
    if (found != layouts_.end()) return &found->second;
    if (brokenLayouts_.find(name) == brokenLayouts_.end()) {
        console_->SayOnce(storage_->PackageRoot() + "layouts/" + std::string(name) + std::string(kXmlSuffix) + ": " +
                          std::string(ReasonOf(ReadOutcome::kMissing)));
    }
    return nullptr;
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
    if (!IsPlainFileName(fileName)) return nullptr;
    std::shared_ptr<const Picture> picture;
    ReadPicture(fileName, [&](std::span<const std::byte> content) {
        picture = painter_->DecodePicture(content);
        return picture != nullptr;
    });
    return pictures_.emplace(fileName, std::move(picture)).first->second;
}

PictureSource Package::PictureNamed(const std::string& fileName) const {
    if (fileName.empty()) return {};
    toDecode_.push_back(fileName);
    return {*this, fileName};
}

bool Package::DecodeNext() {
    while (!toDecode_.empty()) {
        const std::string fileName = std::move(toDecode_.front());
        toDecode_.pop_front();
        if (pictures_.find(fileName) != pictures_.end()) continue;
        static_cast<void>(FindPicture(fileName));
        return true;
    }
    return false;
}

Image Package::LoadIcon() const {
    Image icon;
    ReadPicture("app_icon.png", [&](std::span<const std::byte> content) {
        const PngPicture picture(content);
        const PixelSize size = picture.Size();
        if (size.width <= 0 || size.height <= 0) return false;
        const std::size_t count = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
        std::vector<std::uint32_t> decoded(count);
        const std::size_t stride = static_cast<std::size_t>(size.width) * sizeof decoded[0];
        if (!picture.DecodeInto(reinterpret_cast<unsigned char*>(decoded.data()), stride)) return false;
        icon.size = size;
        icon.pixels.reserve(count);
        for (const std::uint32_t pixel : decoded) icon.pixels.push_back(FromArgb(pixel));
        return true;
    });
    return icon;
}

template <typename Decode>
void Package::ReadPicture(const std::string& fileName, Decode decode) const {
    const std::string path = storage_->PackageRoot() + "images/" + fileName;
    std::vector<std::byte> content;
    const ReadOutcome outcome = storage_->Read(path, kLargestPicture, content);
    if (outcome != ReadOutcome::kRead) {
        console_->SayOnce(path + ": " + std::string(ReasonOf(outcome)));
    } else if (!decode(content)) {
        console_->SayOnce(path + ": the picture does not decode");
    }
}

}  // namespace host
