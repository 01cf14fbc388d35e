#include "runtime/trace/Trace.h"

#include <array>
#include <cstdio>
#include <span>
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

void Trace::Open(std::unique_ptr<OutputFile> file, std::string name, Timers timers) {
    file_ = std::move(file);
    name_ = std::move(name);
    timers_ = timers;
}

void Trace::Flush() {
    if (unwritten_.empty()) return;
    const std::string lines = std::exchange(unwritten_, {});
    if (!file_->Append(std::as_bytes(std::span(lines)))) EndWithLoss();
}

void Trace::Close() {
    Flush();
    if (IsOn() && !file_->Close()) EndWithLoss();
    file_.reset();
}

void Trace::EndWithLoss() {
    console_.ReportLoss(name_ + ": the rest of the trace is lost: " + file_->Problem());
    file_.reset();
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
    trace_->unwritten_ += line_;
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
