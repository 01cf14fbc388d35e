// The settings file's text: what is found in it, and that an edit touches nothing else.

#include "runtime/settings/SettingsDocument.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace std::string_literals;
using host::SettingsDocument;
using Outcome = SettingsDocument::Outcome;

SettingsDocument Parse(std::string_view text) {
    return SettingsDocument({reinterpret_cast<const std::byte*>(text.data()), text.size()});
}

std::string TextOf(const SettingsDocument& document) {
    const std::vector<std::byte> content = document.Content();
    return {reinterpret_cast<const char*>(content.data()), content.size()};
}

// As the ocarina writes: the section, then the entry, each made when it is missing.
std::string WriteKeyV(std::string_view text) {
    SettingsDocument document = Parse(text);
    EXPECT_NE(Outcome::kInvalid, document.AddSection("S"));
    if (document.SetValue("S", "Key", "v") != Outcome::kDone) {
        EXPECT_EQ(Outcome::kDone, document.AddValue("S", "Key", "v"));
    }
    return TextOf(document);
}

}  // namespace

TEST(SettingsDocument, FindsTheFirstEntryOfTheFirstSection) {
    struct Case {
        const char* text;
        Outcome outcome;
        const char* value;
    };
    for (const Case& each : {
             Case{"[S]\nKey=v\n", Outcome::kDone, "v"},
             Case{"[S]\r\nKey=v\r\n", Outcome::kDone, "v"},
             Case{"\xEF\xBB\xBF[S]\nKey=v", Outcome::kDone, "v"},
             Case{" [ S ] \n\t Key \t= a b \n", Outcome::kDone, "a b"},
             Case{"[S]\nKey=a=b;c#d]\n", Outcome::kDone, "a=b;c#d]"},
             Case{"[S]\nKey=\n", Outcome::kDone, ""},
             Case{"[S]\nKey=1\nKey=2\n[S]\nKey=3\n", Outcome::kDone, "1"},
             Case{"[S]\nOther=1\n[S]\nKey=3\n", Outcome::kNoEntry, "before"},
             Case{"Key=0\n[T]\nKey=1\n[S]\n#Key=2\n;Key=3\nkey=4\nKey\n[S\nKeyx=5\n", Outcome::kNoEntry, "before"},
             Case{"[s]\nKey=1\n[S\nKey=2\nS]\n", Outcome::kNoSection, "before"},
             Case{"", Outcome::kNoSection, "before"},
             Case{"\xEF\xBB\xBF", Outcome::kNoSection, "before"},
         }) {
        std::string value = "before";
        EXPECT_EQ(each.outcome, Parse(each.text).Find("S", "Key", value)) << each.text;
        EXPECT_EQ(each.value, value) << each.text;
    }
    EXPECT_EQ((std::vector<std::string>{"S", "", "T"}), Parse("[S]\nx\n[]\n[T]\n[S]\n").SectionNames());
}

TEST(SettingsDocument, LeavesEverythingElseAsItIsToTheByte) {
    struct Case {
        std::string before;
        std::string after;
    };
    const std::string garbage = "[x\n==\n=\n\xFF\xFE\0\x01 \xC3(\r\r\n  \n;c\n"s;
    for (const Case& each : {
             Case{"", "[S]\nKey=v\n"},
             Case{"[S]", "[S]\nKey=v\n"},
             Case{"[S]\r\n", "[S]\r\nKey=v\r\n"},
             Case{"\xEF\xBB\xBF", "\xEF\xBB\xBF[S]\nKey=v\n"},
             Case{"[T]\nKey=1", "[T]\nKey=1\n[S]\nKey=v\n"},
             Case{"[S]\nKey=old\n", "[S]\nKey=v\n"},
             Case{"[S]\n Key =\told value \r\nB=2\n", "[S]\n Key =\tv \r\nB=2\n"},
             Case{"[S]\nKey=", "[S]\nKey=v"},
             Case{"[S]\nKey=   \r\n", "[S]\nKey=   v\r\n"},
             Case{"[S]\nKey=\r10\n", "[S]\nKey=\rv\n"},
             Case{"[S]\nKey=\r \t10 \r\r\n", "[S]\nKey=\r \tv \r\r\n"},
             Case{"[S]\nKey=a\0b\nB=2\n"s, "[S]\nKey=v\nB=2\n"},
             Case{"[S\0]\nKey=1\n"s, "[S\0]\nKey=1\n[S]\nKey=v\n"s},
             Case{"[S]\nA=1\n\n\n[T]\nKey=2\n", "[S]\nA=1\nKey=v\n\n\n[T]\nKey=2\n"},
             Case{"[S]\nKey=1\nKey=2\n[S]\nKey=3\n", "[S]\nKey=v\nKey=2\n[S]\nKey=3\n"},
             Case{garbage, garbage + "[S]\nKey=v\n"},
             Case{garbage + "[S]\n" + garbage, ""},
         }) {
        const std::string after = WriteKeyV(each.before);
        if (!each.after.empty()) {
            EXPECT_EQ(each.after, after);
        }
        // Without what was added, the rest is what it was; and what was written is found again.
        std::string value;
        EXPECT_EQ(Outcome::kDone, Parse(after).Find("S", "Key", value));
        EXPECT_EQ("v", value);
        EXPECT_EQ(after, WriteKeyV(after));
    }
    // An entry goes behind the last line of its section that says anything.
    EXPECT_EQ("[S]\n" + garbage + "Key=v\n", WriteKeyV("[S]\n" + garbage));
}

TEST(SettingsDocument, RefusesWhatCouldNotBeReadBack) {
    SettingsDocument document = Parse("[S]\nKey=1\n");
    for (const char* name : {"", " S", "S ", "a\nb", "a\rb"})
        EXPECT_EQ(Outcome::kInvalid, document.AddSection(name)) << name;
    for (const char* key : {"", " k", "k\t", "a=b", "a\nb", "#k", ";k", "[k]"}) {
        EXPECT_EQ(Outcome::kInvalid, document.AddValue("S", key, "v")) << key;
    }
    for (const char* value : {"a\nb", "a\r", "\n[T]\nKey=2"}) {
        EXPECT_EQ(Outcome::kInvalid, document.SetValue("S", "Key", value));
        EXPECT_EQ(Outcome::kInvalid, document.AddValue("S", "New", value));
    }
    EXPECT_EQ(Outcome::kExists, document.AddSection("S"));
    EXPECT_EQ(Outcome::kExists, document.AddValue("S", "Key", "2"));
    EXPECT_EQ(Outcome::kNoEntry, document.SetValue("S", "New", "2"));
    EXPECT_EQ(Outcome::kNoSection, document.AddValue("T", "Key", "2"));
    EXPECT_EQ("[S]\nKey=1\n", TextOf(document));
}
