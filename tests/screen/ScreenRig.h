#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "backend/headless/HeadlessBackend.h"
#include "runtime/loop/EventLoop.h"
#include "runtime/package/Package.h"
#include "runtime/screen/Node.h"
#include "runtime/screen/Screen.h"
#include "runtime/screen/controls/BoxNode.h"
#include "runtime/trace/Trace.h"
#include "support/Pixels.h"
#include "support/TemporaryFolder.h"
#include "support/TestWindow.h"

/// A control that fills itself with a colour and writes down what it is told: "press 0 12,34" with finger and place,
/// "action", "back press".
class RecordingNode final : public host::NodeDelegate {
public:
    RecordingNode(host::Node& node, std::vector<std::string>& log) : node_(node), log_(log) { node.SetDelegate(this); }

    void OnDraw() override;
    void OnFinger(const host::FingerEvent& event) override;
    void OnBackKey(host::BackKeyPhase phase) override {
        Write(phase == host::BackKeyPhase::kPress ? "back press" : "back release");
    }
    void OnAction() override { Write("action"); }
    void OnColorChange() override { Write("color"); }

    host::Rgba color_;
    int draws_ = 0;
    std::function<void(const std::string& what)> react_;  ///< after something was written down

private:
    void Write(const std::string& what);

    host::Node& node_;
    std::vector<std::string>& log_;
};

/// A screen on a window of any size, without an application: a test puts nodes on it, touches them and looks at pixels.
class ScreenRig : private host::PhoneKeyListener {
public:
    explicit ScreenRig(host::PixelSize window = kPhone, const std::string& keys = "<keys/>");
    virtual ~ScreenRig() = default;

    static constexpr host::PixelSize kPhone{100, 200};

    /// A node of the given kind in `parent`, recorded under its name. A null parent leaves it loose.
    template <typename NodeType = host::BoxNode>
    NodeType& Add(const std::string& name, const host::PixelRect& bounds, host::Node* parent);
    RecordingNode& Recorder(const std::string& name) { return *recorders_.at(name); }

    /// A form over the whole phone, made current.
    host::BoxNode& ShowForm(const std::string& name = "form");
    host::BoxNode& ShowPopup(const std::string& name, const host::PixelRect& bounds);
    /// Destroys a node that was added.
    void Destroy(const std::string& name);

    void Touch(host::TouchPhase phase, double x, double y, std::int64_t finger = 0) {
        screen_.OnTouch({finger, phase, x, y});
    }
    void Tap(double x, double y);
    void Press(std::string_view code, host::ShiftKey shift = host::ShiftKey::kReleased) {
        screen_.OnKey({code, host::KeyPhase::kDown, shift});
    }
    void Lift(std::string_view code) { screen_.OnKey({code, host::KeyPhase::kUp, host::ShiftKey::kReleased}); }
    void Stroke(std::string_view code, host::ShiftKey shift = host::ShiftKey::kReleased);

    /// Lets a frame's time pass and composes. What was presented is empty when there was nothing to compose.
    void Compose();
    [[nodiscard]] host::Rgba Pixel(int x, int y) { return PixelAt(window_.Pixels(), x, y); }
    /// What was written down since the last call.
    std::vector<std::string> TakeLog() { return std::exchange(log_, {}); }

    TemporaryFolder folder_;
    std::unique_ptr<host::Backend> backend_;
    host::EventLoop loop_;
    host::Console console_;
    host::Trace trace_;
    TestWindow window_;
    host::Package package_;
    std::vector<std::string> log_;

private:
    static std::unique_ptr<host::Backend> MakeBackend(const TemporaryFolder& folder, const std::string& keys);
    void OnKeyBreath(double level) override { log_.push_back("breath " + std::to_string(level).substr(0, 3)); }
    void OnVolumeKey(int step) override { log_.push_back("volume " + std::to_string(step)); }

public:
    host::Screen screen_;
    host::Microseconds now_ = 0;

private:
    std::map<std::string, std::unique_ptr<host::Node>> nodes_;
    std::map<std::string, std::unique_ptr<RecordingNode>> recorders_;
};

template <typename NodeType>
NodeType& ScreenRig::Add(const std::string& name, const host::PixelRect& bounds, host::Node* parent) {
    std::unique_ptr<NodeType> node;
    if constexpr (std::is_constructible_v<NodeType, host::NodeHost&>) {
        node = std::make_unique<NodeType>(screen_);
    } else {
        node = std::make_unique<NodeType>(screen_, loop_);
    }
    NodeType& added = *node;
    added.SetName(name);
    added.SetBounds(bounds);
    recorders_[name] = std::make_unique<RecordingNode>(added, log_);
    if (parent != nullptr) parent->AddChild(added);
    nodes_[name] = std::move(node);
    return added;
}
