#include "runtime/screen/composing/Compositor.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "backend/LoopDriver.h"
#include "runtime/screen/composing/FocusRing.h"
#include "runtime/screen/composing/Region.h"

namespace host {

namespace {

constexpr Rgba kBlack{0, 0, 0, 255};
constexpr std::uint8_t kOpaque = 255;

// Leaving out what lies under a smaller opaque part costs more cuts than it saves pixels.
constexpr std::int64_t kSmallestHidingPixels = std::int64_t{64} * 64;

// A control that is drawn on without end keeps so many operations; then it is painted, and the painting kept instead.
constexpr std::size_t kMostOperations = 256;

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

bool Compositor::HasContent() const {
    const auto isShown = [](const Node* node) { return node != nullptr && node->IsVisible(); };
    return isShown(stack_.Topmost()) || isShown(stack_.Overlay());
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

void Compositor::OnNodeDamaged(const Node& node) {
    const Node* overlay = stack_.Overlay();
    const bool isOnOverlay = overlay != nullptr && node.IsWithin(*overlay);
    if (stack_.ScreenOf(node) == nullptr && !isOnOverlay) return;
    damage_.Add(ToDevice(node.ScreenBounds()).Intersection(phoneArea_));
    isDirty_ = true;
}

void Compositor::DamageAll() {
    const PixelSize size = window_.Size();
    damage_.Clear();
    damage_.Add({0, 0, size.width, size.height});
    isDirty_ = true;
}

void Compositor::OnNodeMarked(const Node& node) {
    records_[&node].isMarked = true;
    isDirty_ = true;
}

void Compositor::OnNodeDrawn(const Node& node, DrawOperation operation) {
    NodeRecord& record = records_[&node];
    if (record.recording != nullptr) {
        record.recording->Add(std::move(operation));
        return;
    }
    if (record.shown.Size() != node.Size()) record.shown = DrawList(node.Size());
    if (record.shown.Length() >= kMostOperations && scale_ > 0) {
        const auto painted = std::shared_ptr<Surface>(painter_.CreateSurface(DeviceSize(node), scale_));
        record.shown.Paint(*painted);
        record.shown.ReplaceBy(painted);
    }
    record.shown.Add(std::move(operation));
    record.isChanged = true;
    isDirty_ = true;
}

PixelSize Compositor::DeviceSize(const Node& node) const {
    const PixelRect place = ToDevice(node.ScreenBounds());
    return {place.width, place.height};
}

void Compositor::RepaintAll() {
    for (auto& [node, record] : records_) record.isMarked = record.isChanged = true;
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
    if (Node* form = stack_.Form()) Draw(*form, phoneArea_);
    // By number, for what is drawn may take popups away.
    for (std::size_t i = 0; i < stack_.Popups().size(); ++i) Draw(*stack_.Popups()[i], phoneArea_);
    if (Node* overlay = stack_.Overlay()) Draw(*overlay, phoneArea_);
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
        if (!popup->IsVisible()) continue;
        AddColor(phoneArea_, ScreenStack::kDimming);
        AddLayers(*popup, phoneArea_);
    }
    if (Node* overlay = stack_.Overlay(); overlay != nullptr && overlay->IsVisible()) AddLayers(*overlay, phoneArea_);
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
    if (!node.IsVisible()) return;
    const PixelRect visible = ToDevice(node.ScreenBounds()).Intersection(clip);
    if (visible.IsEmpty()) return;
    NodeRecord& record = records_[&node];
    const bool isAsked = record.isMarked || record.shownScale != scale_;
    if (isAsked && !AskForDrawing(node, record)) return;
    record.isNew = std::exchange(record.isChanged, false);
    if (record.isNew) {
        record.isSurfaceFresh = false;
        damage_.Add(visible);
    }
    // OnDraw may change the tree; a child that is passed over by that is still marked for the next frame.
    const std::weak_ptr<Node> token = node.Token();
    for (std::size_t i = 0; !token.expired() && i < node.Children().size(); ++i) Draw(*node.Children()[i], visible);
}

bool Compositor::AskForDrawing(Node& node, NodeRecord& record) {
    record.isMarked = false;
    DrawList list(node.Size());
    node.DescribeLook(list, {painter_, scale_});
    if (NodeDelegate* delegate = node.Delegate()) {
        const std::weak_ptr<Node> token = node.Token();
        record.recording = &list;
        delegate->OnDraw();
        if (token.expired()) return false;
        record.recording = nullptr;
    }
    if (list == record.shown && record.shownScale == scale_) return true;
    record.shown = std::move(list);
    record.shownScale = scale_;
    record.isChanged = true;
    return true;
}

const Surface& Compositor::SurfaceOf(NodeRecord& record, PixelSize size) {
    const bool fits = record.surface && record.surface->Size() == size && record.surface->Scale() == scale_;
    if (fits && record.isSurfaceFresh) return *record.surface;
    if (!fits) record.surface = painter_.CreateSurface(size, scale_);
    record.shown.Paint(*record.surface);
    record.isSurfaceFresh = true;
    return *record.surface;
}

void Compositor::AddLayers(const Node& node, const PixelRect& clip) {
    if (!node.IsVisible()) return;
    Layer layer;
    layer.place = ToDevice(node.ScreenBounds());
    layer.visible = layer.place.Intersection(clip);
    if (layer.visible.IsEmpty()) return;
    NodeRecord& record = records_[&node];
    if (!record.shown.IsEmpty()) {
        layer.record = &record;
        const auto plain = record.shown.PlainColor();
        layer.isPlain = plain.has_value();
        layer.color = plain.value_or(Rgba{});
        layer.opaque = record.shown.OpaquePart({layer.place.width, layer.place.height}, scale_);
        layer.opaque.x += layer.place.x;
        layer.opaque.y += layer.place.y;
        layer.opaque = layer.opaque.Intersection(layer.visible);
        // What has just changed may change again at once, as a hole does: a surface would cost more than it saves.
        layer.isPaintedOver = record.isNew && record.shown.CanPaintOver(scale_);
        layers_.push_back(layer);
    }
    for (const Node* child : node.Children()) AddLayers(*child, layer.visible);
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
        if (layer->opaque.Intersection(rect).Area() >= std::min(kSmallestHidingPixels, rect.Area())) {
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
        PaintFocusRing(*focus_, ToDevice(focus_->ScreenBounds()), scale_, pixels);
    } else if (layer.isPlain && layer.color.alpha == kOpaque) {
        pixels.Clear(layer.color);
    } else if (layer.isPlain) {
        pixels.FillRectangle({static_cast<double>(clip.x), static_cast<double>(clip.y), static_cast<double>(clip.width),
                              static_cast<double>(clip.height)},
                             layer.color);
    } else if (layer.isPaintedOver) {
        layer.record->shown.PaintOver(pixels, layer.place, scale_);
    } else {
        const Surface& surface = SurfaceOf(*layer.record, {layer.place.width, layer.place.height});
        pixels.Compose(surface, layer.place.x, layer.place.y, step.blend);
    }
}

PixelRect Compositor::RingPlace() const {
    return focus_ == nullptr ? PixelRect{} : ToDevice(FocusRingPlace(*focus_)).Intersection(phoneArea_);
}

}  // namespace host
