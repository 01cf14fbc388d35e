// The ocarina in windows of other sizes than the phone's screen, and in one that changes while a note sounds.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "runtime/sound/Sound.h"
#include "support/TemporaryFolder.h"
#include "support/TestPhone.h"

namespace {

using namespace host;

constexpr PixelSize kPhone{360, 640};

class WindowOfAnySize final : public Window {
public:
    explicit WindowOfAnySize(Painter& painter) : painter_(painter) { pixels_ = painter.CreateSurface(firstSize, 1); }

    bool Open(std::string_view, PixelSize, WindowListener&, InputListener& input) override {
        input_ = &input;
        return true;
    }
    void Close() override { input_ = nullptr; }
    PixelSize Size() const override { return pixels_->Size(); }
    Surface& Pixels() override { return *pixels_; }
    void Present(std::span<const PixelRect>) override {}
    Microseconds FrameInterval() const override { return 16'667; }

    void Resize(PixelSize size) {
        pixels_ = painter_.CreateSurface(size, 1);
        input_->OnResized();
    }
    InputListener& Input() { return *input_; }

    static inline PixelSize firstSize = kPhone;

private:
    Painter& painter_;
    std::unique_ptr<Surface> pixels_;
    InputListener* input_ = nullptr;
};

class WindowedBackend final : public Backend {
public:
    explicit WindowedBackend(const BackendOptions& options)
        : headless_(CreateHeadlessBackend(options)), window_(headless_->Parts().painter) {
        latest = &window_;
    }
    BackendParts Parts() override {
        const BackendParts parts = headless_->Parts();
        return {parts.clock, parts.loopDriver, window_, parts.painter, parts.speaker, parts.microphone, parts.storage};
    }
    static std::unique_ptr<Backend> Create(const BackendOptions& options) {
        return std::make_unique<WindowedBackend>(options);
    }
    static inline WindowOfAnySize* latest = nullptr;

private:
    std::unique_ptr<Backend> headless_;
    WindowOfAnySize window_;
};

PixelSize Times(double scale) {
    return {static_cast<int>(kPhone.width * scale), static_cast<int>(kPhone.height * scale)};
}

// The largest step of the green from one pixel to the next in that column: the ocarina's sharpest edge there.
int SharpestEdge(const Image& image, PixelSize size, int x) {
    int sharpest = 0;
    for (int y = 1; y < size.height; ++y) {
        const auto at = [&](int row) {
            return image
                .pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(size.width) +
                        static_cast<std::size_t>(x)]
                .green;
        };
        sharpest = std::max(sharpest, std::abs(at(y) - at(y - 1)));
    }
    return sharpest;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

}  // namespace

// A picture that was enlarged afterwards would have its steps spread over as many pixels as the scale says.
TEST(Scale, TheScreenIsAsSharpAtEverySizeOfTheWindow) {
    std::vector<int> edges;
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        WindowOfAnySize::firstSize = Times(scale);
        Options options;
        options.screen = kPhone;
        TestPhone phone(options, BREVANT_PACKAGE, WindowedBackend::Create);
        phone.At(2900, [&] {
            const PixelSize size = Times(scale);
            const Image image = WindowedBackend::latest->Pixels().Read({0, 0, size.width, size.height});
            // Through the middle of the menu button's bars.
            edges.push_back(SharpestEdge(image, size, static_cast<int>(38 * scale)));
        });
        phone.RunOcarina(3000);
    }
    ASSERT_EQ(4U, edges.size());
    for (std::size_t i = 0; i < edges.size(); ++i) {
        EXPECT_GT(edges[i], 100) << i;
        EXPECT_GE(edges[i], 0.8 * edges[0]) << i;
    }
}

TEST(Scale, AWindowThatChangesWhileANoteSoundsIsNotHeardAndLiftsNoFinger) {
    const auto play = [](bool isResized) {
        WindowOfAnySize::firstSize = kPhone;
        const TemporaryFolder folder;
        Options options;
        options.screen = kPhone;
        options.record = folder / "r.wav";
        options.trace = folder / "t.jsonl";
        TestPhone phone(options, BREVANT_PACKAGE, WindowedBackend::Create);
        Capture& capture = phone.GetRuntime().GetSound().GetCapture();
        phone.At(2600, [&capture] { capture.SetKeyBreath(0.8); });
        // The top left hole.
        phone.At(2800, [] { WindowedBackend::latest->Input().OnTouch({1, TouchPhase::kDown, 90, 268}); });
        if (isResized) {
            for (int i = 0; i < 30; ++i) {
                phone.At(3000 + 33 * i, [i] { WindowedBackend::latest->Resize(Times(0.5 + 0.05 * i)); });
            }
        }
        phone.RunOcarina(4500);
        std::string told;
        for (const std::string& line : Lines(folder.Read("t.jsonl"))) {
            if (line.find("\"what\":\"player\"") != std::string::npos) told += line + '\n';
        }
        return std::pair(folder.Read("r.wav"), told);
    };
    const auto quiet = play(false);
    EXPECT_NE(std::string::npos, quiet.second.find("ocarina_4_01.ogg")) << quiet.second;
    const auto resized = play(true);
    EXPECT_EQ(quiet.second, resized.second);
    EXPECT_TRUE(quiet.first == resized.first) << "the recordings differ";
}
