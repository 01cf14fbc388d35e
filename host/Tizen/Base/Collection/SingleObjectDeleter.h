#pragma once

#include "Tizen/Base/Object.h"

namespace Tizen {
namespace Base {
namespace Collection {

/// What a list does with an element that leaves it or that it still holds at its end.
typedef void (*DeleterFunctionType)(Object* pObject);

/// For a list that owns its elements.
inline void SingleObjectDeleter(Object* pObject) {
    delete pObject;
}

}  // namespace Collection
}  // namespace Base
}  // namespace Tizen
