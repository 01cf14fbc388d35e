#include "Tizen/Base/BufferBase.h"

namespace Tizen {
namespace Base {

result BufferBase::SetLimit(int limit) {
    if (limit < 0 || limit > capacity_) return E_OUT_OF_RANGE;
    limit_ = limit;
    if (position_ > limit_) position_ = limit_;
    return E_SUCCESS;
}

result BufferBase::SetPosition(int position) {
    if (position < 0 || position > limit_) return E_OUT_OF_RANGE;
    position_ = position;
    return E_SUCCESS;
}

void BufferBase::Clear() {
    limit_ = capacity_;
    position_ = 0;
}

void BufferBase::SetCapacity(int capacity) {
    capacity_ = capacity;
    Clear();
}

}  // namespace Base
}  // namespace Tizen
