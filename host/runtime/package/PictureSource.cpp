#include "runtime/package/PictureSource.h"

#include "runtime/package/Package.h"

namespace host {

const std::shared_ptr<const Picture>& PictureSource::Get() {
    if (package_ != nullptr) picture_ = std::exchange(package_, nullptr)->FindPicture(fileName_);
    return picture_;
}

}  // namespace host
