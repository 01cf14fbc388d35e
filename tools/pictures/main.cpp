#include "Breath.h"
#include "Buttons.h"
#include "Emblem.h"
#include "FingerWell.h"
#include "HelpPages.h"
#include "Splash.h"

#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>

int main(int argc, char** argv) {
    constexpr int kArguments = 2;
    if (argc != kArguments) {
        std::cerr << "usage: brevant_pictures OUTDIR\n"
                     "Draws OUTDIR/res/images, OUTDIR/packaging/icons and the icons in OUTDIR/host/backend/web/page; "
                     "OUTDIR is the source tree's root to renew them in place.\n";
        return EXIT_FAILURE;
    }
    try {
        const std::filesystem::path root = argv[1];
        const std::filesystem::path images = root / "res" / "images";
        const std::filesystem::path icons = root / "packaging" / "icons";
        std::filesystem::create_directories(images);
        std::filesystem::create_directories(icons);
        const std::filesystem::path page = root / "host" / "backend" / "web" / "page";
        std::filesystem::create_directories(page);
        // The icon comes first: Cairo numbers the surfaces of a run, and an SVG names its own by that number.
        pictures::DrawApplicationIcon(icons.string());
        pictures::DrawWindowIcon(images.string());
        pictures::DrawPageIcons(page.string());
        pictures::DrawMenuFrames(images.string());
        pictures::DrawMenuButtons(images.string());
        pictures::DrawBreathMeter(images.string());
        pictures::DrawBlowHint(images.string());
        pictures::DrawEditSign(images.string());
        pictures::DrawFingerWell(images.string());
        pictures::DrawHelpPages(images.string());
        pictures::DrawSplash(images.string());
    } catch (const std::exception& error) {
        std::cerr << "brevant_pictures: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
