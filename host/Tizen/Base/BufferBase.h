#pragma once

#include "Tizen/Base/Object.h"

namespace Tizen {
namespace Base {

/// The bookkeeping of a buffer: of its capacity, the elements below the limit are filled. Both count elements.
class BufferBase : public Object {
public:
    int GetCapacity() const { return capacity_; }
    int GetLimit() const { return limit_; }

    /// 0..GetCapacity(). E_OUT_OF_RANGE otherwise.
    result SetLimit(int limit);
    /// Makes the whole capacity free to be filled again; the elements stay.
    void Clear();

protected:
    void SetCapacity(int capacity);

private:
    int capacity_ = 0;
    int limit_ = 0;
};

}  // namespace Base
}  // namespace Tizen
