#pragma once

#include "Tizen/Base/Object.h"

namespace Tizen {
namespace Base {
namespace Collection {

/// Objects in an order, counted from 0.
class IList {
public:
    virtual ~IList() = default;

    virtual int GetCount() const = 0;
    /// Null outside of 0..GetCount() - 1.
    virtual Object* GetAt(int index) = 0;
    virtual const Object* GetAt(int index) const = 0;

    /// At the end. E_INVALID_ARG when null.
    virtual result Add(Object* pObject) = 0;
    result Add(Object& object) { return Add(&object); }
    virtual void RemoveAll() = 0;
};

}  // namespace Collection
}  // namespace Base
}  // namespace Tizen
