#include "Tizen/Base/Integer.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <system_error>

namespace Tizen {
namespace Base {

bool Integer::Equals(const Object& other) const {
    const Integer* pOther = dynamic_cast<const Integer*>(&other);
    return pOther != nullptr && pOther->value == value;
}

result Integer::Parse(const String& text, int& number) {
    constexpr std::string_view kBlanks = " \t";
    const std::string utf8 = text.ToUtf8();
    std::string_view digits = utf8;
    digits.remove_prefix(std::min(digits.find_first_not_of(kBlanks), digits.size()));
    digits.remove_suffix(digits.size() - (digits.find_last_not_of(kBlanks) + 1));
    // The conversion knows the minus alone; a plus may stand before digits only.
    if (digits.starts_with('+') && !digits.starts_with("+-")) digits.remove_prefix(1);

    int parsed = 0;
    const char* pEnd = digits.data() + digits.size();
    const auto [pStop, error] = std::from_chars(digits.data(), pEnd, parsed);
    if (error == std::errc::result_out_of_range) return E_OUT_OF_RANGE;
    if (error != std::errc() || pStop != pEnd) return E_NUM_FORMAT;
    number = parsed;
    return E_SUCCESS;
}

}  // namespace Base
}  // namespace Tizen
