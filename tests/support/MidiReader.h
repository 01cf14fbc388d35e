#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// A channel message.
struct MidiEvent {
    double ms = 0;
    int status = 0;
    std::vector<int> data;
};

/// Reads a Standard MIDI File of one track by the rules of the format; throws at whatever breaks them.
class MidiReader {
public:
    explicit MidiReader(std::string content) : content_(std::move(content)) {}

    /// kKilled: the program was killed while it wrote, and there may be something behind the track's end.
    enum class Writer { kEnded, kKilled };
    std::vector<MidiEvent> Read(Writer writer = Writer::kEnded) {
        Expect(Text(4) == "MThd" && Number(4) == 6 && Number(2) == 0 && Number(2) == 1, "the header");
        const int ticksOfQuarter = Number(2);
        Expect(Text(4) == "MTrk", "the track's name");
        const std::size_t length = static_cast<std::size_t>(Number(4));
        const std::size_t end = at_ + length;
        Expect(writer == Writer::kKilled ? end <= content_.size() : end == content_.size(), "the track's length");
        std::vector<MidiEvent> events;
        double ms = 0;
        double msOfTick = 0;
        for (;;) {
            ms += Variable() * msOfTick;
            const int status = Number(1);
            Expect(status >= 0x80, "a status byte");
            if (status == 0xFF) {
                const int kind = Number(1);
                const int bytes = Variable();
                const int value = Number(bytes);
                if (kind == 0x51) msOfTick = value / 1000.0 / ticksOfQuarter;
                if (kind != 0x2F) continue;
                Expect(writer == Writer::kKilled ? at_ <= end : at_ == end, "the track's end");
                return events;
            }
            const bool isShort = (status & 0xE0) == 0xC0;
            MidiEvent event{ms, status, {Number(1)}};
            if (!isShort) event.data.push_back(Number(1));
            for (const int byte : event.data) Expect(byte < 0x80, "a data byte");
            events.push_back(event);
        }
    }

private:
    static void Expect(bool holds, const char* what) {
        if (!holds) throw std::runtime_error(std::string("this is wrong: ") + what);
    }
    std::string Text(std::size_t bytes) {
        Expect(at_ + bytes <= content_.size(), "the file's length");
        at_ += bytes;
        return content_.substr(at_ - bytes, bytes);
    }
    int Number(int bytes) {
        int value = 0;
        for (const char byte : Text(static_cast<std::size_t>(bytes)))
            value = value * 256 + static_cast<std::uint8_t>(byte);
        return value;
    }
    int Variable() {
        int value = 0;
        for (int i = 0; i < 4; ++i) {
            const int byte = Number(1);
            value = value * 128 + (byte & 0x7F);
            if (byte < 0x80) return value;
        }
        throw std::runtime_error("a number has no end");
    }

    std::string content_;
    std::size_t at_ = 0;
};
