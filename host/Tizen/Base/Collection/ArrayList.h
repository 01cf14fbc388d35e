#pragma once

#include <vector>

#include "Tizen/Base/Collection/IList.h"
#include "Tizen/Base/Collection/SingleObjectDeleter.h"

namespace Tizen {
namespace Base {
namespace Collection {

/// A list in one block of memory. Made with SingleObjectDeleter it owns its elements.
class ArrayList : public Object, public IList {
public:
    explicit ArrayList(DeleterFunctionType deleter) : deleter_(deleter) {}
    ArrayList(const ArrayList&) = delete;
    ArrayList& operator=(const ArrayList&) = delete;
    ~ArrayList() override { ArrayList::RemoveAll(); }

    /// Makes room for `capacity` elements; it grows by itself beyond them. E_INVALID_ARG when negative.
    result Construct(int capacity);

    using IList::Add;
    int GetCount() const override { return static_cast<int>(objects_.size()); }
    Object* GetAt(int index) override;
    const Object* GetAt(int index) const override;
    result Add(Object* pObject) override;
    void RemoveAll() override;

private:
    DeleterFunctionType deleter_;
    std::vector<Object*> objects_;
};

}  // namespace Collection
}  // namespace Base
}  // namespace Tizen
