#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace host {

// How every painter sets a text (a TextStyle says which of it applies):
//   one line     line ends in the text become spaces; what is wider than maxWidth ends in an ellipsis
//   words        a line ends before the word that would be wider than maxWidth, and at every line end in the text; what
//                is higher than maxHeight ends in an ellipsis on the last line that fits, and one line is always there
//   long words   a word that is wider than a whole line is broken between any two characters
//   Korean       a word is whole from space to space, although Unicode allows a break after every syllable
//   Japanese     lines break between characters, but not before closing marks and small kana (Unicode's own rules)
//   last lines   of Korean and Japanese paragraphs have two syllables or more
//   alignment    of the lines within maxWidth, or within the widest of them without one; the first strong character
//                of a text does not turn left into right

/// Bytes `begin` to before `end` of a text.
struct TextRange {
    std::size_t begin = 0;
    std::size_t end = 0;

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// The ranges within which no line of the text is broken, beyond what Unicode's rules (UAX #14) say: in order, none
/// touching another. `utf8` must be valid.
[[nodiscard]] std::vector<TextRange> UnbreakableRanges(std::string_view utf8);

}  // namespace host
