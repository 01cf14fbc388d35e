#pragma once

#include "Tizen/Base/Object.h"
#include "Tizen/Base/String.h"

namespace Tizen {
namespace Base {

/// A whole number as an object, so that a list can hold it.
class Integer : public Object {
public:
    explicit Integer(int number = 0) : value(number) {}

    bool Equals(const Object& other) const override;
    int ToInt() const { return value; }

    /// Reads a decimal number with an optional sign; spaces around it do not matter. Anything else is E_NUM_FORMAT, a
    /// number that does not fit E_OUT_OF_RANGE, and `number` stays as it is.
    static result Parse(const String& text, int& number);

    int value;
};

}  // namespace Base
}  // namespace Tizen
