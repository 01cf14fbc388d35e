#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "backend/Painter.h"
#include "runtime/screen/DrawList.h"

namespace host {

class Screen;

/// A finger's news for the node that captured it.
struct FingerEvent {
    enum class Phase { kPress, kMove, kRelease, kCancel };

    Phase phase = Phase::kPress;
    unsigned long pointId = 0;  ///< the same from press to release; no two fingers that are down share one
    PointF position;            ///< in the node's own coordinates
};

enum class BackKeyPhase { kPress, kRelease };

/// What the keyboard tells the node that has the focus ring.
enum class FocusKey { kActivate, kLeft, kRight, kUp, kDown, kErase, kDigit };
struct FocusKeyEvent {
    FocusKey key = FocusKey::kActivate;
    int digit = 0;  ///< 0..15 for kDigit
    bool isRepeat = false;
    bool isShifted = false;
};

/// What a node tells the framework's control that it stands for. The control may be gone when a call returns.
class NodeDelegate {
public:
    /// To draw what the node's look does not show, by Node::Draw.
    virtual void OnDraw() = 0;
    /// A cancelled finger is reported as released.
    virtual void OnFinger(const FingerEvent& event) = 0;
    virtual void OnBackKey(BackKeyPhase phase) = 0;
    /// A button was pressed, a switch turned by the user.
    virtual void OnAction() = 0;
    /// The user picked another colour.
    virtual void OnColorChange() = 0;

protected:
    ~NodeDelegate() = default;
};

/// A place on the screen: what every control, form and popup is behind the framework. It has a tree, integer bounds in
/// the phone's pixels, a look, and its own retained surface at the window's true scale. The surface is made when it is
/// first of use: not for a plain colour, and not before the same content is composed a second time. UI thread only.
class Node {
public:
    explicit Node(Screen& screen);
    virtual ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// Null for none. Not owned.
    void SetDelegate(NodeDelegate* delegate) { delegate_ = delegate; }
    /// Expires with the node.
    [[nodiscard]] std::weak_ptr<Node> Token() const { return token_; }
    [[nodiscard]] Screen& GetScreen() const { return screen_; }

    /// On top of the children that are there. A child is not owned; it leaves by itself when it is destroyed.
    void AddChild(Node& child);
    void RemoveFromParent();
    [[nodiscard]] Node* Parent() const { return parent_; }
    [[nodiscard]] const std::vector<Node*>& Children() const { return children_; }
    [[nodiscard]] Node& Root();
    /// Whether this is `other` or in it.
    [[nodiscard]] bool IsWithin(const Node& other) const;
    /// The first visible one of that name in this tree, in document order; null when there is none.
    [[nodiscard]] Node* FindVisible(std::string_view name);

    void SetName(std::string name) { name_ = std::move(name); }
    [[nodiscard]] const std::string& Name() const { return name_; }

    /// Place in the parent.
    void SetBounds(const PixelRect& bounds);
    [[nodiscard]] const PixelRect& Bounds() const { return bounds_; }
    /// Place on the phone's screen.
    [[nodiscard]] PixelRect ScreenBounds() const;
    [[nodiscard]] SizeF Size() const;

    void SetVisible(bool isVisible);
    [[nodiscard]] bool IsVisible() const { return isVisible_; }
    /// Whether it and everything around it is visible.
    [[nodiscard]] bool IsVisibleInTree() const;

    /// Touches pass through a node that takes none, to what lies under it.
    void SetTakesTouches(bool takesTouches) { takesTouches_ = takesTouches; }
    [[nodiscard]] bool TakesTouches() const { return takesTouches_; }
    void SetMultipoint(bool isMultipoint) { isMultipoint_ = isMultipoint; }
    [[nodiscard]] bool IsMultipoint() const { return isMultipoint_; }

    enum class Extent { kNode, kTree };
    /// Asks for the look and OnDraw at the next frame.
    void RequestRedraw(Extent extent);
    /// Draws over what the node shows. Within OnDraw the operations make up the node's new content; at other times they
    /// add to the present one.
    void Draw(DrawOperation operation);

    /// Called by whoever captured the finger for this node. May destroy the node.
    virtual void OnFinger(const FingerEvent& event);
    [[nodiscard]] virtual bool IsFocusable() const { return false; }
    /// A key for the focused node. False when it means nothing to it. May destroy the node.
    virtual bool OnFocusKey(const FocusKeyEvent&) { return false; }
    /// The activating key was lifted, or taken away. May destroy the node.
    virtual void OnActivateKeyLifted(bool isCancelled) { static_cast<void>(isCancelled); }
    /// The focus ring has come or gone.
    virtual void OnFocusChanged(bool hasFocus) { static_cast<void>(hasFocus); }
    /// May destroy the node.
    void OnBackKey(BackKeyPhase phase);
    /// Tells listeners what they have not been told yet of a change that the user goes on making.
    virtual void FlushReports() {}
    /// Corner radius of the outline, for the focus ring.
    [[nodiscard]] virtual double Corner() const { return 0; }

protected:
    /// Adds the standard look to an empty list.
    virtual void DescribeLook(DrawList&) {}
    [[nodiscard]] NodeDelegate* Delegate() const { return delegate_; }
    /// A mark for a change of the look.
    void LookChanged() { RequestRedraw(Extent::kNode); }

private:
    friend class Compositor;

    Screen& screen_;
    NodeDelegate* delegate_ = nullptr;
    std::shared_ptr<Node> token_;
    Node* parent_ = nullptr;
    std::vector<Node*> children_;
    std::string name_;
    PixelRect bounds_;
    bool isVisible_ = true;
    bool takesTouches_ = true;
    bool isMultipoint_ = false;

    // The compositor's part.
    bool isMarked_ = true;   ///< to be asked for its drawing
    bool isChanged_ = true;  ///< shows something else than was last composed
    bool isNew_ = false;     ///< in the frame that is being composed, for the first time
    bool isSurfaceFresh_ = false;
    double shownScale_ = 0;
    DrawList* recording_ = nullptr;
    DrawList shown_;
    std::unique_ptr<Surface> surface_;
};

}  // namespace host
