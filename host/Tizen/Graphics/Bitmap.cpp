#include "Tizen/Graphics/Bitmap.h"

#include <utility>

#include "backend/Painter.h"

namespace Tizen {
namespace Graphics {

Bitmap::Bitmap(std::shared_ptr<const host::Picture> pPicture, std::string fileName)
    : pPicture_(std::move(pPicture)), fileName_(std::move(fileName)) {}

Bitmap::~Bitmap() = default;

}  // namespace Graphics
}  // namespace Tizen
