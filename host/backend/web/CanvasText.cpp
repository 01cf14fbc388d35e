#include "backend/web/CanvasText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "backend/web/Bridge.h"
#include "text/LineBreaking.h"

namespace host {

namespace {

constexpr std::string_view kEllipsis = "…";

// Closing marks and small kana, which begin no line, and opening ones, which end none: JIS X 4051, 6.1.
constexpr std::u32string_view kNeverFirst =
    U"、。，．・：；？！ー」』）】〕〉》］｝々ゝゞぁぃぅぇぉっゃゅょゎァィゥェォッャュョヮヵヶ,.:;?!)]}%…";
constexpr std::u32string_view kNeverLast = U"「『（【〔〈《［｛([{";

struct Character {
    char32_t code = 0;
    std::size_t begin = 0;
};

std::vector<Character> Decode(std::string_view utf8) {
    constexpr unsigned kContinuationBits = 6;
    constexpr unsigned kContinuationMask = 0x3F;
    std::vector<Character> characters;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[at]);
        const std::size_t bytes = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        // A lead byte of n bytes begins with n ones and a zero.
        char32_t code = bytes == 1 ? lead : lead & (0x7FU >> bytes);
        const std::size_t end = std::min(at + bytes, utf8.size());
        for (std::size_t next = at + 1; next < end; ++next) {
            code = code << kContinuationBits | (static_cast<unsigned char>(utf8[next]) & kContinuationMask);
        }
        characters.push_back({code, at});
        at = end;
    }
    return characters;
}

bool IsSpace(char32_t code) {
    return code == U' ' || code == U'\t';
}

// Kana, Chinese characters, Korean syllables and the marks between them: Blocks.txt of Unicode 15.
bool IsEastern(char32_t code) {
    return (code >= 0x3000 && code <= 0x30FF) || (code >= 0x3400 && code <= 0x9FFF) ||
           (code >= 0xAC00 && code <= 0xD7A3) || (code >= 0xFF00 && code <= 0xFFEF);
}

// Whether a line may end between the two: the part of UAX #14 that the package's languages need.
bool IsBreak(char32_t before, char32_t after) {
    if (IsSpace(after) || kNeverFirst.find(after) != std::u32string_view::npos) return false;
    if (IsSpace(before) || before == U'-') return true;
    if (kNeverLast.find(before) != std::u32string_view::npos) return false;
    return IsEastern(before) || IsEastern(after);
}

std::string_view WithoutSpacesAtEnd(std::string_view text) {
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

std::size_t BeforeLastCharacter(std::string_view text) {
    constexpr unsigned kContinuation = 0x80;
    constexpr unsigned kContinuationMark = 0xC0;
    std::size_t at = text.size();
    while (at > 0) {
        --at;
        if ((static_cast<unsigned char>(text[at]) & kContinuationMark) != kContinuation) break;
    }
    return at;
}

}  // namespace

CanvasText::CanvasText(std::string_view utf8, const TextStyle& style, double scale)
    : fontSize_(std::max(1.0, style.size * (scale > 0 ? scale : 1))),
      isBold_(style.weight == FontWeight::kBold),
      scale_(scale > 0 ? scale : 1),
      maxWidth_(style.maxWidth) {
    std::array<double, 2> heights{};
    web_text_heights(fontSize_, isBold_ ? 1 : 0, heights.data());
    ascent_ = heights[0];
    lineHeight_ = heights[0] + heights[1];

    std::string text(utf8);
    const double width = maxWidth_ > 0 ? maxWidth_ * scale_ : std::numeric_limits<double>::infinity();
    if (style.wrap == TextWrap::kOneLine) {
        std::replace_if(
            text.begin(), text.end(), [](char byte) { return byte == '\n' || byte == '\r'; }, ' ');
        AddLine(text);
        if (lines_.front().width > width) Ellipsize(lines_.front(), width);
    } else {
        BreakLines(text, width, Ranges::kKept);
        // What no line can hold is broken after all.
        const auto isWider = [width](const Line& line) { return line.width > width; };
        if (std::any_of(lines_.begin(), lines_.end(), isWider)) BreakLines(text, width, Ranges::kBroken);
        const double most = style.maxHeight > 0 ? std::floor(style.maxHeight * scale_ / lineHeight_) : 0;
        const auto fitting = static_cast<std::size_t>(std::max(1.0, most));
        if (style.maxHeight > 0 && lines_.size() > fitting) {
            lines_[fitting - 1].text += ' ' + lines_[fitting].text;
            lines_.resize(fitting);
            Ellipsize(lines_.back(), width);
        }
    }
    for (const Line& line : lines_) widest_ = std::max(widest_, line.width);
    for (Line& line : lines_) {
        const double rest = widest_ - line.width;
        if (style.align == HorizontalAlign::kCenter) line.indent = std::round(rest / 2);
        if (style.align == HorizontalAlign::kRight) line.indent = rest;
    }
}

SizeF CanvasText::Measure() const {
    const double width = widest_ / scale_;
    return {maxWidth_ > 0 ? std::min(width, maxWidth_) : width,
            lineHeight_ * static_cast<double>(lines_.size()) / scale_};
}

double CanvasText::WidthOf(std::string_view text) const {
    return web_text_width(text.data(), static_cast<int>(text.size()), fontSize_, isBold_ ? 1 : 0);
}

void CanvasText::AddLine(std::string_view text) {
    const std::string_view shown = WithoutSpacesAtEnd(text);
    lines_.push_back({std::string(shown), WidthOf(shown), 0});
}

void CanvasText::BreakLines(std::string_view text, double width, Ranges unbreakable) {
    lines_.clear();
    const std::vector<TextRange> ranges =
        unbreakable == Ranges::kKept ? UnbreakableRanges(text) : std::vector<TextRange>();
    const auto isWithinRange = [&ranges](std::size_t at) {
        return std::any_of(ranges.begin(), ranges.end(),
                           [at](const TextRange& range) { return range.begin < at && at < range.end; });
    };
    const std::vector<Character> characters = Decode(text);
    std::size_t lineBegin = 0;
    std::size_t lastBreak = 0;  // Where the line may end; its begin while there is no such place.
    for (std::size_t i = 0; i < characters.size(); ++i) {
        const auto [code, begin] = characters[i];
        if (code == U'\n') {
            AddLine(text.substr(lineBegin, begin - lineBegin));
            lineBegin = lastBreak = begin + 1;
            continue;
        }
        if (begin > lineBegin && IsBreak(characters[i - 1].code, code) && !isWithinRange(begin)) lastBreak = begin;
        const std::size_t end = i + 1 < characters.size() ? characters[i + 1].begin : text.size();
        if (IsSpace(code) || WidthOf(text.substr(lineBegin, end - lineBegin)) <= width) continue;
        const bool isKept = unbreakable == Ranges::kKept && isWithinRange(begin);
        if (lastBreak == lineBegin && (begin == lineBegin || isKept)) continue;
        // A word that is wider than a whole line is broken between any two characters.
        const std::size_t cut = lastBreak > lineBegin ? lastBreak : begin;
        AddLine(text.substr(lineBegin, cut - lineBegin));
        lineBegin = lastBreak = cut;
    }
    AddLine(text.substr(lineBegin));
}

void CanvasText::Ellipsize(Line& line, double width) {
    isEllipsized_ = true;
    std::string rest = line.text;
    do {
        line.text = std::string(WithoutSpacesAtEnd(rest)).append(kEllipsis);
        line.width = WidthOf(line.text);
        rest.resize(BeforeLastCharacter(rest));
    } while (line.width > width && line.text.size() > kEllipsis.size());
}

}  // namespace host
