#pragma once

#include <string>

#include "Tizen/Base/Object.h"

namespace Tizen {
namespace Base {

/// Wide text; positions and lengths count its characters. Made from bytes it reads them as UTF-8, and bytes that are no
/// UTF-8 come out of ToUtf8() as they went in, so that every file name of the system survives the way.
class String : public Object {
public:
    String() = default;
    /// UTF-8 up to the NUL; a null pointer is the empty text. Without memory for it the text is empty: an entry point
    /// that must not throw makes its arguments with this.
    String(const char* pText);
    /// A null pointer is the empty text.
    String(const wchar_t* pText);
    /// The text of UTF-8 bytes, which may hold NULs.
    static String FromUtf8(const char* pBytes, int count);
    String(const String&) = default;
    String& operator=(const String&) = default;
    ~String() override = default;

    int GetLength() const { return static_cast<int>(text_.size()); }
    bool IsEmpty() const { return text_.empty(); }
    /// Ends with a NUL; holds until the text is changed.
    const wchar_t* GetPointer() const { return text_.c_str(); }

    bool Equals(const Object& other) const override;
    friend bool operator==(const String& left, const String& right) { return left.text_ == right.text_; }

    String& operator+=(const String& text);
    friend String operator+(String left, const String& right) { return left += right; }

    /// printf with a wide format; what is longer than `maxLength` is cut. On a failure (E_INVALID_ARG) the text stays.
    result Format(int maxLength, const wchar_t* pFormat, ...);

    /// The first place at or after `startIndex`. E_OBJ_NOT_FOUND leaves `index` as it is; an empty `text` is nowhere.
    result IndexOf(const String& text, int startIndex, int& index) const;
    bool EndsWith(const String& text) const;
    result SubString(int startIndex, String& out) const;
    result SubString(int startIndex, int count, String& out) const;
    result Remove(int startIndex, int count);
    void Clear() { text_.clear(); }

    std::string ToUtf8() const;

private:
    std::wstring text_;
};

}  // namespace Base
}  // namespace Tizen
