#include "backend/headless/HeadlessWindow.h"

namespace host {

bool HeadlessWindow::Open(std::string_view /*title*/, PixelSize screen, WindowListener& /*listener*/,
                          InputListener& /*input*/) {
    pixels_ = painter_.CreateOpaqueSurface(screen);
    return pixels_->Size() == screen;
}

}  // namespace host
