#pragma once

#include "Tizen/Base/Collection/ArrayList.h"
#include "Tizen/Base/String.h"
#include "Tizen/Base/Types.h"
#include "Tizen/Graphics/Bitmap.h"
#include "Tizen/Graphics/Color.h"
#include "Tizen/Graphics/Dimension.h"
#include "Tizen/Graphics/Rectangle.h"
#include "Tizen/Media/Player.h"
#include "Tizen/Ui/Control.h"

/// What all screens share: the values of the process, the settings file and small wrappers around the phone. Static
/// throughout, UI thread only, and no place for what one screen keeps to itself.
class JLib {
public:
    JLib() = delete;
    virtual ~JLib();

    /// In pixels; 0 x 0 until InitScreenMetrics.
    static Tizen::Graphics::Dimension __dmScreen;
    static int __fontSizeNormal;
    /// The colour of the finger holes.
    static Tizen::Graphics::Color __colorForeground;
    /// The colour behind the finger holes.
    static Tizen::Graphics::Color __colorBackground;
    static bool __isAutoPlay;
    /// Empty until the settings file is used for the first time.
    static Tizen::Base::String __strRegFilePath;

    // The settings file. A read that fails gives the default and false. A write reports false only when the file cannot
    // be opened. Operations without a path use the application's own file.
    static void InitRegFilePath();
    static bool ReadRegString(const Tizen::Base::String& section, const Tizen::Base::String& key,
                              Tizen::Base::String& value, const Tizen::Base::String& defaultValue);
    static bool ReadRegString(const Tizen::Base::String& filePath, const Tizen::Base::String& section,
                              const Tizen::Base::String& key, Tizen::Base::String& value,
                              const Tizen::Base::String& defaultValue);
    static bool WriteRegString(const Tizen::Base::String& section, const Tizen::Base::String& key,
                               const Tizen::Base::String& value);
    static bool WriteRegString(const Tizen::Base::String& filePath, const Tizen::Base::String& section,
                               const Tizen::Base::String& key, const Tizen::Base::String& value);
    /// A text that is no number leaves `value` as it is, and the result is true all the same.
    static bool ReadRegInt(const Tizen::Base::String& section, const Tizen::Base::String& key, int& value,
                           int defaultValue);
    static bool ReadRegInt(const Tizen::Base::String& filePath, const Tizen::Base::String& section,
                           const Tizen::Base::String& key, int& value, int defaultValue);
    static bool WriteRegInt(const Tizen::Base::String& section, const Tizen::Base::String& key, int value);
    static bool WriteRegInt(const Tizen::Base::String& filePath, const Tizen::Base::String& section,
                            const Tizen::Base::String& key, int value);
    /// Channels that the text lacks, or that are no numbers in it, are 255.
    static bool ReadRegColor(const Tizen::Base::String& section, const Tizen::Base::String& key,
                             Tizen::Graphics::Color& color, const Tizen::Graphics::Color& defaultColor);
    static bool WriteRegColor(const Tizen::Base::String& section, const Tizen::Base::String& key,
                              const Tizen::Graphics::Color& color);
    static bool WriteRegColor(const Tizen::Base::String& filePath, const Tizen::Base::String& section,
                              const Tizen::Base::String& key, const Tizen::Graphics::Color& color);

    /// The pieces between the delimiters as Strings; an empty piece at the end is left out. The caller owns the list,
    /// the list its elements.
    static Tizen::Base::Collection::ArrayList* SplitString(Tizen::Base::String text,
                                                           const Tizen::Base::String& delimiter);
    /// As SplitString, each piece as an Integer; NOT_A_NUMBER stands for a piece that is none.
    static Tizen::Base::Collection::ArrayList* SplitToIntegers(const Tizen::Base::String& text,
                                                               const Tizen::Base::String& delimiter);
    /// Its low 8 bits are those of a colour channel that is missing.
    static const int NOT_A_NUMBER = -1;

    static void InitScreenMetrics();

    /// The caller owns the bitmap; null when the package has none of that name.
    static Tizen::Graphics::Bitmap* GetBitmapN(const Tizen::Base::String& name);
    static result GetString(const Tizen::Base::String& id, Tizen::Base::String& text);
    static void TerminateApp();

    /// The control's bounds grown on every side by their height times `ratio`, truncated; (0, 0, 10, 10) for null.
    static Tizen::Graphics::Rectangle GetInflatedBounds(const Tizen::Ui::Control* pControl, float ratio);
    static Tizen::Graphics::Rectangle InflateRect(Tizen::Graphics::Rectangle rect, int n);

    template <typename T>
    static void SafeDelete(T* p) {
        if (p != nullptr) delete p;
    }
    static void SafeDestroy(Tizen::Ui::Control* p);

    /// The player's volume, 0..99, from the phone's ringtone volume.
    static int GetPlayVolume();
    /// Stops, closes and deletes the player, each as far as its state allows.
    static void ReleasePlayer(Tizen::Media::Player* pPlayer);
    /// As ReleasePlayer, but the player lives on.
    static void ClosePlayer(Tizen::Media::Player& player);
};
