// Where the window was is known in the next run, and whatever is in the file harms nobody.

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "backend/posix/PosixStorage.h"
#include "runtime/window/PlaceKeeper.h"
#include "support/TemporaryFolder.h"

namespace {

struct PlacedWindow final : host::Window {
    bool Open(std::string_view, host::PixelSize, host::WindowListener&, host::InputListener&) override { return true; }
    void SetPlace(const host::WindowPlace& wanted) override { place = wanted; }
    std::optional<host::WindowPlace> Place() const override { return place; }
    void Close() override {}
    host::PixelSize Size() const override { return {}; }
    host::Surface& Pixels() override { throw std::logic_error("nothing is drawn"); }
    void Present(std::span<const host::PixelRect>) override {}
    host::Microseconds FrameInterval() const override { return 1; }

    std::optional<host::WindowPlace> place;
};

constexpr host::PixelSize kScreen{720, 1280};

std::optional<host::WindowPlace> Restored(const TemporaryFolder& folder, host::PixelSize screen = kScreen) {
    host::PosixStorage storage("/", folder.Path());
    PlacedWindow window;
    host::PlaceKeeper(storage, window, screen).Restore();
    return window.place;
}

}  // namespace

TEST(WindowPlace, IsTheSameInTheNextRunOnTheSameScreen) {
    const TemporaryFolder folder;
    host::PosixStorage storage("/", folder.Path());
    PlacedWindow window;
    host::PlaceKeeper keeper(storage, window, kScreen);
    keeper.Save();
    EXPECT_EQ(Restored(folder), std::nullopt) << "a window without a place";
    for (const host::WindowPlace& place :
         {host::WindowPlace{100, 50, 576, 1024}, host::WindowPlace{-1900, -20, 1, 9}}) {
        window.place = place;
        keeper.Save();
        EXPECT_EQ(Restored(folder), place);
    }
    EXPECT_EQ(Restored(folder, {1280, 720}), std::nullopt) << "another screen has another shape";
}

TEST(WindowPlace, IsNotTakenFromAFileThatMakesNoSense) {
    const TemporaryFolder folder;
    for (const char* content :
         {"", "\n", "720x1280 at 100,50 size 576x1024", "720x1280 at 100,50 size 576x1024\n\n", "720x1280\n",
          "720x1280 at 100,50 size 0x1024\n", "720x1280 at 100,50 size 576x-1\n",
          "720x1280 at 99999999999,50 size 576x1024\n", "720x1280 at 200000,50 size 576x1024\n", "x\0y", "\xff\xfe"}) {
        folder.Write("window", content);
        EXPECT_EQ(Restored(folder), std::nullopt) << content;
        EXPECT_EQ(folder.Read("window"), content) << "nothing is lost";
    }
    folder.Write("window", "720x1280 at -7,50 size 576x1024\n");
    EXPECT_EQ(Restored(folder), (host::WindowPlace{-7, 50, 576, 1024}));
}
