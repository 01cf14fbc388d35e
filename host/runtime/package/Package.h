#pragma once

#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "backend/Image.h"
#include "backend/Painter.h"
#include "backend/Storage.h"
#include "runtime/Console.h"
#include "runtime/Options.h"
#include "runtime/package/KeyBinding.h"
#include "runtime/package/Layout.h"
#include "runtime/package/PictureSource.h"

namespace host {

/// The application's package: layouts, texts in one language, pictures and the keys of the keyboard. Everything but the
/// pixels is read and checked when it is loaded. UI thread only.
class Package {
public:
    /// The library that reads layouts and texts, with its version.
    [[nodiscard]] static std::string XmlLibrary();
    /// The language of the texts: the one that was asked for, or the preferred one where it has texts, or English.
    /// False with one line in `problem` when one was asked for that has none.
    [[nodiscard]] static bool ChooseLanguage(const Storage& storage, const Options& options, std::string& language,
                                             std::string& problem);
    /// Reads layouts/*.xml for a phone screen of `screen` pixels, the texts of `language` (English for what is not
    /// there) and keys.xml. What is missing or broken is left out; a line "FILE:LINE: reason" for each. The references
    /// must outlive the package.
    [[nodiscard]] std::vector<std::string> Load(Storage& storage, Painter& painter, std::string_view language,
                                                PixelSize screen, Console& console);

    /// The form or popup of that name; null when there is none, which is said once on the console where no problem of
    /// its file was told.
    [[nodiscard]] const LayoutControl* FindLayout(std::string_view name) const;
    /// Whether any layout has a control of that name.
    [[nodiscard]] bool HasControl(std::string_view name) const;
    /// Null when there is no text with that id in any of the two languages.
    [[nodiscard]] const std::string* FindString(std::string_view id) const;
    /// The picture of a file name in images/, decoded at the first call and shared from then on. Null for what is no
    /// plain file name and, said once on the console, for what does not exist or does not decode.
    [[nodiscard]] std::shared_ptr<const Picture> FindPicture(const std::string& fileName) const;
    /// As FindPicture, but decoded when it is first shown, or by DecodeNext.
    [[nodiscard]] PictureSource PictureNamed(const std::string& fileName) const;
    /// Decodes one of the pictures that will be shown, first those that the layouts' forms draw themselves; false when
    /// none is left. For when there is nothing else to do.
    bool DecodeNext();
    /// The application's icon, images/app_icon.png. Empty and, said once on the console, when it does not exist or does
    /// not decode.
    [[nodiscard]] Image LoadIcon() const;
    /// In the order of keys.xml.
    [[nodiscard]] const std::vector<KeyBinding>& Keys() const { return keys_; }

private:
    using Strings = std::map<std::string, std::string, std::less<>>;

    using Problems = std::vector<std::string>;

    void LoadStrings(std::string_view language, Problems& problems);
    void LoadLayouts(PixelSize screen, Problems& problems);
    void LoadKeys(Problems& problems);
    [[nodiscard]] bool HasPicture(const std::string& fileName) const;
    /// The bytes of a file in images/, for `decode`, which says whether it could; what fails is said once on the
    /// console.
    template <typename Decode>
    void ReadPicture(const std::string& fileName, Decode decode) const;

    Storage* storage_ = nullptr;
    Painter* painter_ = nullptr;
    Console* console_ = nullptr;
    std::map<std::string, LayoutControl, std::less<>> layouts_;
    std::set<std::string, std::less<>> brokenLayouts_;
    Strings strings_;
    std::vector<KeyBinding> keys_;
    mutable std::map<std::string, std::shared_ptr<const Picture>> pictures_;
    mutable std::deque<std::string> toDecode_;
};

}  // namespace host
