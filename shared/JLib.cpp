#include "shared/JLib.h"

#include <memory>
#include <new>

#include "Tizen/App/AppResource.h"
#include "Tizen/App/UiApp.h"
#include "Tizen/Base/Collection/IList.h"
#include "Tizen/Base/Collection/SingleObjectDeleter.h"
#include "Tizen/Base/Integer.h"
#include "Tizen/Io/Registry.h"
#include "Tizen/System/SettingInfo.h"
#include "Tizen/System/SystemInfo.h"

using namespace Tizen::App;
using namespace Tizen::Base;
using namespace Tizen::Base::Collection;
using namespace Tizen::Graphics;
using namespace Tizen::Io;
using namespace Tizen::Media;
using namespace Tizen::System;
using namespace Tizen::Ui;

namespace {

const int MAX_TEXT_LENGTH = 50;
const int LIST_CAPACITY = 10;
const int DEFAULT_SCREEN_WIDTH = 720;
const int DEFAULT_SCREEN_HEIGHT = 1280;
const float SCREEN_WIDTH_PER_FONT_SIZE = 30.0f;
// Takes the ringtone volume's 0..15 to the player's 0..99.
const float PLAY_VOLUME_PER_SETTING = 6.6f;
const unsigned char FULL_CHANNEL = 255;

// The number at `index`, or `missing` when the list is shorter.
unsigned char GetChannel(const ArrayList& numbers, int index, unsigned char missing) {
    const Integer* pNumber = static_cast<const Integer*>(numbers.GetAt(index));
    if (pNumber == nullptr) return missing;
    return static_cast<unsigned char>(pNumber->ToInt());
}

bool HasSection(Registry& registry, const String& section) {
    std::unique_ptr<IList> pNames(registry.GetAllSectionNamesN());
    if (pNames == nullptr) return false;
    for (int i = 0; i < pNames->GetCount(); ++i) {
        if (section.Equals(*pNames->GetAt(i))) return true;
    }
    return false;
}

}  // namespace

Dimension JLib::__dmScreen;
int JLib::__fontSizeNormal = 0;
Color JLib::__colorForeground;
Color JLib::__colorBackground;
bool JLib::__isAutoPlay = false;
String JLib::__strRegFilePath;

JLib::~JLib() = default;

void JLib::InitRegFilePath() {
    if (!__strRegFilePath.IsEmpty()) return;
    __strRegFilePath = UiApp::GetInstance()->GetAppDataPath() + L"info.ini";
}

bool JLib::ReadRegString(const String& section, const String& key, String& value, const String& defaultValue) {
    InitRegFilePath();
    return ReadRegString(__strRegFilePath, section, key, value, defaultValue);
}

bool JLib::ReadRegString(const String& filePath, const String& section, const String& key, String& value,
                         const String& defaultValue) {
    Registry registry;
    if (registry.Construct(filePath, true) != E_SUCCESS || registry.GetValue(section, key, value) != E_SUCCESS) {
        value = defaultValue;
        return false;
    }
    return true;
}

bool JLib::WriteRegString(const String& section, const String& key, const String& value) {
    InitRegFilePath();
    return WriteRegString(__strRegFilePath, section, key, value);
}

bool JLib::WriteRegString(const String& filePath, const String& section, const String& key, const String& value) {
    Registry registry;
    if (registry.Construct(filePath, true) != E_SUCCESS) return false;
    if (!HasSection(registry, section)) registry.AddSection(section);
    if (registry.SetValue(section, key, value) != E_SUCCESS) registry.AddValue(section, key, value);
    registry.Flush();
    return true;
}

bool JLib::ReadRegInt(const String& section, const String& key, int& value, int defaultValue) {
    InitRegFilePath();
    return ReadRegInt(__strRegFilePath, section, key, value, defaultValue);
}

bool JLib::ReadRegInt(const String& filePath, const String& section, const String& key, int& value, int defaultValue) {
    String text;
    if (!ReadRegString(filePath, section, key, text, L"")) {
        value = defaultValue;
        return false;
    }
    Integer::Parse(text, value);
    return true;
}

bool JLib::WriteRegInt(const String& section, const String& key, int value) {
    InitRegFilePath();
    return WriteRegInt(__strRegFilePath, section, key, value);
}

bool JLib::WriteRegInt(const String& filePath, const String& section, const String& key, int value) {
    String text;
    text.Format(MAX_TEXT_LENGTH, L"%d", value);
    return WriteRegString(filePath, section, key, text);
}

bool JLib::ReadRegColor(const String& section, const String& key, Color& color, const Color& defaultColor) {
    color = Color(FULL_CHANNEL, FULL_CHANNEL, FULL_CHANNEL, FULL_CHANNEL);
    String text;
    if (!ReadRegString(section, key, text, L"")) {
        color = defaultColor;
        return false;
    }
    std::unique_ptr<ArrayList> pNumbers(SplitToIntegers(text, L","));
    int index = 0;
    color.SetRed(GetChannel(*pNumbers, index++, FULL_CHANNEL));
    color.SetGreen(GetChannel(*pNumbers, index++, FULL_CHANNEL));
    color.SetBlue(GetChannel(*pNumbers, index++, FULL_CHANNEL));
    color.SetAlpha(GetChannel(*pNumbers, index++, FULL_CHANNEL));
    return true;
}

bool JLib::WriteRegColor(const String& section, const String& key, const Color& color) {
    InitRegFilePath();
    return WriteRegColor(__strRegFilePath, section, key, color);
}

bool JLib::WriteRegColor(const String& filePath, const String& section, const String& key, const Color& color) {
    String text;
    text.Format(MAX_TEXT_LENGTH, L"%d,%d,%d,%d", color.GetRed(), color.GetGreen(), color.GetBlue(), color.GetAlpha());
    return WriteRegString(filePath, section, key, text);
}

// The text is handed over, as the phone's manner has it.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
ArrayList* JLib::SplitString(String text, const String& delimiter) {
    ArrayList* pPieces = new ArrayList(SingleObjectDeleter);
    pPieces->Construct(LIST_CAPACITY);
    // The start moves on instead of the text being cut off at its front, which would cost its whole length each time.
    int start = 0;
    int index = 0;
    while (text.IndexOf(delimiter, start, index) == E_SUCCESS) {
        String* pPiece = new String();
        text.SubString(start, index - start, *pPiece);
        pPieces->Add(pPiece);
        start = index + delimiter.GetLength();
    }
    if (start < text.GetLength()) {
        String* pRest = new String();
        text.SubString(start, *pRest);
        pPieces->Add(pRest);
    }
    return pPieces;
}

ArrayList* JLib::SplitToIntegers(const String& text, const String& delimiter) {
    std::unique_ptr<ArrayList> pPieces(SplitString(text, delimiter));
    ArrayList* pNumbers = new ArrayList(SingleObjectDeleter);
    pNumbers->Construct(LIST_CAPACITY);
    for (int i = 0; i < pPieces->GetCount(); ++i) {
        int number = NOT_A_NUMBER;
        Integer::Parse(*static_cast<String*>(pPieces->GetAt(i)), number);
        pNumbers->Add(new Integer(number));
    }
    return pNumbers;
}

void JLib::InitScreenMetrics() {
    Dimension screen(DEFAULT_SCREEN_WIDTH, DEFAULT_SCREEN_HEIGHT);
    SystemInfo::GetValue(L"screen.width", screen.width);
    SystemInfo::GetValue(L"screen.height", screen.height);
    __dmScreen = screen;
    __fontSizeNormal = static_cast<int>(static_cast<float>(screen.width) / SCREEN_WIDTH_PER_FONT_SIZE);
}

Bitmap* JLib::GetBitmapN(const String& name) {
    return UiApp::GetInstance()->GetAppResource()->GetBitmapN(name);
}

result JLib::GetString(const String& id, String& text) {
    return UiApp::GetInstance()->GetAppResource()->GetString(id, text);
}

void JLib::TerminateApp() {
    UiApp::GetInstance()->Terminate();
}

Rectangle JLib::GetInflatedBounds(const Control* pControl, float ratio) {
    if (pControl == nullptr) return Rectangle(0, 0, 10, 10);
    const Rectangle bounds = pControl->GetBounds();
    return InflateRect(bounds, static_cast<int>(static_cast<float>(bounds.height) * ratio));
}

Rectangle JLib::InflateRect(Rectangle rect, int n) {
    return Rectangle(rect.x - n, rect.y - n, rect.width + 2 * n, rect.height + 2 * n);
}

void JLib::SafeDestroy(Control* p) {
    if (p != nullptr) p->Destroy();
}

int JLib::GetPlayVolume() {
    int setting = 0;
    SettingInfo::GetValue(L"http://tizen.org/setting/sound.ringtone.volume", setting);
    return static_cast<int>(static_cast<float>(setting) * PLAY_VOLUME_PER_SETTING);
}

void JLib::ReleasePlayer(Player* pPlayer) {
    if (pPlayer == nullptr) return;
    ClosePlayer(*pPlayer);
    delete pPlayer;
}

void JLib::ClosePlayer(Player& player) {
    switch (player.GetState()) {
        case PLAYER_STATE_OPENED:
        case PLAYER_STATE_ENDOFCLIP:
        case PLAYER_STATE_PAUSED:
        case PLAYER_STATE_PLAYING:
            player.Stop();
            player.Close();
            break;
        case PLAYER_STATE_STOPPED:
            player.Close();
            break;
        default:
            break;
    }
}
