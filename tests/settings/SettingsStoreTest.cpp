// The ocarina's settings on a phone with a data folder: values, defaults, and a file system that does not do as told.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>

#include "Tizen/Base/Collection/ArrayList.h"
#include "Tizen/Base/String.h"
#include "Tizen/Graphics/Color.h"
#include "Tizen/Io/Registry.h"
#include "shared/JLib.h"
#include "support/TestPhone.h"

namespace {

using namespace std::string_literals;
using Tizen::Base::String;
using Tizen::Base::Collection::ArrayList;
using Tizen::Graphics::Color;
using Tizen::Io::Registry;

const Color kDefaultColor(226, 100, 111, 255);

class SettingsStore : public ::testing::Test {
protected:
    SettingsStore() { JLib::__strRegFilePath = String((phone_.Data() / "info.ini").c_str()); }
    ~SettingsStore() override { JLib::__strRegFilePath.Clear(); }

    [[nodiscard]] std::string FileText() const { return phone_.Data().Read("info.ini"); }

    TestPhone phone_;
};

}  // namespace

// Another program writes to the file between this one's reading and writing it.
TEST_F(SettingsStore, KeepsWhatAnotherWroteSinceItWasRead) {
    Registry mine;
    Registry others;
    const String path = JLib::__strRegFilePath;
    ASSERT_EQ(E_SUCCESS, mine.Construct(path, true));
    ASSERT_EQ(E_SUCCESS, others.Construct(path, true));
    EXPECT_EQ(E_SUCCESS, others.AddSection(L"Setup"));
    EXPECT_EQ(E_SUCCESS, others.AddValue(L"Setup", L"AutoPlay", L"1"));
    EXPECT_EQ(E_SUCCESS, others.AddValue(L"Setup", L"Shared", L"theirs"));
    EXPECT_EQ(E_SUCCESS, others.Flush());
    EXPECT_EQ(E_SUCCESS, mine.AddSection(L"Setup"));
    EXPECT_EQ(E_SUCCESS, mine.AddValue(L"Setup", L"FirstBlow", L"1"));
    EXPECT_EQ(E_SUCCESS, mine.AddValue(L"Setup", L"Shared", L"mine"));
    EXPECT_EQ(E_SUCCESS, mine.Flush());
    EXPECT_EQ("[Setup]\nAutoPlay=1\nShared=mine\nFirstBlow=1\n", FileText());
    String value;
    EXPECT_EQ(E_SUCCESS, mine.GetValue(L"Setup", L"AutoPlay", value));
    EXPECT_EQ(L"1", value);
}

TEST_F(SettingsStore, GivesTheDefaultsAndMakesAnEmptyFileWhenThereIsNone) {
    int value = 7;
    EXPECT_FALSE(JLib::ReadRegInt(L"Setup", L"AutoPlay", value, 3));
    EXPECT_EQ(3, value);
    Color color;
    EXPECT_FALSE(JLib::ReadRegColor(L"Setup", L"BackColor", color, kDefaultColor));
    EXPECT_EQ(kDefaultColor, color);
    EXPECT_TRUE(std::filesystem::exists(phone_.Data() / "info.ini"));
    EXPECT_EQ("", FileText());
}

TEST_F(SettingsStore, ReadsBackWhatItWroteAndReplacesInPlace) {
    const Color colors[] = {Color(0, 0, 0, 0), Color(255, 194, 48, 255), Color(1, 22, 133, 7)};
    for (const Color& written : colors) {
        EXPECT_TRUE(JLib::WriteRegColor(L"Setup", L"HoleColor", written));
        Color read;
        EXPECT_TRUE(JLib::ReadRegColor(L"Setup", L"HoleColor", read, kDefaultColor));
        EXPECT_EQ(written, read);
    }
    EXPECT_TRUE(JLib::WriteRegInt(L"Setup", L"FirstBlow", 1));
    EXPECT_TRUE(JLib::WriteRegInt(L"Setup", L"FirstBlow", -2147483647));
    EXPECT_EQ("[Setup]\nHoleColor=1,22,133,7\nFirstBlow=-2147483647\n", FileText());
}

TEST_F(SettingsStore, TakesColoursAndNumbersAsFarAsTheyGo) {
    struct ColorCase {
        const char* text;
        Color color;
    };
    for (const ColorCase& each :
         {ColorCase{"10,20", Color(10, 20, 255, 255)}, ColorCase{"", Color(255, 255, 255, 255)},
          ColorCase{"300,-1,5,255", Color(44, 255, 5, 255)}, ColorCase{"1,2,3,4,5", Color(1, 2, 3, 4)},
          ColorCase{"1,x,3,", Color(1, 255, 3, 255)}, ColorCase{",99999999999,0x1,1.5", Color(255, 255, 255, 255)},
          ColorCase{" 1 , 2,+3, -4", Color(1, 2, 3, 252)}}) {
        phone_.Data().Write("info.ini", std::string("[Setup]\nBackColor=") + each.text + "\n");
        Color color;
        EXPECT_TRUE(JLib::ReadRegColor(L"Setup", L"BackColor", color, kDefaultColor)) << each.text;
        EXPECT_EQ(each.color, color) << each.text;
    }
    struct NumberCase {
        const char* text;
        int value;
    };
    for (const NumberCase& each : {NumberCase{"2", 2}, NumberCase{"-7", -7}, NumberCase{"yes", 42}, NumberCase{"", 42},
                                   NumberCase{"1 2", 42}, NumberCase{"2147483648", 42}, NumberCase{"+-1", 42}}) {
        phone_.Data().Write("info.ini", std::string("[Setup]\nAutoPlay=") + each.text + "\n");
        int value = 42;
        EXPECT_TRUE(JLib::ReadRegInt(L"Setup", L"AutoPlay", value, 3)) << each.text;
        EXPECT_EQ(each.value, value) << each.text;
    }
}

TEST_F(SettingsStore, SplitsTextsAtEveryDelimiterButTheLastOne) {
    struct Case {
        const wchar_t* text;
        const wchar_t* delimiter;
        std::vector<const wchar_t*> pieces;
    };
    for (const Case& each : {Case{L"1,2,3,4", L",", {L"1", L"2", L"3", L"4"}}, Case{L"1,2,", L",", {L"1", L"2"}},
                             Case{L"12", L",", {L"12"}}, Case{L",,a", L",", {L"", L"", L"a"}}, Case{L"", L",", {}},
                             Case{L"a--b-c", L"--", {L"a", L"b-c"}}, Case{L"a,b", L"", {L"a,b"}}}) {
        const std::unique_ptr<ArrayList> pieces(JLib::SplitString(each.text, each.delimiter));
        ASSERT_EQ(static_cast<int>(each.pieces.size()), pieces->GetCount());
        for (int i = 0; i < pieces->GetCount(); ++i) {
            EXPECT_TRUE(String(each.pieces[static_cast<std::size_t>(i)]).Equals(*pieces->GetAt(i)));
        }
    }
}

TEST_F(SettingsStore, WritesBesideASectionWhoseNameGoesOnBehindANul) {
    phone_.Data().Write("info.ini", "[Setup\0x]\nAutoPlay=0\n"s);
    EXPECT_TRUE(JLib::WriteRegInt(L"Setup", L"AutoPlay", 1));
    int value = 7;
    EXPECT_TRUE(JLib::ReadRegInt(L"Setup", L"AutoPlay", value, 3));
    EXPECT_EQ(1, value);
}

// The largest files that are read. With a cost that grows as the square of the length each would take half a minute.
TEST_F(SettingsStore, ReadsTheLongestLineAndTheMostSections) {
    constexpr int kCommas = 1'000'000;
    phone_.Data().Write("info.ini", "[Setup]\nBackColor=1,2" + std::string(kCommas, ',') + "\n");
    for (int i = 0; i < 3; ++i) {
        Color color;
        EXPECT_TRUE(JLib::ReadRegColor(L"Setup", L"BackColor", color, kDefaultColor));
        EXPECT_EQ(Color(1, 2, 255, 255), color);
    }
    std::string sections;
    for (int i = 0; i < 90'000; ++i) sections += "[" + std::to_string(i) + "]\n";
    phone_.Data().Write("info.ini", sections);
    EXPECT_TRUE(JLib::WriteRegInt(L"Setup", L"AutoPlay", 1));
    EXPECT_EQ(sections + "[Setup]\nAutoPlay=1\n", FileText());
}

TEST_F(SettingsStore, DoesNotTouchWhatIsNoSettingsFile) {
    const std::string huge((std::size_t{1} << 20) + 1, 'x');
    phone_.Data().Write("info.ini", huge);
    ::testing::internal::CaptureStderr();
    Color color;
    EXPECT_FALSE(JLib::ReadRegColor(L"Setup", L"BackColor", color, kDefaultColor));
    EXPECT_EQ(kDefaultColor, color);
    EXPECT_FALSE(JLib::WriteRegInt(L"Setup", L"AutoPlay", 1));
    EXPECT_FALSE(JLib::WriteRegInt(L"Setup", L"AutoPlay", 1));
    const std::string errors = ::testing::internal::GetCapturedStderr();
    EXPECT_NE(std::string::npos, errors.find("info.ini")) << errors;
    EXPECT_EQ(1, std::count(errors.begin(), errors.end(), '\n')) << errors;
    EXPECT_EQ(huge, FileText());

    std::filesystem::remove(phone_.Data() / "info.ini");
    std::filesystem::create_directory(phone_.Data() / "info.ini");
    EXPECT_FALSE(JLib::WriteRegInt(L"Setup", L"AutoPlay", 1));
    EXPECT_TRUE(std::filesystem::is_directory(phone_.Data() / "info.ini"));

    // The largest file that is read must not grow into one that is not.
    std::filesystem::remove(phone_.Data() / "info.ini");
    const std::string largest = "[Setup]\n;" + std::string((std::size_t{1} << 20) - 9, 'x');
    phone_.Data().Write("info.ini", largest);
    JLib::WriteRegInt(L"Setup", L"AutoPlay", 1);
    EXPECT_EQ(largest, FileText());
}

TEST_F(SettingsStore, KeepsNamesOfFilesAndValuesThatAreNoUtf8) {
    const std::string folder = "odd \xFF\xC3 \xED\xA0\x80 \xE2\x82\xAC/";
    const String path((phone_.Data() / (folder + "info.ini")).c_str());
    EXPECT_TRUE(JLib::WriteRegString(path, L"Setup", L"Name", "caf\xC3\xA9 \xF0\x9F\x8E\xB5 \xF5\x80"));
    EXPECT_EQ("[Setup]\nName=caf\xC3\xA9 \xF0\x9F\x8E\xB5 \xF5\x80\n", phone_.Data().Read(folder + "info.ini"));
    String value;
    EXPECT_TRUE(JLib::ReadRegString(path, L"Setup", L"Name", value, L""));
    EXPECT_EQ(9, value.GetLength());
}

TEST_F(SettingsStore, WritesNothingUntilItIsFlushed) {
    phone_.Data().Write("info.ini", "[Setup]\n");
    Registry registry;
    EXPECT_EQ(E_INVALID_STATE, registry.Flush());
    EXPECT_EQ(E_FILE_NOT_FOUND, registry.Construct(String((phone_.Data() / "other.ini").c_str()), false));
    ASSERT_EQ(E_SUCCESS, registry.Construct(JLib::__strRegFilePath, false));
    EXPECT_EQ(E_KEY_NOT_FOUND, registry.SetValue(L"Setup", L"A", L"1"));
    EXPECT_EQ(E_INVALID_ARG, registry.AddValue(L"Setup", L"A", L"1\n[Evil]"));
    EXPECT_EQ(E_SUCCESS, registry.AddValue(L"Setup", L"A", L"1"));
    EXPECT_EQ("[Setup]\n", FileText());
    EXPECT_EQ(E_SUCCESS, registry.Flush());
    EXPECT_EQ("[Setup]\nA=1\n", FileText());
}
