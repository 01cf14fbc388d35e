#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "backend/Geometry.h"
#include "runtime/loop/EventLoop.h"

namespace host {

/// Writes one JSON object a line for each thing that happens, when a file was asked for. UI thread only.
class Trace {
public:
    explicit Trace(const EventLoop& loop) : loop_(loop) {}

    enum class Timers { kOmitted, kIncluded };
    /// False when the file cannot be made.
    [[nodiscard]] bool Open(const std::string& path, Timers timers);
    /// Hands the lines so far to the file, so that they can be read even if the program is killed.
    void Flush();
    [[nodiscard]] bool IsOn() const noexcept { return file_ != nullptr; }
    [[nodiscard]] bool HasTimers() const noexcept { return IsOn() && timers_ == Timers::kIncluded; }

    /// One line in the making; it is written when the record goes out of scope. Costs nothing when the trace is off.
    class Record {
    public:
        Record(const Record&) = delete;
        Record& operator=(const Record&) = delete;
        ~Record();

        Record& Text(std::string_view member, std::string_view value);
        Record& Number(std::string_view member, std::int64_t value);
        Record& Milliseconds(std::string_view member, Microseconds value);
        Record& Flag(std::string_view member, bool value);
        Record& Rectangle(std::string_view member, const PixelRect& value);

    private:
        friend class Trace;
        Record(Trace* trace, std::string_view what);
        Record(Trace* trace, std::string_view what, std::string_view event);

        void Member(std::string_view member);

        Trace* trace_;
        std::string line_;
    };

    /// Begins the line of a thing of the kind `what`.
    Record Add(std::string_view what) { return Record(IsOn() ? this : nullptr, what); }
    /// The usual line: a kind and its event.
    Record Add(std::string_view what, std::string_view event) { return Record(IsOn() ? this : nullptr, what, event); }

private:
    struct FileCloser {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    const EventLoop& loop_;
    std::unique_ptr<std::FILE, FileCloser> file_;
    bool hasUnflushed_ = false;
    Timers timers_ = Timers::kOmitted;
};

}  // namespace host
