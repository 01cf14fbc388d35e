// A library to be preloaded into a program that draws through SDL's window surface: it says "frame" on the standard
// output once the first update of the window has returned, which is when the X server has the pixels. So a program is
// measured as it is.

#include <dlfcn.h>
#include <unistd.h>

#include <string_view>

struct SDL_Window;
struct SDL_Rect;

namespace {

template <typename Function>
Function* Next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int Said(int outcome) {
    static bool isSaid = false;
    constexpr std::string_view kLine = "frame\n";
    if (!isSaid) isSaid = write(STDOUT_FILENO, kLine.data(), kLine.size()) > 0;
    return outcome;
}

}  // namespace

extern "C" {

int SDL_UpdateWindowSurface(SDL_Window* window) {
    static auto* const next = Next<int(SDL_Window*)>("SDL_UpdateWindowSurface");
    return Said(next(window));
}

int SDL_UpdateWindowSurfaceRects(SDL_Window* window, const SDL_Rect* rects, int count) {
    static auto* const next = Next<int(SDL_Window*, const SDL_Rect*, int)>("SDL_UpdateWindowSurfaceRects");
    return Said(next(window, rects, count));
}
}
