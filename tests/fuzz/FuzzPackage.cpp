// A layout, a file of texts or the keys of any bytes, beside others that are good. What is wrong with it is told with
// its file, and what is made of the rest lies within what a screen can hold.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "MemoryStorage.h"
#include "Require.h"
#include "runtime/Console.h"
#include "runtime/package/Package.h"

namespace {

using host::LayoutControl;

constexpr host::PixelSize kScreen{1080, 1920};
constexpr int kDeepest = 64;

/// The package asks it for nothing before a picture is shown.
class NoPainter final : public host::Painter {
public:
    std::unique_ptr<host::Surface> CreateSurface(host::PixelSize, double) override { return nullptr; }
    std::shared_ptr<const host::Picture> DecodePicture(std::span<const std::byte>) override { return nullptr; }
    std::shared_ptr<const host::Picture> CreatePicture(const host::Image&) override { return nullptr; }
    void SetLanguage(std::string_view) override {}
    std::unique_ptr<host::TextLayout> CreateText(std::string_view, const host::TextStyle&, double) override {
        return nullptr;
    }
};

MemoryStorage::Content ContentOf(std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::byte*>(text.data());
    return {bytes, bytes + text.size()};
}

// The name that a layout has to have is its file's, so the file gets the first one that the text gives.
std::string NameIn(std::string_view text) {
    constexpr std::string_view kAttribute = "name=\"";
    const std::size_t begin = text.find(kAttribute);
    if (begin == text.npos) return "NAMELESS";
    text.remove_prefix(begin + kAttribute.size());
    std::string name(text.substr(0, text.find('"')));
    return name.find('/') == name.npos && name != "IDF_GOOD" ? name : "NAMELESS";
}

void Examine(const LayoutControl& control, int depth) {
    Require(depth <= kDeepest, "controls lie no deeper than that");
    const auto isFit = [](int length) { return std::abs(length) <= 2 * host::kFarthestEdge; };
    const host::PixelRect& bounds = control.bounds;
    Require(isFit(bounds.x) && isFit(bounds.y), "a control lies near the screen");
    Require(bounds.width > 0 && bounds.height > 0 && isFit(bounds.width) && isFit(bounds.height),
            "a control has a size that can be drawn");
    for (const LayoutControl& child : control.children) Examine(child, depth + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    MemoryStorage storage;
    storage.Put("/layouts/IDF_GOOD.xml",
                ContentOf(R"(<Form name="IDF_GOOD" design="9x16"><Panel name="IDC_P" bounds="1,1,5,5"/></Form>)"));
    storage.Put("/strings/en.xml", ContentOf(R"(<strings language="en"><string id="IDS_A">A</string></strings>)"));
    storage.Put("/keys.xml", ContentOf(R"(<keys><key code="KeyR" touch="IDC_P"/></keys>)"));
    const bool isStrings = text.find("<strings") != text.npos;
    const bool isKeys = text.find("<keys") != text.npos;
    const std::string name = NameIn(text);
    const std::string path = isStrings ? "/strings/en.xml" : isKeys ? "/keys.xml" : "/layouts/" + name + ".xml";
    storage.Put(path, ContentOf(text));

    NoPainter painter;
    host::Console console;
    host::Package package;
    for (const std::string& problem : package.Load(storage, painter, "en", kScreen, console)) {
        // Texts that a broken file no longer has are missed by others, controls by the keys.
        Require(problem.rfind('/', 0) == 0, "a problem names its file");
    }
    Require(package.HasControl("IDC_P"), "one file takes nothing from the others");
    for (const std::string& layout : {name, std::string("IDF_GOOD")}) {
        const std::string file = "/layouts/" + layout + ".xml";
        if (!storage.Stat(file)) continue;
        if (const LayoutControl* found = package.FindLayout(layout)) Examine(*found, 1);
    }
    return 0;
}
