#pragma once

#include <memory>

#include "Tizen/Base/BufferBase.h"

namespace Tizen {
namespace Base {

/// Bytes of a fixed capacity. Not copied: the same buffer circulates between whoever fills and whoever reads it.
class ByteBuffer : public BufferBase {
public:
    ByteBuffer() = default;
    ByteBuffer(const ByteBuffer&) = delete;
    ByteBuffer& operator=(const ByteBuffer&) = delete;

    /// `capacity` zero bytes, all of them below the limit. E_INVALID_ARG when it is negative; E_INVALID_STATE the
    /// second time.
    result Construct(int capacity);

    /// The byte at `index`. E_OUT_OF_RANGE outside of 0..GetLimit() - 1 leaves `value` as it is.
    result GetByte(int index, byte& value) const {
        if (index < 0 || index >= GetLimit()) return E_OUT_OF_RANGE;
        value = bytes_[static_cast<unsigned>(index)];
        return E_SUCCESS;
    }
    result SetByte(int index, byte value) {
        if (index < 0 || index >= GetLimit()) return E_OUT_OF_RANGE;
        bytes_[static_cast<unsigned>(index)] = value;
        return E_SUCCESS;
    }

    /// All GetCapacity() bytes; null before Construct.
    const byte* GetPointer() const { return bytes_.get(); }
    byte* GetPointer() { return bytes_.get(); }

private:
    std::unique_ptr<byte[]> bytes_;
};

}  // namespace Base
}  // namespace Tizen
