#include "runtime/package/Values.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

namespace host {

namespace {

constexpr double kTen = 10;
constexpr int kHexBase = 16;
// More digits than this cannot matter, and are surely a mistake.
constexpr std::size_t kLongestNumber = 15;

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
    text = Trimmed(text);
    if (text.size() > kLongestNumber) return std::nullopt;
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative) text.remove_prefix(1);
    double value = 0;
    double unit = 1;
    bool hasDigit = false;
    bool hasPoint = false;
    for (const char character : text) {
        if (character == '.' && !hasPoint) {
            hasPoint = true;
        } else if (IsDigit(character)) {
            hasDigit = true;
            value = value * kTen + (character - '0');
            if (hasPoint) unit *= kTen;
        } else {
            return std::nullopt;
        }
    }
    if (!hasDigit) return std::nullopt;
    return (isNegative ? -value : value) / unit;
}

std::optional<int> ParseWhole(std::string_view text, int least, int most) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, number);
    if (read.ec != std::errc() || read.ptr != end || number < least || number > most) return std::nullopt;
    return number;
}

std::optional<std::vector<double>> ParseNumbers(std::string_view text) {
    std::vector<double> numbers;
    for (;;) {
        const std::size_t comma = text.find(',');
        const auto number = ParseNumber(text.substr(0, comma));
        if (!number) return std::nullopt;
        numbers.push_back(*number);
        if (comma == std::string_view::npos) return numbers;
        text.remove_prefix(comma + 1);
    }
}

std::optional<Rgba> ParseColor(std::string_view text) {
    constexpr std::size_t kDigits = 2;
    constexpr std::size_t kOpaqueLength = 1 + 3 * kDigits;
    constexpr std::size_t kFullLength = 1 + 4 * kDigits;
    text = Trimmed(text);
    if (text.empty() || text.front() != '#' || (text.size() != kOpaqueLength && text.size() != kFullLength)) {
        return std::nullopt;
    }
    std::array<std::uint8_t, 4> channels{0, 0, 0, UINT8_MAX};
    for (std::size_t i = 0; 1 + i * kDigits < text.size(); ++i) {
        const char* first = text.data() + 1 + i * kDigits;
        const auto [end, error] = std::from_chars(first, first + kDigits, channels[i], kHexBase);
        if (error != std::errc() || end != first + kDigits) return std::nullopt;
    }
    return Rgba{channels[0], channels[1], channels[2], channels[3]};
}

}  // namespace host
