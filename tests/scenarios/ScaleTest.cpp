// The ocarina in windows of other sizes than the phone's screen, and in one that changes while a note sounds.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "backend/cairo/CairoPainter.h"
#include "runtime/sound/Sound.h"
#include "support/TemporaryFolder.h"
#include "support/TestPhone.h"
#include "support/TestWindow.h"
#include "support/TraceLines.h"

namespace {

using namespace host;

constexpr PixelSize kPhone{360, 640};

// A phone in a window whose size a test sets.
struct WindowedPhone {
    explicit WindowedPhone(PixelSize size, Options options = {})
        : window(painter, size),
          phone(OnSmallScreen(std::move(options)), BREVANT_PACKAGE, [this](const BackendParts& parts) {
              return BackendParts{parts.clock,   parts.loopDriver, window,       parts.painter,
                                  parts.speaker, parts.microphone, parts.storage};
          }) {}
    static Options OnSmallScreen(Options options) {
        options.screen = kPhone;
        return options;
    }

    CairoPainter painter;
    TestWindow window;
    TestPhone phone;
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

}  // namespace

// A picture that was enlarged afterwards would have its steps spread over as many pixels as the scale says.
TEST(Scale, TheScreenIsAsSharpAtEverySizeOfTheWindow) {
    std::vector<int> edges;
    for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
        WindowedPhone rig(Times(scale));
        rig.phone.At(2900, [&] {
            const PixelSize size = Times(scale);
            const Image image = rig.window.Pixels().Read({0, 0, size.width, size.height});
            // Through the middle of the menu button's bars.
            edges.push_back(SharpestEdge(image, size, static_cast<int>(38 * scale)));
        });
        rig.phone.RunOcarina(3000);
    }
    ASSERT_EQ(4U, edges.size());
    for (std::size_t i = 0; i < edges.size(); ++i) {
        EXPECT_GT(edges[i], 100) << i;
        EXPECT_GE(edges[i], 0.8 * edges[0]) << i;
    }
}

TEST(Scale, AWindowThatChangesWhileANoteSoundsIsNotHeardAndLiftsNoFinger) {
    const auto play = [](bool isResized) {
        const TemporaryFolder folder;
        Options options;
        options.record = folder / "r.wav";
        options.trace = folder / "t.jsonl";
        WindowedPhone rig(kPhone, options);
        TestPhone& phone = rig.phone;
        Capture& capture = phone.GetRuntime().GetSound().GetCapture();
        phone.At(2600, [&capture] { capture.SetKeyBreath(0.8); });
        // The top left hole.
        phone.At(2800, [&rig] { rig.window.input_->OnTouch({1, TouchPhase::kDown, 90, 268}); });
        if (isResized) {
            for (int i = 0; i < 30; ++i) {
                phone.At(3000 + 33 * i, [&rig, i] {
                    rig.window.Resize(Times(0.5 + 0.05 * i));
                    rig.window.input_->OnResized();
                });
            }
        }
        phone.RunOcarina(4500);
        std::string told;
        for (const auto& line : ReadTraceLines(folder.Read("t.jsonl"))) {
            if (line["what"] == "player") told += line.dump() + '\n';
        }
        return std::pair(folder.Read("r.wav"), told);
    };
    const auto quiet = play(false);
    EXPECT_NE(std::string::npos, quiet.second.find("ocarina_4_01.ogg")) << quiet.second;
    const auto resized = play(true);
    EXPECT_EQ(quiet.second, resized.second);
    EXPECT_TRUE(quiet.first == resized.first) << "the recordings differ";
}
