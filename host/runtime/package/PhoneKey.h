#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace host {

/// The keys of the phone itself.
enum class PhoneKey { kBack, kVolumeUp, kVolumeDown };

struct PhoneKeyName {
    PhoneKey key;
    std::string_view name;
};
/// As the package's keys.xml and performances name them.
inline constexpr std::array<PhoneKeyName, 3> kPhoneKeyNames{
    {{PhoneKey::kBack, "back"}, {PhoneKey::kVolumeUp, "volume-up"}, {PhoneKey::kVolumeDown, "volume-down"}}};

/// The key of that name; empty when there is none.
[[nodiscard]] constexpr std::optional<PhoneKey> PhoneKeyNamed(std::string_view name) noexcept {
    for (const PhoneKeyName& candidate : kPhoneKeyNames) {
        if (candidate.name == name) return candidate.key;
    }
    return std::nullopt;
}

[[nodiscard]] constexpr std::string_view NameOf(PhoneKey key) noexcept {
    for (const PhoneKeyName& candidate : kPhoneKeyNames) {
        if (candidate.key == key) return candidate.name;
    }
    return {};
}

}  // namespace host
