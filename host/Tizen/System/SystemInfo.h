#pragma once

#include "Tizen/Base/String.h"

namespace Tizen {
namespace System {

/// What the phone is. UI thread only.
class SystemInfo {
public:
    SystemInfo() = delete;

    /// "screen.width" and "screen.height", plain or at the end of a full key, in the phone's pixels. Any other key is
    /// E_OBJ_NOT_FOUND and leaves `value` as it is.
    static result GetValue(const Tizen::Base::String& key, int& value);
};

}  // namespace System
}  // namespace Tizen
