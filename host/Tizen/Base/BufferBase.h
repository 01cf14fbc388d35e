#pragma once

#include "Tizen/Base/Object.h"

namespace Tizen {
namespace Base {

/// The bookkeeping of a buffer: of its capacity, the elements below the limit are filled, and the position is the next
/// one that a relative operation would take. All three count elements from 0.
class BufferBase : public Object {
public:
    int GetCapacity() const { return capacity_; }
    int GetLimit() const { return limit_; }
    int GetPosition() const { return position_; }

    /// 0..GetCapacity(); a position beyond it comes along. E_OUT_OF_RANGE otherwise.
    result SetLimit(int limit);
    /// 0..GetLimit(). E_OUT_OF_RANGE otherwise.
    result SetPosition(int position);
    /// Makes the whole capacity free to be filled again; the elements stay.
    void Clear();

protected:
    void SetCapacity(int capacity);

private:
    int capacity_ = 0;
    int limit_ = 0;
    int position_ = 0;
};

}  // namespace Base
}  // namespace Tizen
