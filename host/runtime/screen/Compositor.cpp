#include "runtime/screen/Compositor.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "backend/LoopDriver.h"

namespace host {

namespace {

constexpr Rgba kBlack{0, 0, 0, 255};
constexpr Rgba kDimming{0, 0, 0, 128};
constexpr std::uint8_t kOpaque = 255;

// Leaving out what lies under a smaller opaque part costs more cuts than it saves pixels.
constexpr std::int64_t kSmallestHidingPixels = std::int64_t{64} * 64;

// The focus ring, in the phone's pixels: a light line within a dark one, so that it stands out from every colour.
constexpr double kRingDistance = 3;
constexpr double kRingDarkWidth = 7;
constexpr double kRingLightWidth = 3;
constexpr int kRingReach = 8;  ///< how far it extends beyond the node, with its antialiased edge
constexpr Rgba kRingDark{24, 24, 24, 255};
constexpr Rgba kRingLight{255, 255, 255, 255};

std::int64_t Area(const PixelRect& rect) {
    return rect.IsEmpty() ? 0 : std::int64_t{rect.width} * rect.height;
}

}  // namespace

Compositor::Compositor(const Clock& clock, Painter& painter, Window& window, Trace& trace, const ScreenStack& stack,
                       PixelSize phoneScreen)
    : clock_(clock), painter_(painter), window_(window), trace_(trace), stack_(stack), phoneScreen_(phoneScreen) {
    FitPhoneScreen();
    DamageAll();
}

void Compositor::FitPhoneScreen() {
    const PixelSize window = window_.Size();
    scale_ = std::min(static_cast<double>(window.width) / phoneScreen_.width,
                      static_cast<double>(window.height) / phoneScreen_.height);
    const int width = static_cast<int>(std::lround(phoneScreen_.width * scale_));
    const int height = static_cast<int>(std::lround(phoneScreen_.height * scale_));
    phoneArea_ = {(window.width - width) / 2, (window.height - height) / 2, width, height};
}

PointF Compositor::ToPhone(double deviceX, double deviceY) const {
    if (scale_ <= 0) return {-1, -1};
    return {(deviceX - phoneArea_.x) / scale_, (deviceY - phoneArea_.y) / scale_};
}

PixelRect Compositor::ToDevice(const PixelRect& phoneRect) const {
    const auto edge = [this](int position) { return static_cast<int>(std::lround(position * scale_)); };
    const int left = edge(phoneRect.x);
    const int top = edge(phoneRect.y);
    return {phoneArea_.x + left, phoneArea_.y + top, edge(phoneRect.x + phoneRect.width) - left,
            edge(phoneRect.y + phoneRect.height) - top};
}

void Compositor::AddDamage(const Node& node) {
    if (stack_.ScreenOf(node) == nullptr) return;
    damage_.Add(ToDevice(node.ScreenBounds()).Intersection(phoneArea_));
    isDirty_ = true;
}

void Compositor::DamageAll() {
    const PixelSize size = window_.Size();
    damage_.Clear();
    damage_.Add({0, 0, size.width, size.height});
    isDirty_ = true;
}

template <typename Visit>
void Compositor::VisitShown(Visit visit) const {
    if (Node* form = stack_.Form()) visit(*form);
    for (std::size_t i = 0; i < stack_.Popups().size(); ++i) {
        if (stack_.Popups()[i]->isVisible_) visit(*stack_.Popups()[i]);
    }
}

void Compositor::RepaintAll() {
    const auto spoil = [](auto& self, Node& node) -> void {
        node.isMarked_ = true;
        node.isChanged_ = true;
        for (Node* child : node.children_) self(self, *child);
    };
    VisitShown([&spoil](Node& node) { spoil(spoil, node); });
    DamageAll();
}

void Compositor::OnResized() {
    FitPhoneScreen();
    // Nodes that were last drawn at another scale find that out when they are drawn.
    DamageAll();
}

void Compositor::SetVisible(bool isVisible) {
    if (isVisible && !isVisible_) DamageAll();
    isVisible_ = isVisible;
}

void Compositor::SetFocus(const Node* node) {
    if (focus_ == node) return;
    focus_ = node;
    isDirty_ = true;
}

Microseconds Compositor::NextDue() const {
    return IsWanted() ? nextFrame_ : LoopClient::kNever;
}

void Compositor::Compose(Microseconds now) {
    const Microseconds begin = clock_.Now();
    isDirty_ = false;
    nextFrame_ = now + window_.FrameInterval();
    if (scale_ <= 0) return;
    VisitShown([this](Node& node) { Draw(node, phoneArea_); });
    const PixelRect ring = RingPlace();
    if (ring != ringShown_) {
        damage_.Add(ringShown_);
        damage_.Add(ring);
        ringShown_ = ring;
    }
    if (damage_.IsEmpty()) return;

    const PixelSize size = window_.Size();
    layers_.clear();
    AddColor({0, 0, size.width, size.height}, kBlack);
    if (Node* form = stack_.Form()) AddLayers(*form, phoneArea_);
    for (Node* popup : stack_.Popups()) {
        if (!popup->isVisible_) continue;
        AddColor(phoneArea_, kDimming);
        AddLayers(*popup, phoneArea_);
    }
    if (!ring.IsEmpty()) {
        Layer layer;
        layer.place = layer.visible = ring;
        layer.isRing = true;
        layers_.push_back(layer);
    }

    Surface& pixels = window_.Pixels();
    for (const PixelRect& rect : damage_.Rects()) ComposeRect(rect, pixels);
    pixels.ResetClip();
    window_.Present(damage_.Rects());
    ++framesComposed_;
    trace_.Add("frame").Milliseconds("ms_drawing", clock_.Now() - begin).Rectangle("damage", damage_.Bounds());
    damage_.Clear();
}

void Compositor::Draw(Node& node, const PixelRect& clip) {
    if (!node.isVisible_) return;
    const PixelRect place = ToDevice(node.ScreenBounds());
    const PixelRect visible = place.Intersection(clip);
    if (visible.IsEmpty()) return;
    if (node.isMarked_ || node.shownScale_ != scale_) {
        const std::weak_ptr<Node> token = node.Token();
        AskForDrawing(node);
        if (token.expired()) return;
    }
    node.isNew_ = std::exchange(node.isChanged_, false);
    if (node.isNew_) {
        node.isSurfaceFresh_ = false;
        damage_.Add(visible);
    }
    // OnDraw may change the tree; a child that is passed over by that is still marked for the next frame.
    const std::weak_ptr<Node> token = node.Token();
    for (std::size_t i = 0; !token.expired() && i < node.children_.size(); ++i) Draw(*node.children_[i], visible);
}

void Compositor::AskForDrawing(Node& node) {
    node.isMarked_ = false;
    DrawList list(node.Size());
    node.DescribeLook(list);
    if (node.delegate_ != nullptr) {
        const std::weak_ptr<Node> token = node.Token();
        node.recording_ = &list;
        node.delegate_->OnDraw();
        if (token.expired()) return;
        node.recording_ = nullptr;
    }
    if (list == node.shown_ && node.shownScale_ == scale_) return;
    node.shown_ = std::move(list);
    node.shownScale_ = scale_;
    node.isChanged_ = true;
}

const Surface& Compositor::SurfaceOf(Node& node, PixelSize size) {
    const bool fits = node.surface_ && node.surface_->Size() == size && node.surface_->Scale() == scale_;
    if (fits && node.isSurfaceFresh_) return *node.surface_;
    if (!fits) node.surface_ = painter_.CreateSurface(size, scale_);
    node.shown_.Paint(*node.surface_);
    node.isSurfaceFresh_ = true;
    return *node.surface_;
}

void Compositor::AddLayers(Node& node, const PixelRect& clip) {
    if (!node.isVisible_) return;
    Layer layer;
    layer.place = ToDevice(node.ScreenBounds());
    layer.visible = layer.place.Intersection(clip);
    if (layer.visible.IsEmpty()) return;
    if (!node.shown_.IsEmpty()) {
        const PixelSize size{layer.place.width, layer.place.height};
        layer.node = &node;
        const auto plain = node.shown_.PlainColor();
        layer.isPlain = plain.has_value();
        layer.color = plain.value_or(Rgba{});
        layer.opaque = node.shown_.OpaquePart(size, scale_);
        layer.opaque.x += layer.place.x;
        layer.opaque.y += layer.place.y;
        layer.opaque = layer.opaque.Intersection(layer.visible);
        // What has just changed may change again at once, as a hole does: a surface would cost more than it saves.
        layer.isPaintedOver = node.isNew_ && node.shown_.CanPaintOver(scale_);
        layers_.push_back(layer);
    }
    for (Node* child : node.children_) AddLayers(*child, layer.visible);
}

void Compositor::AddColor(const PixelRect& place, Rgba color) {
    Layer layer;
    layer.place = layer.visible = place;
    layer.color = color;
    layer.isPlain = true;
    if (color.alpha == kOpaque) layer.opaque = place;
    layers_.push_back(layer);
}

void Compositor::ComposeRect(const PixelRect& rect, Surface& pixels) {
    steps_.clear();
    Region rest(rect);
    for (auto layer = layers_.rbegin(); layer != layers_.rend() && !rest.IsEmpty(); ++layer) {
        for (const PixelRect& piece : rest.Rects()) {
            const PixelRect part = piece.Intersection(layer->visible);
            if (part.IsEmpty()) continue;
            if (layer->isPaintedOver) {
                steps_.push_back({&*layer, part, Surface::Blend::kOver});
                continue;
            }
            const PixelRect replaced = part.Intersection(layer->opaque);
            if (!replaced.IsEmpty()) steps_.push_back({&*layer, replaced, Surface::Blend::kReplace});
            Region blended(part);
            blended.Subtract(layer->opaque);
            for (const PixelRect& clip : blended.Rects()) steps_.push_back({&*layer, clip, Surface::Blend::kOver});
        }
        if (Area(layer->opaque.Intersection(rect)) >= std::min(kSmallestHidingPixels, Area(rect))) {
            rest.Subtract(layer->opaque);
        }
    }
    for (auto step = steps_.rbegin(); step != steps_.rend(); ++step) Perform(*step, pixels);
}

void Compositor::Perform(const Step& step, Surface& pixels) {
    const Layer& layer = *step.layer;
    const PixelRect& clip = step.clip;
    pixels.SetClip(clip);
    if (layer.isRing) {
        PaintRing(pixels);
    } else if (layer.isPlain && layer.color.alpha == kOpaque) {
        pixels.Clear(layer.color);
    } else if (layer.isPlain) {
        pixels.FillRectangle({static_cast<double>(clip.x), static_cast<double>(clip.y), static_cast<double>(clip.width),
                              static_cast<double>(clip.height)},
                             layer.color);
    } else if (layer.isPaintedOver) {
        layer.node->shown_.PaintOver(pixels, layer.place, scale_);
    } else {
        const Surface& surface = SurfaceOf(*layer.node, {layer.place.width, layer.place.height});
        pixels.Compose(surface, layer.place.x, layer.place.y, step.blend);
    }
}

PixelRect Compositor::RingPlace() const {
    if (focus_ == nullptr || !focus_->IsVisibleInTree()) return {};
    PixelRect place = focus_->ScreenBounds();
    place.x -= kRingReach;
    place.y -= kRingReach;
    place.width += 2 * kRingReach;
    place.height += 2 * kRingReach;
    return ToDevice(place).Intersection(phoneArea_);
}

void Compositor::PaintRing(Surface& pixels) const {
    const PixelRect place = ToDevice(focus_->ScreenBounds());
    const double distance = kRingDistance * scale_;
    const RectF ring{place.x - distance, place.y - distance, place.width + 2 * distance, place.height + 2 * distance};
    const double arc = 2 * (focus_->Corner() * scale_ + distance);
    pixels.StrokeRoundRectangle(ring, arc, arc, kRingDarkWidth * scale_, kRingDark);
    pixels.StrokeRoundRectangle(ring, arc, arc, kRingLightWidth * scale_, kRingLight);
}

bool Compositor::SavePicture(const std::string& path) const {
    const auto picture = painter_.CreateSurface({phoneArea_.width, phoneArea_.height}, 1);
    picture->Compose(window_.Pixels(), -phoneArea_.x, -phoneArea_.y, Surface::Blend::kReplace);
    return painter_.WritePng(*picture, path);
}

}  // namespace host
