#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "backend/Accessible.h"
#include "backend/Painter.h"
#include "backend/Window.h"
#include "runtime/screen/composing/DrawList.h"

namespace host {

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
enum class KeyStroke { kFirst, kRepeated };
struct FocusKeyEvent {
    FocusKey key = FocusKey::kActivate;
    int digit = 0;  ///< 0..15 for kDigit
    KeyStroke stroke = KeyStroke::kFirst;
    ShiftKey shift = ShiftKey::kReleased;
};
enum class KeyEnd { kLifted, kCancelled };
enum class FocusState { kLost, kGained };

/// What a node tells the framework's control that it stands for. The control may be gone when a call returns.
class NodeDelegate {
public:
    /// To draw what the node's look does not show, by Node::Draw.
    virtual void OnDraw() = 0;
    virtual void OnFinger(const FingerEvent& event) = 0;
    virtual void OnBackKey(BackKeyPhase phase) = 0;
    /// A button was pressed, a switch turned by the user.
    virtual void OnAction() = 0;
    /// The user picked another colour.
    virtual void OnColorChange() = 0;

protected:
    ~NodeDelegate() = default;
};

class Node;

/// What a node tells whoever paints it. UI thread.
class LookListener {
public:
    /// The node is to be asked for its look and OnDraw at the next frame.
    virtual void OnNodeMarked(const Node& node) = 0;
    /// Drawn over what the node shows. Within NodeDelegate::OnDraw the operations make up the node's new content; at
    /// other times they add to the present one.
    virtual void OnNodeDrawn(const Node& node, DrawOperation operation) = 0;
    /// What the node covers, or covered, must be painted again.
    virtual void OnNodeDamaged(const Node& node) = 0;

protected:
    ~LookListener() = default;
};

/// The screen that a node can be shown on. UI thread.
class NodeHost {
public:
    /// Outlives the host's nodes.
    [[nodiscard]] virtual LookListener& GetLookListener() = 0;
    virtual void OnNodeShownOrHidden(const Node& node) = 0;
    virtual void OnNodeGone(const Node& node) = 0;
    /// The node wants its FlushReports called before the next frame, or before the next thing that the user does.
    virtual void OnReportWanted(const Node& node) = 0;

protected:
    ~NodeHost() = default;
};

/// What a node needs to describe its look for the present display.
struct LookContext {
    Painter& painter;
    double scale;  ///< device pixels per pixel of the phone
};

/// A thing that a node shows, in words. A plain value.
struct AccessiblePart {
    AccessibleRole role = AccessibleRole::kText;
    std::string name;  ///< empty for what has nothing to say
    PixelRect bounds;  ///< in the node's own coordinates
    bool isOn = false;
    int value = 0;
    int least = 0;
    int most = 0;
};

enum class TextRank { kPlain, kHeading };

/// What every control, form and popup is behind the framework: a tree, integer bounds in the phone's pixels and a look.
/// A new control overrides DescribeLook and, where it reacts, OnFinger and OnFocusKey. UI thread only.
class Node {
public:
    /// `host` outlives the node.
    explicit Node(NodeHost& host);
    virtual ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// Null for none. Not owned.
    void SetDelegate(NodeDelegate* delegate) { delegate_ = delegate; }
    /// Expires with the node.
    [[nodiscard]] std::weak_ptr<Node> Token() const { return token_; }

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
    /// The place on the phone's screen that lies at a fraction (0..1) of the node's width and height.
    [[nodiscard]] PointF ScreenPointAt(PointF fraction) const;
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
    /// Draws over the look and over what was drawn before, until the next redraw.
    void Draw(DrawOperation operation);

    /// Called by whoever captured the finger for this node. May destroy the node.
    virtual void OnFinger(const FingerEvent& event);
    [[nodiscard]] virtual bool IsFocusable() const { return false; }
    /// A key for the focused node. False when it means nothing to it. May destroy the node.
    virtual bool OnFocusKey(const FocusKeyEvent&) { return false; }
    /// The activating key was lifted, or taken away. May destroy the node.
    virtual void OnActivateKeyEnded(KeyEnd) {}
    /// The focus ring has come or gone.
    virtual void OnFocusChanged(FocusState) {}
    /// May destroy the node.
    void OnBackKey(BackKeyPhase phase);
    /// Reports a change still in progress (a drag) that has not been reported yet.
    virtual void FlushReports() {}
    /// What the focus ring goes around: by default the node's own edge, without round corners.
    struct Outline {
        RectF rect;  ///< in the node's own coordinates
        double corner = 0;
    };
    [[nodiscard]] virtual Outline GetOutline() const { return {{0, 0, Size().width, Size().height}, 0}; }

    /// Of all nodes that were ever made, this one's alone.
    [[nodiscard]] std::uint64_t Serial() const { return serial_; }
    /// What is said in place of a picture or of a text that cannot stand alone; empty for nothing.
    void SetSpokenName(std::string name) { spokenName_ = std::move(name); }
    void SetTextRank(TextRank rank) { textRank_ = rank; }
    /// Adds the things that this node shows, always the same number of them. Its children speak for themselves.
    virtual void DescribeInWords(std::vector<AccessiblePart>&) const {}
    /// Gives a slider among these things a value; one beyond its ends goes to the nearer one. False when that part is
    /// no slider. May destroy the node.
    virtual bool SetPartValue(std::size_t /*part*/, int /*value*/) { return false; }

    /// Adds the standard look to an empty list.
    virtual void DescribeLook(DrawList&, const LookContext&) {}
    [[nodiscard]] NodeDelegate* Delegate() const { return delegate_; }

protected:
    /// A mark for a change of the look.
    void LookChanged() { RequestRedraw(Extent::kNode); }
    /// What a node with that text says: its spoken name if it has one.
    [[nodiscard]] const std::string& SpokenName(const std::string& text) const {
        return spokenName_.empty() ? text : spokenName_;
    }
    [[nodiscard]] TextRank GetTextRank() const { return textRank_; }
    void WantReport() { host_.OnReportWanted(*this); }

private:
    NodeHost& host_;
    LookListener& lookListener_;
    NodeDelegate* delegate_ = nullptr;
    std::shared_ptr<Node> token_;
    Node* parent_ = nullptr;
    std::vector<Node*> children_;
    const std::uint64_t serial_;
    std::string name_;
    std::string spokenName_;
    TextRank textRank_ = TextRank::kPlain;
    PixelRect bounds_;
    bool isVisible_ = true;
    bool takesTouches_ = true;
    bool isMultipoint_ = false;
};

}  // namespace host
