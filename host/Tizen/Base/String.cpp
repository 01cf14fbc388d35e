#include "Tizen/Base/String.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <new>
#include <string_view>
#include <vector>

namespace Tizen {
namespace Base {

namespace {

// UTF-8 after RFC 3629: the lead byte's value bits, and the smallest code that may take that many bytes.
struct Utf8Form {
    unsigned char mask;
    unsigned char lead;
    int following;
    std::uint32_t smallest;
};

constexpr Utf8Form kUtf8Forms[] = {
    {0x80, 0x00, 0, 0}, {0xE0, 0xC0, 1, 0x80}, {0xF0, 0xE0, 2, 0x800}, {0xF8, 0xF0, 3, 0x10000}};
constexpr std::uint32_t kLargestCode = 0x10FFFF;
constexpr std::uint32_t kFirstSurrogate = 0xD800;
constexpr std::uint32_t kLastSurrogate = 0xDFFF;
constexpr std::uint32_t kReplacement = 0xFFFD;
constexpr unsigned char kFollowingMask = 0xC0;
constexpr unsigned char kFollowingLead = 0x80;
constexpr int kFollowingBits = 6;

// A byte that is no UTF-8 stands in a text as this code plus the byte, a place that no valid text uses (the way of
// Python's PEP 383, "surrogateescape").
constexpr std::uint32_t kRawByte = 0xDC00;
constexpr std::uint32_t kFirstRawByte = kRawByte + 0x80;
constexpr std::uint32_t kLastRawByte = kRawByte + 0xFF;

bool IsSurrogate(std::uint32_t code) {
    return code >= kFirstSurrogate && code <= kLastSurrogate;
}

// The code at the front of `bytes` and how many bytes it takes; a raw byte's code when there is no valid one.
std::uint32_t DecodeFirst(std::string_view bytes, std::size_t& taken) {
    const auto lead = static_cast<unsigned char>(bytes.front());
    taken = 1;
    for (const Utf8Form& form : kUtf8Forms) {
        if ((lead & form.mask) != form.lead) continue;
        if (bytes.size() <= static_cast<std::size_t>(form.following)) break;
        std::uint32_t code = lead & static_cast<unsigned char>(~form.mask);
        int found = 0;
        for (; found < form.following; ++found) {
            const auto following = static_cast<unsigned char>(bytes[static_cast<std::size_t>(found) + 1]);
            if ((following & kFollowingMask) != kFollowingLead) break;
            code = (code << kFollowingBits) | (following & static_cast<unsigned char>(~kFollowingMask));
        }
        if (found < form.following || code < form.smallest || code > kLargestCode || IsSurrogate(code)) break;
        taken = static_cast<std::size_t>(form.following) + 1;
        return code;
    }
    return kRawByte + lead;
}

std::wstring Decode(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        std::size_t taken = 0;
        text += static_cast<wchar_t>(DecodeFirst(bytes, taken));
        bytes.remove_prefix(taken);
    }
    return text;
}

void AppendUtf8(std::string& out, std::uint32_t code) {
    if (code >= kFirstRawByte && code <= kLastRawByte) {
        out += static_cast<char>(code - kRawByte);
        return;
    }
    if (code > kLargestCode || IsSurrogate(code)) code = kReplacement;
    const Utf8Form* pForm = kUtf8Forms;
    while (pForm != kUtf8Forms + 3 && code >= pForm[1].smallest) ++pForm;
    out += static_cast<char>(pForm->lead | (code >> (kFollowingBits * pForm->following)));
    for (int left = pForm->following - 1; left >= 0; --left) {
        constexpr std::uint32_t kValueBits = (1U << kFollowingBits) - 1;
        out += static_cast<char>(kFollowingLead | ((code >> (kFollowingBits * left)) & kValueBits));
    }
}

}  // namespace

String::String(const char* pText) {
    if (pText == nullptr) return;
    try {
        text_ = Decode(pText);
    } catch (const std::bad_alloc&) {
        text_.clear();
    }
}

String String::FromUtf8(const char* pBytes, int count) {
    String text;
    text.text_ = Decode({pBytes, static_cast<std::size_t>(count)});
    return text;
}

String::String(const wchar_t* pText) {
    if (pText != nullptr) text_ = pText;
}

bool String::Equals(const Object& other) const {
    const String* pOther = dynamic_cast<const String*>(&other);
    return pOther != nullptr && *pOther == *this;
}

String& String::operator+=(const String& text) {
    text_ += text.text_;
    return *this;
}

result String::Format(int maxLength, const wchar_t* pFormat, ...) {
    if (maxLength < 0 || pFormat == nullptr) return E_INVALID_ARG;
    // vswprintf does not say how much room it lacks, nor tells that apart from a text it cannot convert.
    constexpr std::size_t kMostCharacters = std::size_t{1} << 20;
    std::vector<wchar_t> buffer(static_cast<std::size_t>(maxLength) + 1);
    for (;;) {
        va_list arguments;
        va_start(arguments, pFormat);
        const int written = std::vswprintf(buffer.data(), buffer.size(), pFormat, arguments);
        va_end(arguments);
        if (written >= 0) {
            text_.assign(buffer.data(), static_cast<std::size_t>(written < maxLength ? written : maxLength));
            return E_SUCCESS;
        }
        if (buffer.size() >= kMostCharacters) return E_INVALID_ARG;
        buffer.resize(buffer.size() * 2);
    }
}

result String::IndexOf(const String& text, int startIndex, int& index) const {
    if (text.IsEmpty()) return E_INVALID_ARG;
    if (startIndex < 0 || startIndex > GetLength()) return E_OUT_OF_RANGE;
    const std::size_t found = text_.find(text.text_, static_cast<std::size_t>(startIndex));
    if (found == std::wstring::npos) return E_OBJ_NOT_FOUND;
    index = static_cast<int>(found);
    return E_SUCCESS;
}

bool String::EndsWith(const String& text) const {
    return text_.ends_with(text.text_);
}

result String::SubString(int startIndex, String& out) const {
    return SubString(startIndex, GetLength() - startIndex, out);
}

result String::SubString(int startIndex, int count, String& out) const {
    if (startIndex < 0 || count < 0 || startIndex > GetLength() - count) return E_OUT_OF_RANGE;
    out.text_ = text_.substr(static_cast<std::size_t>(startIndex), static_cast<std::size_t>(count));
    return E_SUCCESS;
}

result String::Remove(int startIndex, int count) {
    if (startIndex < 0 || count < 0 || startIndex > GetLength() - count) return E_OUT_OF_RANGE;
    text_.erase(static_cast<std::size_t>(startIndex), static_cast<std::size_t>(count));
    return E_SUCCESS;
}

std::string String::ToUtf8() const {
    std::string utf8;
    utf8.reserve(text_.size());
    for (const wchar_t character : text_) AppendUtf8(utf8, static_cast<std::uint32_t>(character));
    return utf8;
}

}  // namespace Base
}  // namespace Tizen
