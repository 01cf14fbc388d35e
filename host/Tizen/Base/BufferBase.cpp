#include "Tizen/Base/BufferBase.h"

namespace Tizen {
namespace Base {

result BufferBase::SetLimit(int limit) {
    if (limit < 0 || limit > capacity_) return E_OUT_OF_RANGE;
    limit_ = limit;
    return E_SUCCESS;
}

void BufferBase::Clear() {
    limit_ = capacity_;
}

void BufferBase::SetCapacity(int capacity) {
    capacity_ = capacity;
    Clear();
}

}  // namespace Base
}  // namespace Tizen
