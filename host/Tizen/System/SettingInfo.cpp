#include "Tizen/System/SettingInfo.h"

#include "runtime/Runtime.h"
#include "runtime/sound/Sound.h"

namespace Tizen {
namespace System {

using Tizen::Base::String;

result SettingInfo::GetValue(const String& key, int& value) {
    const wchar_t* pRingtoneVolume = L"setting/sound.ringtone.volume";
    if (key != pRingtoneVolume && !key.EndsWith(String(L"/") + pRingtoneVolume)) return E_OBJ_NOT_FOUND;
    value = host::Runtime::Current().GetSound().GetRingtoneVolume();
    return E_SUCCESS;
}

}  // namespace System
}  // namespace Tizen
