#pragma once

/// A tone as its recording is named: semitone 0..11 counts upward from the octave's C.
struct Tone {
    int octave;
    int semitone;
};

/// The tone of every fingering. The index is the mask of the covered holes: top left 1, top right 2, bottom left 4,
/// bottom right 8. Only the open instrument is in octave 5, by which automatic play knows that nothing is covered.
inline constexpr Tone kFingeringTable[16] = {
    {5, 0},   // open
    {4, 1},   // top left
    {4, 11},  // top right
    {4, 3},   // both at the top
    {4, 9},   // bottom left
    {4, 5},   // both at the left
    {4, 8},   // top right, bottom left
    {4, 4},   // all but the bottom right
    {4, 10},  // bottom right
    {3, 9},   // top left, bottom right
    {3, 7},   // both at the right
    {3, 11},  // all but the bottom left
    {4, 7},   // both at the bottom
    {4, 2},   // all but the top right
    {4, 6},   // all but the top left
    {4, 0},   // all
};
