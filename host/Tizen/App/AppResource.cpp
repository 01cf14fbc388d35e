#include "Tizen/App/AppResource.h"

#include "runtime/Runtime.h"
#include "runtime/package/Package.h"

namespace Tizen {
namespace App {

using Tizen::Base::String;
using Tizen::Graphics::Bitmap;

Bitmap* AppResource::GetBitmapN(const String& fileName) const {
    const std::string name = fileName.ToUtf8();
    auto picture = host::Runtime::Current().GetPackage().FindPicture(name);
    if (!picture) return nullptr;
    return new Bitmap(std::move(picture), name);
}

result AppResource::GetString(const String& id, String& text) const {
    const std::string* found = host::Runtime::Current().GetPackage().FindString(id.ToUtf8());
    if (found == nullptr) return E_OBJ_NOT_FOUND;
    text = String(found->c_str());
    return E_SUCCESS;
}

}  // namespace App
}  // namespace Tizen
