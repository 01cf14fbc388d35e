#include "runtime/notices/Notices.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace host {

namespace {

// The design that the plate was drawn for; the smaller scale counts.
constexpr double kDesignWidth = 720;
constexpr double kDesignHeight = 1280;
constexpr double kPlateWidth = 656;
constexpr double kPlateHeight = 128;
constexpr double kAboveBottom = 32;
constexpr double kCorner = 32;
constexpr double kBorder = 3;
constexpr double kTextSize = 28;
constexpr double kSmallestText = 20;
constexpr Rgba kPlate{0x2B, 0x1A, 0x20, 0xFF};
constexpr Rgba kEdge{0xFF, 0xFF, 0xFF, 0x80};
constexpr Rgba kText{0xFF, 0xFF, 0xFF, 0xFF};

constexpr double kMarkSize = 36;
constexpr double kMarkInset = 24;  // from the screen's right edge
constexpr double kMarkTop = 132;   // below what a screen has at its upper edge
constexpr Rgba kMark{0xE0, 0x10, 0x20, 0xFF};

constexpr Microseconds kVolumeTime = 1000 * kMicrosecondsPerMillisecond;
constexpr Microseconds kMicrophoneTime = 8000 * kMicrosecondsPerMillisecond;
constexpr Microseconds kTakeTime = 8000 * kMicrosecondsPerMillisecond;
// Longer than the microphone's notice, which goes before it.
constexpr Microseconds kSpeakerTime = 2 * kMicrophoneTime;
constexpr Microseconds kGoneTime = 3000 * kMicrosecondsPerMillisecond;
constexpr Microseconds kIdleCheck = 1000 * kMicrosecondsPerMillisecond;
constexpr int kIdleChecks = 5;

/// An empty file in the data folder: somebody has played here before.
constexpr const char* kPlayedFile = "played";

}  // namespace

Notices::Notices(Screen& screen, Sound& sound, EventLoop& loop, const Package& package, Storage& storage)
    : screen_(screen),
      sound_(sound),
      loop_(loop),
      package_(package),
      storage_(storage),
      overlay_(screen),
      plate_(screen),
      mark_(screen) {
    isPlayingNoted_ = hasPlayed_ = storage.Stat(storage.DataRoot() + kPlayedFile).has_value();
    const PixelSize phone = screen.GetPhoneScreen();
    const double unit = std::min(phone.width / kDesignWidth, phone.height / kDesignHeight);
    const auto pixels = [unit](double units) { return static_cast<int>(std::lround(units * unit)); };
    overlay_.SetVisible(false);
    overlay_.SetTakesTouches(false);
    overlay_.SetBounds({0, 0, phone.width, phone.height});
    overlay_.AddChild(plate_);
    overlay_.AddChild(mark_);
    plate_.SetVisible(false);
    plate_.SetTakesTouches(false);
    mark_.SetVisible(false);
    mark_.SetTakesTouches(false);
    mark_.SetBounds(
        {phone.width - pixels(kMarkInset + kMarkSize), pixels(kMarkTop), pixels(kMarkSize), pixels(kMarkSize)});
    BoxLook mark;
    mark.background = kMark;
    mark.corner = kMarkSize / 2 * unit;
    mark.border = kText;
    mark.borderWidth = kBorder * unit;
    mark_.SetLook(mark);
    plate_.SetBounds({(phone.width - pixels(kPlateWidth)) / 2, phone.height - pixels(kAboveBottom + kPlateHeight),
                      pixels(kPlateWidth), pixels(kPlateHeight)});
    BoxLook box;
    box.background = kPlate;
    box.corner = kCorner * unit;
    box.border = kEdge;
    box.borderWidth = kBorder * unit;
    plate_.SetLook(box);
    TextLook text;
    text.size = kTextSize * unit;
    text.smallestSize = kSmallestText * unit;
    text.color = kText;
    text.align = HorizontalAlign::kCenter;
    text.wrap = TextWrap::kWords;
    plate_.SetTextLook(text);
    screen_.SetOverlay(&overlay_);
    screen_.SetUseHandler([this] { OnUse(); });
    sound_.SetWatcher(this);
}

Notices::~Notices() {
    sound_.SetWatcher(nullptr);
    screen_.SetUseHandler({});
    screen_.SetOverlay(nullptr);
    for (const TimerQueue::Id timer :
         {volumeTimer_, takeTimer_, microphoneTimer_, goneTimer_, speakerTimer_, keysTimer_})
        loop_.CancelTimer(timer);
}

void Notices::OfferKeys() {
    if (hasPlayed_) return;
    loop_.CancelTimer(keysTimer_);
    idleChecks_ = 0;
    WatchForKeys();
}

void Notices::Save() {
    if (!hasPlayed_ || isPlayingNoted_ || storage_.DataRoot().empty()) return;
    isPlayingNoted_ = storage_.Replace(storage_.DataRoot() + kPlayedFile, {});
}

void Notices::OnTone() {
    if (!std::exchange(hasPlayed_, true)) DropKeys();
}

void Notices::WatchForKeys() {
    keysTimer_ = loop_.StartTimer(kIdleCheck, [this] {
        keysTimer_ = TimerQueue::kNone;
        idleChecks_ = screen_.IsPlayedOn() ? idleChecks_ + 1 : 0;
        if (idleChecks_ < kIdleChecks) {
            WatchForKeys();
            return;
        }
        keys_ = TextOf("IDS_NOTICE_KEYS");
        Update();
    });
}

void Notices::OnUse() {
    DropKeys();
}

void Notices::DropKeys() {
    loop_.CancelTimer(std::exchange(keysTimer_, TimerQueue::kNone));
    if (std::exchange(keys_, {}).empty()) return;
    Update();
}

void Notices::OnRingtoneVolume(int volume) {
    volume_ = TextOf("IDS_NOTICE_VOLUME") + "  " + std::to_string(volume) + " / " + std::to_string(kLoudestRingtone);
    Update();
    loop_.CancelTimer(volumeTimer_);
    volumeTimer_ = loop_.StartTimer(kVolumeTime, [this] {
        volumeTimer_ = TimerQueue::kNone;
        volume_.clear();
        Update();
    });
}

void Notices::OnMicrophoneSilent() {
    TellOfMicrophone("IDS_NOTICE_SILENCE");
}

void Notices::OnMicrophoneGone() {
    // A device that is opened late, or plugged in again, is no news.
    loop_.CancelTimer(goneTimer_);
    goneTimer_ = loop_.StartTimer(kGoneTime, [this] {
        goneTimer_ = TimerQueue::kNone;
        TellOfMicrophone("IDS_NOTICE_NO_MICROPHONE");
    });
}

void Notices::OnMicrophoneGoneNoMore() {
    loop_.CancelTimer(std::exchange(goneTimer_, TimerQueue::kNone));
}

void Notices::OnSpeakerGone() {
    loop_.CancelTimer(speakerTimer_);
    speakerTimer_ = loop_.StartTimer(kGoneTime, [this] {
        speaker_ = TextOf("IDS_NOTICE_NO_SPEAKER");
        Update();
        speakerTimer_ = loop_.StartTimer(kSpeakerTime, [this] { OnSpeakerGoneNoMore(); });
    });
}

void Notices::OnSpeakerGoneNoMore() {
    loop_.CancelTimer(std::exchange(speakerTimer_, TimerQueue::kNone));
    speaker_.clear();
    Update();
}

void Notices::OnTakeStarted() {
    mark_.SetVisible(true);
    TellOfTake({});
}

void Notices::OnTakeEnded(const std::string& name) {
    mark_.SetVisible(false);
    TellOfTake(TextOf("IDS_NOTICE_RECORDED") + '\n' + name);
}

void Notices::OnTakeLost(const std::string& folder) {
    mark_.SetVisible(false);
    TellOfTake(TextOf("IDS_NOTICE_NOT_RECORDED") + (folder.empty() ? "" : '\n' + folder));
}

void Notices::TellOfTake(std::string text) {
    take_ = std::move(text);
    Update();
    loop_.CancelTimer(takeTimer_);
    takeTimer_ = loop_.StartTimer(kTakeTime, [this] {
        takeTimer_ = TimerQueue::kNone;
        take_.clear();
        Update();
    });
}

void Notices::TellOfMicrophone(std::string_view textId) {
    if (std::exchange(isMicrophoneTold_, true)) return;
    microphone_ = TextOf(textId);
    Update();
    microphoneTimer_ = loop_.StartTimer(kMicrophoneTime, [this] {
        microphoneTimer_ = TimerQueue::kNone;
        microphone_.clear();
        Update();
    });
}

void Notices::Update() {
    const std::string* const texts[] = {&volume_, &take_, &microphone_, &speaker_, &keys_};
    const auto shown =
        std::find_if(std::begin(texts), std::end(texts), [](const auto* text) { return !text->empty(); });
    const bool hasText = shown != std::end(texts);
    if (hasText) plate_.SetText(**shown);
    plate_.SetVisible(hasText);
    overlay_.SetVisible(hasText || mark_.IsVisible());
}

std::string Notices::TextOf(std::string_view id) const {
    const std::string* text = package_.FindString(id);
    return text == nullptr ? std::string() : *text;
}

}  // namespace host
