#include "Splash.h"

#include "Drawing.h"
#include "Photograph.h"
#include "Wordmark.h"

namespace pictures {

void DrawSplash(const std::string& folder) {
    constexpr double kWidth = 720;
    constexpr double kHeight = 1280;
    // In the pixels of the design itself: this is the first thing on the screen, and 1.5 times the pixels each way
    // would keep it back by 14 ms.
    Picture picture(kWidth, kHeight, 1, Ground::kOpaque);
    PhotographOcarina(picture);
    DrawWordmark(picture.Pen(), 360, 1108, 62, kPaper, kHoney);
    picture.SavePng(folder + "/intro01.png");
}

}  // namespace pictures
