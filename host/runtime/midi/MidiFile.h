#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "backend/Storage.h"
#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/midi/MidiSink.h"

namespace host {

/// Writes messages into a Standard MIDI File of format 0 with a tick of a millisecond. The file is a whole one, with
/// all that happened until half a second before, at any moment: also when the program is killed. UI thread only.
class MidiFile final : public MidiSink {
public:
    /// Times count from now. `path` is for messages.
    MidiFile(EventLoop& loop, Console& console, std::unique_ptr<OutputFile> file, std::string path);
    ~MidiFile() override;
    MidiFile(const MidiFile&) = delete;
    MidiFile& operator=(const MidiFile&) = delete;

    void Take(std::span<const std::uint8_t> message) override;
    /// Closes the file. A loss is reported.
    void Finish() override;

private:
    void AddDelta();
    void WriteOnTimer();
    /// Writes the events that are not written yet.
    void Write();
    void ReportLoss();

    EventLoop& loop_;
    Console& console_;
    std::unique_ptr<OutputFile> file_;  ///< null once it is closed
    std::string path_;
    Microseconds start_;
    std::int64_t lastTick_ = 0;
    std::vector<std::byte> events_;  ///< not written yet
    std::uint32_t trackBytes_ = 0;   ///< in the file, with the track's end
    TimerQueue::Id timer_ = TimerQueue::kNone;
};

}  // namespace host
