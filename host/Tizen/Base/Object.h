#pragma once

#include "Tizen/Base/Types.h"

namespace Tizen {
namespace Base {

/// What the framework's collections hold.
class Object {
public:
    virtual ~Object() = default;

    /// Whether `other` means the same; only itself, unless a class knows better.
    virtual bool Equals(const Object& other) const { return this == &other; }

protected:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
};

}  // namespace Base
}  // namespace Tizen
