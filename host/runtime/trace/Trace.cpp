#include "runtime/trace/Trace.h"

#include <array>
#include <utility>

namespace host {

namespace {

constexpr unsigned char kFirstPrintable = 0x20;

void AppendQuoted(std::string& line, std::string_view text) {
    line += '"';
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            line += '\\';
            line += character;
        } else if (byte < kFirstPrintable) {
            std::array<char, 8> escaped{};
            const int length = std::snprintf(escaped.data(), escaped.size(), "\\u%04x", unsigned{byte});
            line.append(escaped.data(), static_cast<std::size_t>(length));
        } else {
            line += character;
        }
    }
    line += '"';
}

// Milliseconds with the microseconds as decimals, without a binary fraction's rounding and without idle zeros.
void AppendMilliseconds(std::string& line, Microseconds time) {
    constexpr int kDecimals = 3;
    line += std::to_string(time / kMicrosecondsPerMillisecond);
    const auto rest = time % kMicrosecondsPerMillisecond;
    if (rest == 0) return;
    std::string decimals = std::to_string(rest);
    decimals.insert(0, kDecimals - decimals.size(), '0');
    while (decimals.back() == '0') decimals.pop_back();
    line += '.';
    line += decimals;
}

}  // namespace

bool Trace::Open(const std::string& path, Timers timers) {
    file_.reset(std::fopen(path.c_str(), "wb"));
    timers_ = timers;
    return IsOn();
}

void Trace::Flush() {
    if (std::exchange(hasUnflushed_, false)) std::fflush(file_.get());
}

Trace::Record::Record(Trace* trace, std::string_view what) : trace_(trace) {
    if (trace_ == nullptr) return;
    line_ = "{\"ms\":";
    AppendMilliseconds(line_, trace_->loop_.Now());
    Text("what", what);
}

Trace::Record::Record(Trace* trace, std::string_view what, std::string_view event) : Record(trace, what) {
    Text("event", event);
}

Trace::Record::~Record() {
    if (trace_ == nullptr) return;
    line_ += "}\n";
    std::fwrite(line_.data(), 1, line_.size(), trace_->file_.get());
    trace_->hasUnflushed_ = true;
}

void Trace::Record::Member(std::string_view member) {
    line_ += ',';
    AppendQuoted(line_, member);
    line_ += ':';
}

Trace::Record& Trace::Record::Text(std::string_view member, std::string_view value) {
    if (trace_ == nullptr) return *this;
    Member(member);
    AppendQuoted(line_, value);
    return *this;
}

Trace::Record& Trace::Record::Number(std::string_view member, std::int64_t value) {
    if (trace_ == nullptr) return *this;
    Member(member);
    line_ += std::to_string(value);
    return *this;
}

Trace::Record& Trace::Record::Milliseconds(std::string_view member, Microseconds value) {
    if (trace_ == nullptr) return *this;
    Member(member);
    AppendMilliseconds(line_, value);
    return *this;
}

Trace::Record& Trace::Record::Flag(std::string_view member, bool value) {
    if (trace_ == nullptr) return *this;
    Member(member);
    line_ += value ? "true" : "false";
    return *this;
}

Trace::Record& Trace::Record::Rectangle(std::string_view member, const PixelRect& value) {
    if (trace_ == nullptr) return *this;
    Member(member);
    line_ += '[' + std::to_string(value.x) + ',' + std::to_string(value.y) + ',' + std::to_string(value.width) + ',' +
             std::to_string(value.height) + ']';
    return *this;
}

}  // namespace host
