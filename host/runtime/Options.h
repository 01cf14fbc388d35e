#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "backend/Geometry.h"

namespace host {

/// The highest ringtone volume that the phone has.
inline constexpr int kLoudestRingtone = 15;

/// The sides of a screen, in pixels, that a phone or a tablet may have.
inline constexpr int kSmallestScreenSide = 120;
inline constexpr int kLargestScreenSide = 8192;

/// A screen that was asked for as WxH, such as 720x1280. Empty for a text that is not wholly such a size, or whose
/// sides no phone has.
[[nodiscard]] std::optional<PixelSize> ParseScreen(std::string_view text);

/// What the user, or a test, asked for; every default stands here. Paths are as they were given.
struct Options {
    std::optional<std::string> backend;
    PixelSize screen{720, 1280};  ///< the phone's own pixels
    std::optional<std::string> dataFolder;
    std::optional<std::string> performance;      ///< the file that is played
    std::optional<std::string> breath;           ///< a sound file that the simulated microphone hears
    bool usesMicrophone = true;                  ///< false: only the keyboard, a performance or a file breathes
    std::optional<std::string> keepPerformance;  ///< the file that gets what the player does
    std::optional<std::string> record;           ///< the sound file that gets what the speaker plays
    std::string musicFolder;                     ///< where takes go; empty when there is none
    bool hasMidi = false;                        ///< tones and breath go to a port of the sequencer
    std::optional<std::string> midiFile;         ///< the file that gets them
    std::string screenshots = ".";               ///< the folder of pictures without a path of their own
    std::optional<std::string> trace;
    bool hasTraceTimers = false;
    int ringtoneVolume = 11;               ///< 0..kLoudestRingtone
    std::optional<std::string> language;   ///< one without texts is refused
    std::string preferredLanguage = "en";  ///< where none was asked for; one without texts is English
    std::vector<std::string> rest;         ///< the program's path and what is left for the application
};

}  // namespace host
