#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "backend/Clock.h"
#include "backend/Painter.h"
#include "backend/Window.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/ScreenStack.h"
#include "runtime/screen/composing/Damage.h"
#include "runtime/screen/composing/DrawList.h"
#include "runtime/trace/Trace.h"

namespace host {

/// Turns marked nodes into pixels of the window: asks them for their drawing, paints what has changed, and composes and
/// presents the changed places alone. What lies wholly under something opaque is not touched. What it has to know of a
/// node it keeps by itself: the node's drawing, and a surface of it at the window's true scale. The surface is made
/// when it is first of use: not for a plain colour, and not before the same content is composed a second time. UI
/// thread only.
class Compositor final : public LookListener {
public:
    Compositor(const Clock& clock, Painter& painter, Window& window, Trace& trace, const ScreenStack& stack,
               PixelSize phoneScreen);

    // The phone's screen in the window.
    [[nodiscard]] double Scale() const { return scale_; }
    [[nodiscard]] PointF ToPhone(double deviceX, double deviceY) const;
    /// Edges go to the nearest device pixel, so that neighbours still meet.
    [[nodiscard]] PixelRect ToDevice(const PixelRect& phoneRect) const;

    // LookListener
    void OnNodeMarked(const Node& node) override;
    void OnNodeDrawn(const Node& node, DrawOperation operation) override;
    void OnNodeDamaged(const Node& node) override;

    /// A frame is wanted, whatever will have changed until then.
    void WantFrame() { isDirty_ = true; }
    /// The node is going.
    void Forget(const Node& node) { records_.erase(&node); }
    /// Everything that can be seen is composed again, from the surfaces that are there.
    void DamageAll();
    /// As DamageAll, and every visible node is asked for its drawing and painted.
    void RepaintAll();
    /// Takes the window's new size over.
    void OnResized();
    void SetVisible(bool isVisible);
    /// Which node the focus ring is around; null for none.
    void SetFocus(const Node* node);
    [[nodiscard]] const Node* Focus() const { return focus_; }

    /// Whether there is anything to compose, due or not.
    [[nodiscard]] bool IsWanted() const { return isVisible_ && isDirty_ && (framesComposed_ > 0 || HasContent()); }
    [[nodiscard]] bool IsDue(Microseconds now) const { return IsWanted() && now >= nextFrame_; }
    /// When Compose is to be called next; LoopClient::kNever when nothing is marked.
    [[nodiscard]] Microseconds NextDue() const;
    void Compose(Microseconds now);
    [[nodiscard]] std::uint64_t FramesComposed() const { return framesComposed_; }
    /// The phone's screen as it was last composed.
    [[nodiscard]] Image ReadScreen() const { return window_.Pixels().Read(phoneArea_); }

private:
    // What is known of one node.
    struct NodeRecord {
        bool isMarked = true;   ///< to be asked for its drawing
        bool isChanged = true;  ///< shows something else than was last composed
        bool isNew = false;     ///< its content changed in the frame that is being composed
        bool isSurfaceFresh = false;
        double shownScale = 0;
        DrawList* recording = nullptr;  ///< while it is asked for its drawing
        DrawList shown;
        std::unique_ptr<Surface> surface;
    };

    // One thing to compose, from the bottom up: a node, a plain colour or the ring.
    struct Layer {
        PixelRect place;               ///< where the surface lies
        PixelRect visible;             ///< the part of it that is not cut off
        PixelRect opaque;              ///< the part of that which hides what is below
        NodeRecord* record = nullptr;  ///< null for what is no node
        Rgba color;                    ///< where it is plain
        bool isPlain = false;
        bool isPaintedOver = false;  ///< without a surface of its own
        bool isRing = false;
    };
    struct Step {
        const Layer* layer;
        PixelRect clip;
        Surface::Blend blend;
    };

    void FitPhoneScreen();
    /// Whether there is a visible screen or overlay. The first frame waits for it: a black one before it would keep
    /// the first screen back by a frame's time.
    [[nodiscard]] bool HasContent() const;

    void Draw(Node& node, const PixelRect& clip);
    /// False when the node destroyed itself by that.
    [[nodiscard]] bool AskForDrawing(Node& node, NodeRecord& record);
    [[nodiscard]] const Surface& SurfaceOf(NodeRecord& record, PixelSize size);
    /// The device pixels of a node of that size.
    [[nodiscard]] PixelSize DeviceSize(const Node& node) const;

    void AddLayers(const Node& node, const PixelRect& clip);
    void AddColor(const PixelRect& place, Rgba color);
    [[nodiscard]] PixelRect RingPlace() const;
    void ComposeRect(const PixelRect& rect, Surface& pixels);
    void Perform(const Step& step, Surface& pixels);

    const Clock& clock_;
    Painter& painter_;
    Window& window_;
    Trace& trace_;
    const ScreenStack& stack_;
    const PixelSize phoneScreen_;

    double scale_ = 1;
    PixelRect phoneArea_;  ///< of the window
    bool isVisible_ = true;
    bool isDirty_ = true;
    Microseconds nextFrame_ = INT64_MIN;
    std::uint64_t framesComposed_ = 0;
    std::unordered_map<const Node*, NodeRecord> records_;
    Damage damage_;
    const Node* focus_ = nullptr;
    PixelRect ringShown_;

    // Kept from frame to frame for their memory alone.
    std::vector<Layer> layers_;
    std::vector<Step> steps_;
};

}  // namespace host
