#include "Tizen/Base/Collection/ArrayList.h"

#include <cstddef>
#include <new>

namespace Tizen {
namespace Base {
namespace Collection {

result ArrayList::Construct(int capacity) {
    if (capacity < 0) return E_INVALID_ARG;
    try {
        objects_.reserve(static_cast<std::size_t>(capacity));
    } catch (const std::bad_alloc&) {
        return E_OUT_OF_MEMORY;
    }
    return E_SUCCESS;
}

Object* ArrayList::GetAt(int index) {
    if (index < 0 || index >= GetCount()) return nullptr;
    return objects_[static_cast<std::size_t>(index)];
}

const Object* ArrayList::GetAt(int index) const {
    if (index < 0 || index >= GetCount()) return nullptr;
    return objects_[static_cast<std::size_t>(index)];
}

result ArrayList::Add(Object* pObject) {
    if (pObject == nullptr) return E_INVALID_ARG;
    try {
        objects_.push_back(pObject);
    } catch (const std::bad_alloc&) {
        return E_OUT_OF_MEMORY;
    }
    return E_SUCCESS;
}

void ArrayList::RemoveAll() {
    for (Object* pObject : objects_) deleter_(pObject);
    objects_.clear();
}

}  // namespace Collection
}  // namespace Base
}  // namespace Tizen
