#pragma once

#include "Tizen/Base/String.h"

namespace Tizen {
namespace System {

/// What the user has set in the phone's own settings. UI thread only.
class SettingInfo {
public:
    SettingInfo() = delete;

    /// The ringtone's volume, 0..15, for a key whose path ends in "setting/sound.ringtone.volume". Any other key is
    /// E_OBJ_NOT_FOUND and leaves `value` as it is.
    static result GetValue(const Tizen::Base::String& key, int& value);
};

}  // namespace System
}  // namespace Tizen
