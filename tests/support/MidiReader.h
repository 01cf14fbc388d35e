#pragma once

#include <string>
#include <vector>

/// A channel message.
struct MidiEvent {
    double ms = 0;  ///< since the file's start
    int status = 0;
    std::vector<int> data;
};

/// The channel messages of a Standard MIDI File of one track, as libsmf reads them. Throws at a file that libsmf warns
/// of: it then leaves out what it cannot read.
std::vector<MidiEvent> ReadMidiFile(const std::string& content);
