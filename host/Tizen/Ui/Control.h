#pragma once

#include <memory>
#include <string>

#include "Tizen/Base/Collection/IList.h"
#include "Tizen/Base/String.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Canvas.h"
#include "Tizen/Graphics/Rectangle.h"

namespace host {
class Node;
class Screen;
struct LayoutControl;
}  // namespace host

namespace Tizen {
namespace Ui {

class Container;
class IKeyEventListener;
class ITouchEventListener;

/// What every thing on the screen has: a place, a name, a look and its listeners. Controls belong to their container,
/// forms to their frame; a popup belongs to whoever made it. Coordinates are the phone's integer pixels. Listeners are
/// not owned. UI thread only.
class Control {
public:
    virtual ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    /// Called once the control has come to its parent (a popup: once it was built from its layout).
    virtual result OnInitializing();
    /// Called before the framework destroys the control.
    virtual result OnTerminating();
    /// Called whenever the control is to draw what its standard look does not show; what a canvas drew before is gone.
    virtual result OnDraw();
    /// A user event sent to this control; `pArgs` belongs to the receiver.
    virtual void OnUserEventReceivedN(long requestId, Tizen::Base::Collection::IList* pArgs);

    result SetName(const Tizen::Base::String& name);
    Tizen::Base::String GetName() const;

    /// Place in the parent.
    virtual result SetBounds(const Tizen::Graphics::Rectangle& bounds);
    Tizen::Graphics::Rectangle GetBounds() const;

    /// A hidden control is neither drawn nor touched; fingers on it are taken as lifted.
    virtual result SetShowState(bool state);
    bool GetShowState() const;

    /// Null while the control has no parent.
    Container* GetParent() const;

    /// A canvas over this control, owned by the caller; it does nothing any more once the control is gone.
    Tizen::Graphics::Canvas* GetCanvasN() const;
    /// Marks the control, and with `recursive` everything in it, to be drawn at the next frame of the display.
    void RequestRedraw(bool recursive = true) const;
    void Invalidate(bool recursive);

    /// A listener that was already added is not added again.
    void AddTouchEventListener(ITouchEventListener& listener);
    void AddKeyEventListener(IKeyEventListener& listener);

    /// Queues an event for this control's OnUserEventReceivedN. If the control is destroyed before, the event is
    /// dropped and its arguments with it.
    result SendUserEvent(long requestId, Tizen::Base::Collection::IList* pArgs);

    /// Takes the control from its parent and from the screen, and deletes it.
    result Destroy();

protected:
    explicit Control(std::unique_ptr<host::Node> pNode);

    host::Node& GetNode() const { return *pNode_; }
    static host::Node& NodeOf(const Control& control) { return *control.pNode_; }
    /// Takes name, place and look from a layout of the package.
    virtual void ApplyLayout(const host::LayoutControl& layout);
    // What the node tells beyond touches and keys; for the controls that have listeners for it.
    virtual void OnBackReleased() {}
    virtual void OnAction() {}
    virtual void OnColorChange() {}

    void TraceAction(int actionId) const;
    void TraceBitmap(const std::string& fileName) const;

    // The framework's own: the one call of OnInitializing in a control's life, and of OnTerminating if that one came.
    void Initialize();
    virtual void Terminate();
    static host::Screen& GetScreen();

private:
    friend class Container;
    friend class Touch;
    friend class Tizen::Graphics::Canvas;
    class Peer;

    // The peer is told by the node what happens, so it goes last.
    std::unique_ptr<Peer> pPeer_;
    std::unique_ptr<host::Node> pNode_;
    Container* pParent_ = nullptr;
    bool isInitialized_ = false;
};

}  // namespace Ui
}  // namespace Tizen
