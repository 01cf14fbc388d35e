#include "Tune.h"

namespace {

constexpr Tone kLowG{3, 7};
constexpr Tone kLowA{3, 9};
constexpr Tone kLowB{3, 11};
constexpr Tone kC{4, 0};
constexpr Tone kCSharp{4, 1};
constexpr Tone kD{4, 2};
constexpr Tone kDSharp{4, 3};
constexpr Tone kE{4, 4};
constexpr Tone kF{4, 5};
constexpr Tone kFSharp{4, 6};
constexpr Tone kG{4, 7};
constexpr Tone kGSharp{4, 8};
constexpr Tone kA{4, 9};
constexpr Tone kASharp{4, 10};
constexpr Tone kB{4, 11};
constexpr Tone kHighC{5, 0};

}  // namespace

Tune OdeToJoy() {
    const std::vector<WrittenNote> opening = {{kE, 1}, {kE, 1}, {kF, 1}, {kG, 1}, {kG, 1}, {kF, 1},
                                              {kE, 1}, {kD, 1}, {kC, 1}, {kC, 1}, {kD, 1}, {kE, 1}};
    const std::vector<WrittenNote> halfClose = {{kE, 1.5}, {kD, 0.5}, {kD, 2, true}};
    const std::vector<WrittenNote> fullClose = {{kD, 1.5}, {kC, 0.5}, {kC, 2, true}};
    const std::vector<WrittenNote> middle = {{kD, 1},   {kD, 1}, {kE, 1}, {kC, 1}, {kD, 1},         {kE, 0.5},
                                             {kF, 0.5}, {kE, 1}, {kC, 1}, {kD, 1}, {kE, 0.5},       {kF, 0.5},
                                             {kE, 1},   {kD, 1}, {kC, 1}, {kD, 1}, {kLowG, 2, true}};
    constexpr double kBeatsAMinute = 104;
    Tune tune{"ode-to-joy", "The theme of the Ode to Joy (L. van Beethoven, 1824).", kBeatsAMinute, {}};
    for (const auto* part : {&opening, &halfClose, &opening, &fullClose, &middle, &opening, &fullClose}) {
        tune.notes.insert(tune.notes.end(), part->begin(), part->end());
    }
    return tune;
}

Tune Compass() {
    constexpr double kBeatsAMinute = 100;
    return {"compass",
            "A tune through all sixteen tones, made for this instrument.",
            kBeatsAMinute,
            {{kLowG, 1},   {kC, 1},   {kE, 1},    {kG, 2},          {kE, 1},      {kF, 1},       {kE, 0.5},
             {kD, 0.5},    {kC, 1},   {kLowB, 2}, {kLowG, 1, true}, {kLowA, 1},   {kD, 1},       {kF, 1},
             {kA, 2},      {kF, 1},   {kG, 1},    {kFSharp, 0.5},   {kG, 0.5},    {kGSharp, 1},  {kA, 3, true},
             {kASharp, 1}, {kA, 1},   {kF, 1},    {kG, 2},          {kDSharp, 1}, {kD, 1},       {kCSharp, 0.5},
             {kD, 0.5},    {kE, 1},   {kF, 2},    {kLowB, 1, true}, {kC, 0.5},    {kD, 0.5},     {kE, 0.5},
             {kF, 0.5},    {kG, 0.5}, {kA, 0.5},  {kB, 2},          {kG, 1},      {kHighC, 1.5}, {kB, 0.5},
             {kA, 0.5},    {kG, 0.5}, {kE, 1},    {kD, 1},          {kLowB, 1},   {kC, 3, true}}};
}
