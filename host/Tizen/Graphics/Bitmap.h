#pragma once

#include <memory>
#include <string>

#include "Tizen/Base/Types.h"

namespace host {
class Picture;
}

namespace Tizen {
namespace Graphics {

/// A picture of the package. Copies share the pixels, which never change. UI thread only.
class Bitmap {
public:
    /// The host's own: a picture and the name of the file that it came from.
    Bitmap(std::shared_ptr<const host::Picture> pPicture, std::string fileName);
    Bitmap(const Bitmap&) = default;
    Bitmap& operator=(const Bitmap&) = default;
    ~Bitmap();

    const std::shared_ptr<const host::Picture>& GetPicture() const { return pPicture_; }
    const std::string& GetFileName() const { return fileName_; }

private:
    std::shared_ptr<const host::Picture> pPicture_;
    std::string fileName_;
};

}  // namespace Graphics
}  // namespace Tizen
