#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "backend/Geometry.h"
#include "backend/Storage.h"
#include "runtime/Console.h"
#include "runtime/loop/EventLoop.h"

namespace host {

/// Writes one JSON object a line for each thing that happens, when a file was asked for. UI thread only.
class Trace {
public:
    Trace(const EventLoop& loop, Console& console) : loop_(loop), console_(console) {}
    ~Trace() { Close(); }
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    enum class Timers { kOmitted, kIncluded };
    /// From now on lines are kept, which the next Flush writes at the end of `file`. `name` is said when it is lost.
    void Open(std::unique_ptr<OutputFile> file, std::string name, Timers timers);
    /// Hands the lines so far to the file, so that they can be read even if the program is killed. After a failure,
    /// which is told, the trace is off.
    void Flush();
    /// Flushes, and is off from then on.
    void Close();
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
    void EndWithLoss();

    const EventLoop& loop_;
    Console& console_;
    std::unique_ptr<OutputFile> file_;
    std::string name_;
    std::string unwritten_;
    Timers timers_ = Timers::kOmitted;
};

}  // namespace host
