#pragma once

#include <array>

// The screen that the row "full frame" paints, whoever paints it: a plain background, four ellipses, three buttons with
// a gradient and round corners, six lines of text, two pictures that are scaled. Texts are shaped and pictures are
// decoded before; the pixels of all 720x1280 are made anew in each run.

struct SceneRect {
    int x, y, width, height;
};

struct SceneText {
    int x, y;
    const char* text;
};

struct ScenePicture {
    SceneRect place;
    const char* file;  ///< in the package's images/
};

inline constexpr int kSceneWidth = 720;
inline constexpr int kSceneHeight = 1280;
inline constexpr unsigned kSceneBackground = 0xE2646F;
inline constexpr unsigned kSceneHole = 0xFFC230;
inline constexpr unsigned kSceneButtonTop = 0xFFF1DF;
inline constexpr unsigned kSceneButtonBottom = 0xEBD3B6;
inline constexpr unsigned kSceneInk = 0x3A2228;
inline constexpr int kSceneCorner = 28;
inline constexpr int kSceneTextSize = 28;
inline constexpr int kSceneLineHeight = 40;
inline constexpr int kSceneTextWidth = 340;
inline constexpr const char* kSceneFont = "Noto Sans";

inline constexpr std::array<SceneRect, 4> kSceneHoles{
    {{55, 411, 250, 250}, {415, 411, 250, 250}, {55, 907, 250, 250}, {415, 907, 250, 250}}};
inline constexpr std::array<SceneRect, 3> kSceneButtons{{{24, 24, 208, 96}, {256, 24, 208, 96}, {488, 24, 208, 96}}};
inline constexpr std::array<SceneText, 6> kSceneTexts{{{40, 300, "Blow as into a flute"},
                                                       {40, 345, "Cover the holes"},
                                                       {400, 300, "Automatic play"},
                                                       {400, 345, "Colour of the holes"},
                                                       {40, 780, "Background colour"},
                                                       {400, 780, "Sixteen fingerings"}}};
inline constexpr std::array<ScenePicture, 2> kScenePictures{
    {{{136, 144, 560, 112}, "volume_0.png"}, {{200, 620, 320, 320}, "hole_well.png"}}};

inline constexpr double SceneChannel(unsigned color, int shift) {
    return static_cast<double>(color >> static_cast<unsigned>(shift) & 0xFFU) / 0xFF;
}
