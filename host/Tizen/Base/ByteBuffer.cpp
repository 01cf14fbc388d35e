#include "Tizen/Base/ByteBuffer.h"

#include <cstddef>
#include <new>

namespace Tizen {
namespace Base {

result ByteBuffer::Construct(int capacity) {
    if (capacity < 0) return E_INVALID_ARG;
    if (bytes_ != nullptr) return E_INVALID_STATE;
    bytes_.reset(new (std::nothrow) byte[static_cast<std::size_t>(capacity)]());
    if (bytes_ == nullptr) return E_OUT_OF_MEMORY;
    SetCapacity(capacity);
    return E_SUCCESS;
}

}  // namespace Base
}  // namespace Tizen
