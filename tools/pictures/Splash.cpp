#include "Splash.h"

#include "Drawing.h"
#include "Photograph.h"
#include "Wordmark.h"

namespace pictures {

void DrawSplash(const std::string& folder) {
    constexpr double kWidth = 720;
    constexpr double kHeight = 1280;
    Picture picture(kWidth, kHeight, kPixelsPerUnit, Ground::kOpaque);
    PhotographOcarina(picture);
    DrawWordmark(picture.Pen(), 360, 1108, 62, kInk, kHoneyDeep);
    picture.SavePng(folder + "/intro01.png");
}

}  // namespace pictures
