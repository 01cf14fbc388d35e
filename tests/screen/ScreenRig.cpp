#include "screen/ScreenRig.h"

#include <cmath>
#include <stdexcept>

void RecordingNode::OnDraw() {
    ++draws_;
    if (color_.alpha == 0) return;
    node_.Draw(host::FilledRectangle{{0, 0, node_.Size().width, node_.Size().height}, color_});
}

void RecordingNode::OnFinger(const host::FingerEvent& event) {
    using Phase = host::FingerEvent::Phase;
    const std::string what = event.phase == Phase::kPress ? "press" : event.phase == Phase::kMove ? "move" : "release";
    Write(what + ' ' + std::to_string(event.pointId) + ' ' +
          std::to_string(static_cast<int>(std::floor(event.position.x))) + ',' +
          std::to_string(static_cast<int>(std::floor(event.position.y))));
}

void RecordingNode::Write(const std::string& what) {
    log_.push_back(node_.Name() + ' ' + what);
    if (react_) react_(what);
}

ScreenRig::ScreenRig(host::PixelSize window, const std::string& keys)
    : backend_(MakeBackend(folder_, keys)),
      loop_(backend_->Parts().clock, backend_->Parts().loopDriver),
      trace_(loop_, console_),
      window_(backend_->Parts().painter, window),
      package_([this] {
          host::Package package;
          const auto problems =
              package.Load(backend_->Parts().storage, backend_->Parts().painter, "en", kPhone, console_);
          if (!problems.empty()) throw std::runtime_error(problems.front());
          return package;
      }()),
      screen_(loop_, backend_->Parts().clock, backend_->Parts().painter, window_, trace_, package_, *this, kPhone) {}

std::unique_ptr<host::Backend> ScreenRig::MakeBackend(const TemporaryFolder& folder, const std::string& keys) {
    std::filesystem::create_directory(folder / "layouts");
    std::filesystem::create_directory(folder / "strings");
    folder.Write("layouts/IDF.xml",
                 R"(<Form name="IDF" design="100x200"><Panel name="IDC_PANEL" bounds="0,0,1,1"/></Form>)");
    folder.Write(
        "strings/en.xml",
        R"(<strings language="en"><string id="IDS_NOTICE_KEYS">keys</string><string id="IDS_NOTICE_SILENCE">silence</string>
                    <string id="IDS_NOTICE_NO_MICROPHONE">gone</string><string id="IDS_NOTICE_NO_SPEAKER">mute</string><string id="IDS_NOTICE_VOLUME">volume</string>
                    <string id="IDS_NOTICE_NOT_RECORDED">lost</string></strings>)");
    folder.Write("keys.xml", keys);
    return host::CreateHeadlessBackend({folder.Path(), folder.Path()});
}

host::BoxNode& ScreenRig::ShowForm(const std::string& name) {
    auto& form = Add(name, {0, 0, kPhone.width, kPhone.height}, nullptr);
    screen_.SetCurrentForm(&form);
    return form;
}

host::BoxNode& ScreenRig::ShowPopup(const std::string& name, const host::PixelRect& bounds) {
    auto& popup = Add(name, bounds, nullptr);
    screen_.ShowPopup(popup);
    return popup;
}

void ScreenRig::Destroy(const std::string& name) {
    nodes_.erase(name);
    recorders_.erase(name);
}

void ScreenRig::Tap(double x, double y) {
    Touch(host::TouchPhase::kDown, x, y);
    Touch(host::TouchPhase::kUp, x, y);
}

void ScreenRig::Stroke(std::string_view code, host::ShiftKey shift) {
    Press(code, shift);
    Lift(code);
}

void ScreenRig::Compose() {
    now_ += TestWindow::kFrameInterval;
    bool isStopped = false;
    loop_.RunDue(now_, isStopped);
    window_.presented_.clear();
    screen_.ComposeIfDue(now_);
}
