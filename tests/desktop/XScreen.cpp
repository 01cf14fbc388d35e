#include "XScreen.h"

#include <X11/Xutil.h>

#include <stdexcept>

namespace {

struct XReleaser {
    void operator()(XImage* image) const noexcept { XDestroyImage(image); }
    void operator()(void* data) const noexcept { XFree(data); }
};

Window FindWindow(Display* display, const std::string& title) {
    Window root = 0;
    Window parent = 0;
    Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count) == 0) return 0;
    const std::unique_ptr<Window, XReleaser> owned(children);
    for (unsigned i = 0; i < count; ++i) {
        char* name = nullptr;
        if (XFetchName(display, children[i], &name) == 0) continue;
        const std::unique_ptr<char, XReleaser> ownedName(name);
        if (title == name) return children[i];
    }
    return 0;
}

}  // namespace

XScreen::XScreen(const std::string& title) : display_(XOpenDisplay(nullptr)) {
    if (!display_) throw std::runtime_error("no display");
    window_ = FindWindow(display_.get(), title);
    if (window_ == 0) throw std::runtime_error("no window " + title);
}

host::Rgba XScreen::ColorAt(int x, int y) const {
    const std::unique_ptr<XImage, XReleaser> image(XGetImage(display_.get(), window_, x, y, 1, 1, AllPlanes, ZPixmap));
    if (!image) return {};
    const unsigned long pixel = XGetPixel(image.get(), 0, 0);
    constexpr unsigned long kChannel = 0xff;
    return {static_cast<std::uint8_t>(pixel >> 16 & kChannel), static_cast<std::uint8_t>(pixel >> 8 & kChannel),
            static_cast<std::uint8_t>(pixel & kChannel), static_cast<std::uint8_t>(kChannel)};
}

host::PixelRect XScreen::Bounds() const {
    XWindowAttributes attributes{};
    XGetWindowAttributes(display_.get(), window_, &attributes);
    int x = 0;
    int y = 0;
    Window child = 0;
    XTranslateCoordinates(display_.get(), window_, attributes.root, 0, 0, &x, &y, &child);
    return {x, y, attributes.width, attributes.height};
}

void XScreen::Resize(host::PixelSize size) {
    XResizeWindow(display_.get(), window_, static_cast<unsigned>(size.width), static_cast<unsigned>(size.height));
    XSync(display_.get(), False);
}

void XScreen::AskToClose() {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window_;
    event.xclient.message_type = XInternAtom(display_.get(), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display_.get(), "WM_DELETE_WINDOW", False));
    XSendEvent(display_.get(), window_, False, NoEventMask, &event);
    XSync(display_.get(), False);
}

void XScreen::GiveFocus() {
    XSetInputFocus(display_.get(), window_, RevertToNone, CurrentTime);
    XSync(display_.get(), False);
}

void XScreen::TakeFocus() {
    XSetInputFocus(display_.get(), None, RevertToNone, CurrentTime);
    XSync(display_.get(), False);
}
