#pragma once

#include <memory>

#include "runtime/package/Layout.h"
#include "runtime/screen/DrawList.h"

namespace host {

// What the standard controls' looks are put together from.

/// The inside of a rectangle with rounded corners; nothing for a transparent colour.
void AddFilling(DrawList& list, const RectF& rect, double radius, Rgba color);
/// An outline that lies wholly within `rect`; nothing without a width.
void AddOutline(DrawList& list, const RectF& rect, double radius, double width, Rgba color);
/// Background and border over the list's whole area.
void AddBox(DrawList& list, const BoxLook& look);
/// The picture over `rect`; nothing when it is null.
void AddPicture(DrawList& list, const RectF& rect, const std::shared_ptr<const Picture>& picture);

}  // namespace host
