#pragma once

#include "Drawing.h"

namespace pictures {

/// Takes the ocarina's picture on a warm paper ground and fills the whole of @p picture with it: the instrument in the
/// upper part, room for a name below. Works on every core; the result is the same for any number of them.
void PhotographOcarina(Picture& picture);

}  // namespace pictures
