#include "text/LineBreaking.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace host {

namespace {

enum class Kind {
    kSpace,
    kLineEnd,
    kHangul,    ///< a syllable of Korean
    kIdeogram,  ///< a syllable of Japanese: kana or a Chinese character
    kMark,      ///< punctuation, and small kana that belong to the syllable before
    kOther      ///< other scripts, digits
};

struct Character {
    Kind kind = Kind::kOther;
    std::size_t begin = 0;
    std::size_t end = 0;
};

bool IsWithin(char32_t code, char32_t first, char32_t last) {
    return code >= first && code <= last;
}

// Blocks of Unicode's Blocks.txt, version 15.
Kind KindOf(char32_t code) {
    constexpr std::u32string_view kSmallKana = U"ぁぃぅぇぉっゃゅょゎァィゥェォッャュョヮヵヶー";
    if (code == U' ' || code == U'\t') return Kind::kSpace;
    if (code == U'\n' || code == U'\r') return Kind::kLineEnd;
    if (IsWithin(code, 0xAC00, 0xD7A3)) return Kind::kHangul;
    if (kSmallKana.find(code) != std::u32string_view::npos) return Kind::kMark;
    const bool isKana = IsWithin(code, 0x3041, 0x3096) || IsWithin(code, 0x30A1, 0x30FA);
    const bool isChinese = IsWithin(code, 0x4E00, 0x9FFF) || IsWithin(code, 0x3400, 0x4DBF) || code == U'々';
    if (isKana || isChinese) return Kind::kIdeogram;
    const bool isAsciiMark = IsWithin(code, U'!', U'/') || IsWithin(code, U':', U'@') || IsWithin(code, U'[', U'`') ||
                             IsWithin(code, U'{', U'~');
    // General punctuation, that of Chinese and Japanese, and its full-width forms.
    const bool isMark = IsWithin(code, 0x2010, 0x2027) || IsWithin(code, 0x3001, 0x303F) || code == U'・' ||
                        IsWithin(code, 0xFF01, 0xFF0F) || IsWithin(code, 0xFF1A, 0xFF20);
    return isAsciiMark || isMark ? Kind::kMark : Kind::kOther;
}

std::vector<Character> Decode(std::string_view utf8) {
    constexpr unsigned kContinuationBits = 6;
    constexpr unsigned kContinuationMask = 0x3F;
    std::vector<Character> characters;
    for (std::size_t at = 0; at < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[at]);
        const std::size_t bytes = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        // A lead byte of n bytes begins with n ones and a zero.
        char32_t code = bytes == 1 ? lead : lead & (0x7FU >> bytes);
        const std::size_t end = std::min(at + bytes, utf8.size());
        for (std::size_t next = at + 1; next < end; ++next) {
            code = code << kContinuationBits | (static_cast<unsigned char>(utf8[next]) & kContinuationMask);
        }
        characters.push_back({KindOf(code), at, end});
        at = end;
    }
    return characters;
}

bool IsSyllable(const Character& character) {
    return character.kind == Kind::kHangul || character.kind == Kind::kIdeogram;
}

}  // namespace

std::vector<TextRange> UnbreakableRanges(std::string_view utf8) {
    std::vector<TextRange> ranges;
    const auto add = [&ranges](TextRange range) {
        // A paragraph's last syllables may begin within its last words.
        while (!ranges.empty() && ranges.back().end > range.begin) {
            range.begin = std::min(range.begin, ranges.back().begin);
            ranges.pop_back();
        }
        ranges.push_back(range);
    };

    std::size_t wordBegin = 0;
    bool isKorean = false;
    std::optional<std::size_t> lastSyllable;
    std::optional<std::size_t> lastButOne;
    const auto endWord = [&](std::size_t end) {
        if (isKorean) add({wordBegin, end});
        isKorean = false;
    };
    const auto endParagraph = [&](std::size_t end) {
        endWord(end);
        if (lastButOne) add({*lastButOne, end});
        lastSyllable = lastButOne = std::nullopt;
    };

    for (const Character& character : Decode(utf8)) {
        if (character.kind == Kind::kLineEnd) {
            endParagraph(character.begin);
        } else if (character.kind == Kind::kSpace) {
            endWord(character.begin);
        } else {
            isKorean = isKorean || character.kind == Kind::kHangul;
        }
        if (character.kind == Kind::kLineEnd || character.kind == Kind::kSpace) wordBegin = character.end;
        if (IsSyllable(character)) {
            lastButOne = lastSyllable;
            lastSyllable = character.begin;
        } else if (character.kind == Kind::kOther) {
            lastSyllable = lastButOne = std::nullopt;
        }
    }
    endParagraph(utf8.size());
    return ranges;
}

}  // namespace host
