#pragma once

#include "backend/Painter.h"
#include "runtime/screen/Node.h"

namespace host {

// The focus ring's look: a light line within a dark one, so that it stands out from every colour.

/// Where the ring around the node shows, on the phone's screen; empty while the node is hidden.
[[nodiscard]] PixelRect FocusRingPlace(const Node& node);
/// Paints the ring around a node that lies at `place`, in device pixels, `scale` of them to a pixel of the phone.
void PaintFocusRing(const Node& node, const PixelRect& place, double scale, Surface& pixels);

}  // namespace host
