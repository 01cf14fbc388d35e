#include "runtime/Console.h"

#include <array>
#include <cstddef>

namespace host {

namespace {

void AppendEscaped(std::string& text, unsigned char byte) {
    std::array<char, 8> escaped{};
    const int length = std::snprintf(escaped.data(), escaped.size(), "\\x%02x", unsigned{byte});
    text.append(escaped.data(), static_cast<std::size_t>(length));
}

}  // namespace

std::string Printable(std::string_view text) {
    constexpr unsigned char kFirstPrintable = 0x20;
    constexpr unsigned char kDelete = 0x7F;
    // U+0080 to U+009F are this byte and one below 0xA0.
    constexpr unsigned char kLeadOfC1 = 0xC2;
    constexpr unsigned char kBehindC1 = 0xA0;
    constexpr unsigned char kFirstFollowing = 0x80;
    std::string printable;
    unsigned char previous = 0;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        const bool isC1 = previous == kLeadOfC1 && byte >= kFirstFollowing && byte < kBehindC1;
        if (isC1) printable.pop_back();
        if (isC1) AppendEscaped(printable, previous);
        if (isC1 || byte < kFirstPrintable || byte == kDelete) {
            AppendEscaped(printable, byte);
        } else {
            printable += character;
        }
        previous = byte;
    }
    return printable;
}

}  // namespace host
