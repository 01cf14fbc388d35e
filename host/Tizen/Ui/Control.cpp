#include "Tizen/Ui/Control.h"

#include <cmath>
#include <utility>

#include "Tizen/Ui/Container.h"
#include "Tizen/Ui/IKeyEventListener.h"
#include "Tizen/Ui/ITouchEventListener.h"
#include "Tizen/Ui/KeyCode.h"
#include "Tizen/Ui/ListenerList.h"
#include "runtime/Runtime.h"
#include "runtime/package/Layout.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/Screen.h"

namespace Tizen {
namespace Ui {

using Tizen::Base::String;
using Tizen::Base::Collection::IList;
using Tizen::Graphics::Canvas;
using Tizen::Graphics::Point;
using Tizen::Graphics::Rectangle;

// What the node knows of the control: passes its news on to the listeners.
class Control::Peer final : public host::NodeDelegate {
public:
    explicit Peer(Control& control) : control_(control) {}

    void OnDraw() override { control_.OnDraw(); }
    void OnAction() override { control_.OnAction(); }
    void OnColorChange() override { control_.OnColorChange(); }

    void OnFinger(const host::FingerEvent& event) override {
        const Point position(static_cast<int>(std::floor(event.position.x)),
                             static_cast<int>(std::floor(event.position.y)));
        const TouchEventInfo info(event.pointId, position);
        touchListeners_.TellAll(control_.GetNode().Token(), [&](ITouchEventListener& listener) {
            switch (event.phase) {
                case host::FingerEvent::Phase::kPress:
                    listener.OnTouchPressed(control_, position, info);
                    break;
                case host::FingerEvent::Phase::kMove:
                    listener.OnTouchMoved(control_, position, info);
                    break;
                case host::FingerEvent::Phase::kRelease:
                case host::FingerEvent::Phase::kCancel:
                    listener.OnTouchReleased(control_, position, info);
                    break;
            }
        });
    }

    void OnBackKey(host::BackKeyPhase phase) override {
        const auto token = control_.GetNode().Token();
        keyListeners_.TellAll(token, [&](IKeyEventListener& listener) {
            if (phase == host::BackKeyPhase::kPress) {
                listener.OnKeyPressed(control_, KEY_BACK);
            } else {
                listener.OnKeyReleased(control_, KEY_BACK);
            }
        });
        if (phase == host::BackKeyPhase::kRelease && !token.expired()) control_.OnBackReleased();
    }

    ListenerList<ITouchEventListener> touchListeners_;
    ListenerList<IKeyEventListener> keyListeners_;

private:
    Control& control_;
};

Control::Control(std::unique_ptr<host::Node> pNode) : pPeer_(std::make_unique<Peer>(*this)), pNode_(std::move(pNode)) {
    pNode_->SetDelegate(pPeer_.get());
}

Control::~Control() {
    pNode_->SetDelegate(nullptr);
    // A container that is being destroyed has let go of its controls before; this one was deleted by somebody else.
    if (Container* pParent = pParent_) {
        static_cast<void>(pParent->Release(*this).release());
        pParent->OnChildDeleted(*this);
    }
}

result Control::OnInitializing() {
    return E_SUCCESS;
}

result Control::OnTerminating() {
    return E_SUCCESS;
}

result Control::OnDraw() {
    return E_SUCCESS;
}

void Control::OnUserEventReceivedN(long, IList* pArgs) {
    delete pArgs;
}

result Control::SetName(const String& name) {
    pNode_->SetName(name.ToUtf8());
    return E_SUCCESS;
}

String Control::GetName() const {
    return String(pNode_->Name().c_str());
}

result Control::SetBounds(const Rectangle& bounds) {
    if (bounds.width < 0 || bounds.height < 0) return E_INVALID_ARG;
    pNode_->SetBounds({bounds.x, bounds.y, bounds.width, bounds.height});
    return E_SUCCESS;
}

Rectangle Control::GetBounds() const {
    const host::PixelRect& bounds = pNode_->Bounds();
    return Rectangle(bounds.x, bounds.y, bounds.width, bounds.height);
}

result Control::SetShowState(bool state) {
    if (state == pNode_->IsVisible()) return E_SUCCESS;
    host::Runtime::Current().GetTrace().Add("control", state ? "shown" : "hidden").Text("name", pNode_->Name());
    pNode_->SetVisible(state);
    return E_SUCCESS;
}

bool Control::GetShowState() const {
    return pNode_->IsVisible();
}

Container* Control::GetParent() const {
    return pParent_;
}

Canvas* Control::GetCanvasN() const {
    return new Canvas(pNode_->Token());
}

void Control::RequestRedraw(bool recursive) const {
    pNode_->RequestRedraw(recursive ? host::Node::Extent::kTree : host::Node::Extent::kNode);
}

void Control::Invalidate(bool recursive) {
    RequestRedraw(recursive);
}

void Control::AddTouchEventListener(ITouchEventListener& listener) {
    pPeer_->touchListeners_.Add(listener);
}

void Control::AddKeyEventListener(IKeyEventListener& listener) {
    pPeer_->keyListeners_.Add(listener);
}

result Control::SendUserEvent(long requestId, IList* pArgs) {
    host::Runtime& runtime = host::Runtime::Current();
    const auto trace = [&runtime, requestId](const char* pEvent) {
        runtime.GetTrace().Add("user-event", pEvent).Number("id", requestId);
    };
    trace("sent");
    // Held by the event until it is delivered, so that arguments end with an event that never is.
    const auto pHeldArgs = std::make_shared<std::unique_ptr<IList>>(pArgs);
    runtime.GetLoop().PostTo(
        pNode_->Token(),
        [this, trace, requestId, pHeldArgs] {
            trace("delivered");
            OnUserEventReceivedN(requestId, pHeldArgs->release());
        },
        [trace] { trace("dropped"); });
    return E_SUCCESS;
}

result Control::Destroy() {
    if (pParent_ != nullptr) return pParent_->RemoveControl(*this);
    Terminate();
    delete this;
    return E_SUCCESS;
}

void Control::ApplyLayout(const host::LayoutControl& layout) {
    pNode_->SetName(layout.name);
    pNode_->SetBounds(layout.bounds);
    pNode_->SetVisible(layout.isVisible && (!layout.needsKeyboard || !GetScreen().GetPackage().Keys().empty()));
    pNode_->SetTakesTouches(layout.takesTouches);
    pNode_->SetSpokenName(layout.spokenName);
    pNode_->SetTextRank(layout.isHeading ? host::TextRank::kHeading : host::TextRank::kPlain);
}

void Control::TraceAction(int actionId) const {
    host::Runtime::Current().GetTrace().Add("control", "action").Text("name", pNode_->Name()).Number("id", actionId);
}

void Control::TraceBitmap(const std::string& fileName) const {
    host::Runtime::Current().GetTrace().Add("control", "bitmap").Text("name", pNode_->Name()).Text("file", fileName);
}

void Control::Initialize() {
    if (isInitialized_) return;
    isInitialized_ = true;
    OnInitializing();
}

void Control::Terminate() {
    if (!isInitialized_) return;
    isInitialized_ = false;
    OnTerminating();
}

host::Screen& Control::GetScreen() {
    return host::Runtime::Current().GetScreen();
}

}  // namespace Ui
}  // namespace Tizen
