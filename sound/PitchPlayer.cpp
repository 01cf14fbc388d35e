#include "sound/PitchPlayer.h"

#include "Tizen/App/UiApp.h"
#include "shared/JLib.h"

using namespace Tizen::App;
using namespace Tizen::Base;
using namespace Tizen::Media;

namespace {

const int DEFAULT_OCTAVE = 4;
const int DEFAULT_SEMITONE = 0;
const int OCTAVE_MIN = 3;
const int OCTAVE_MAX = 7;
const int SEMITONE_MIN = 0;
const int SEMITONE_MAX = 11;
const int MAX_NAME_LENGTH = 50;

}  // namespace

PitchPlayer::PitchPlayer() : __pPlayer(nullptr), __octave(DEFAULT_OCTAVE), __semitone(DEFAULT_SEMITONE) {}

PitchPlayer::~PitchPlayer() {
    JLib::ReleasePlayer(__pPlayer);
}

result PitchPlayer::Construct() {
    if (__pPlayer != nullptr) return E_INVALID_STATE;
    Player* pPlayer = new Player();
    const result r = pPlayer->Construct(*this, nullptr);
    if (r != E_SUCCESS) {
        delete pPlayer;
        return r;
    }
    __pPlayer = pPlayer;
    return r;
}

void PitchPlayer::Play(int octave, int semitone) {
    __octave = octave;
    __semitone = semitone;
    Play();
}

void PitchPlayer::Play() {
    PlayFile(GetFileName());
}

String PitchPlayer::GetFileName() const {
    if (__octave < OCTAVE_MIN || __octave > OCTAVE_MAX || __semitone < SEMITONE_MIN || __semitone > SEMITONE_MAX) {
        return L"ocarina_4_00.ogg";
    }
    String name;
    name.Format(MAX_NAME_LENGTH, L"ocarina_%d_%02d.ogg", __octave, __semitone);
    return name;
}

void PitchPlayer::PlayFile(const String& fileName) {
    if (__pPlayer == nullptr) return;
    JLib::ClosePlayer(*__pPlayer);
    const String path = UiApp::GetInstance()->GetAppRootPath() + L"data/" + fileName;
    if (__pPlayer->OpenFile(path, false) != E_SUCCESS) return;
    __pPlayer->SetVolume(JLib::GetPlayVolume());
    __pPlayer->Play();
}

void PitchPlayer::Stop() {
    if (__pPlayer == nullptr) return;
    JLib::ClosePlayer(*__pPlayer);
}

void PitchPlayer::Release() {
    JLib::ReleasePlayer(__pPlayer);
    __pPlayer = nullptr;
}

void PitchPlayer::OnPlayerOpened(result) {}

void PitchPlayer::OnPlayerEndOfClip() {
    if (__pPlayer == nullptr) return;
    __pPlayer->Stop();
    __pPlayer->Play();
}

void PitchPlayer::OnPlayerSeekCompleted(result) {}

void PitchPlayer::OnPlayerBuffering(int) {}

void PitchPlayer::OnPlayerErrorOccurred(PlayerErrorReason) {}

void PitchPlayer::OnPlayerInterrupted() {}

void PitchPlayer::OnPlayerReleased() {}

void PitchPlayer::OnPlayerAudioFocusChanged() {}
