#include "Tizen/System/SystemInfo.h"

#include "runtime/Runtime.h"

namespace Tizen {
namespace System {

using Tizen::Base::String;

namespace {

bool IsKey(const String& key, const wchar_t* pName) {
    return key == pName || key.EndsWith(String(L"/") + pName);
}

}  // namespace

result SystemInfo::GetValue(const String& key, int& value) {
    const host::PixelSize screen = host::Runtime::Current().GetScreenSize();
    if (IsKey(key, L"screen.width")) {
        value = screen.width;
    } else if (IsKey(key, L"screen.height")) {
        value = screen.height;
    } else {
        return E_OBJ_NOT_FOUND;
    }
    return E_SUCCESS;
}

}  // namespace System
}  // namespace Tizen
