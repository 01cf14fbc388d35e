#pragma once

namespace Tizen {
namespace Base {
namespace Runtime {

/// The root of all listener interfaces, which derive from it virtually, so that a class may be several at once.
class IEventListener {
public:
    virtual ~IEventListener() = default;
};

}  // namespace Runtime
}  // namespace Base
}  // namespace Tizen
