#include "runtime/screen/composing/Region.h"

#include <utility>

namespace host {

Region::Region(const PixelRect& rect) {
    if (!rect.IsEmpty()) rects_.push_back(rect);
}

void Region::Subtract(const PixelRect& rect) {
    std::vector<PixelRect> rest;
    for (const PixelRect& piece : rects_) {
        const PixelRect hole = piece.Intersection(rect);
        if (hole.IsEmpty()) {
            rest.push_back(piece);
            continue;
        }
        const auto keep = [&rest](const PixelRect& part) {
            if (!part.IsEmpty()) rest.push_back(part);
        };
        const int holeBottom = hole.y + hole.height;
        const int holeRight = hole.x + hole.width;
        keep({piece.x, piece.y, piece.width, hole.y - piece.y});
        keep({piece.x, hole.y, hole.x - piece.x, hole.height});
        keep({holeRight, hole.y, piece.x + piece.width - holeRight, hole.height});
        keep({piece.x, holeBottom, piece.width, piece.y + piece.height - holeBottom});
    }
    rects_ = std::move(rest);
}

}  // namespace host
