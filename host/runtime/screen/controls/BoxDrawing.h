#pragma once

#include <memory>

#include "runtime/package/Layout.h"
#include "runtime/screen/composing/DrawList.h"

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
/// The list's whole area.
[[nodiscard]] RectF WholeOf(const DrawList& list);
/// The part of the list's area where a text keeps clear of the border and of the rounded corners beside it.
[[nodiscard]] RectF TextAreaOf(const DrawList& list, const BoxLook& look);
/// The colour with `part` (0..1) of its light.
[[nodiscard]] Rgba Shaded(Rgba color, double part);

}  // namespace host
