// A trivial SDL2 window of 720x1280 that Cairo draws on: a background and four ellipses, once. With an argument it goes
// on and draws one ellipse with the background around it, as large as a hole's touch area, in turn in two colours, and
// updates that part of the window, so many times, and prints the median of the nanoseconds (the update waits until the
// X server has it).

#include <SDL.h>
#include <cairo.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "Scene.h"

namespace {

// The upper left hole's touch area.
constexpr SDL_Rect kDamage{0, 288, 360, 496};

void Fill(cairo_t* context, unsigned color) {
    cairo_set_source_rgb(context, SceneChannel(color, 16), SceneChannel(color, 8), SceneChannel(color, 0));
    cairo_fill(context);
}

void DrawHole(cairo_t* context, const SceneRect& hole, unsigned color) {
    constexpr double kFullTurn = 6.283185307179586;
    cairo_arc(context, hole.x + hole.width / 2.0, hole.y + hole.height / 2.0, hole.width / 2.0, 0, kFullTurn);
    Fill(context, color);
}

}  // namespace

int main(int argc, char* argv[]) {
    if (SDL_Init(SDL_INIT_VIDEO) != 0) return 1;
    SDL_Window* const window =
        SDL_CreateWindow("peer", SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, kSceneWidth, kSceneHeight, 0);
    SDL_Surface* const pixels = SDL_GetWindowSurface(window);
    if (pixels == nullptr) return 1;
    cairo_surface_t* const image = cairo_image_surface_create_for_data(
        static_cast<unsigned char*>(pixels->pixels), CAIRO_FORMAT_RGB24, pixels->w, pixels->h, pixels->pitch);
    cairo_t* const context = cairo_create(image);
    cairo_rectangle(context, 0, 0, kSceneWidth, kSceneHeight);
    Fill(context, kSceneBackground);
    for (const SceneRect& hole : kSceneHoles) DrawHole(context, hole, kSceneHole);
    cairo_surface_flush(image);
    SDL_UpdateWindowSurface(window);

    const int count = argc > 1 ? static_cast<int>(std::strtol(argv[1], nullptr, 10)) : 0;
    std::vector<double> times;
    for (int i = 0; i < count; ++i) {
        SDL_PumpEvents();
        const auto begin = std::chrono::steady_clock::now();
        cairo_rectangle(context, kDamage.x, kDamage.y, kDamage.w, kDamage.h);
        Fill(context, kSceneBackground);
        DrawHole(context, kSceneHoles[0], i % 2 == 0 ? kSceneInk : kSceneHole);
        cairo_surface_flush(image);
        if (SDL_UpdateWindowSurfaceRects(window, &kDamage, 1) != 0) return 1;
        times.push_back(std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - begin).count());
    }
    if (!times.empty()) {
        std::sort(times.begin(), times.end());
        std::printf("%.0f\n", times[times.size() / 2]);
    }
    SDL_Event event;
    while (count == 0 && SDL_WaitEvent(&event) != 0 && event.type != SDL_QUIT) {
    }
}
