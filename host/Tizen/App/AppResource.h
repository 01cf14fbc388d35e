#pragma once

#include "Tizen/Base/String.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Bitmap.h"

namespace Tizen {
namespace App {

/// The pictures and texts of the application's package. UI thread only.
class AppResource {
public:
    /// The picture of that file name; the caller owns it. Null when there is none or it does not decode.
    Tizen::Graphics::Bitmap* GetBitmapN(const Tizen::Base::String& fileName) const;
    /// The text of a string resource in the phone's language. E_OBJ_NOT_FOUND leaves `text` as it is.
    result GetString(const Tizen::Base::String& id, Tizen::Base::String& text) const;
};

}  // namespace App
}  // namespace Tizen
