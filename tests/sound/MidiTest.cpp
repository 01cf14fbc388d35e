// The performance as MIDI: read back by a library, and compared with what the trace says that was played.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/MidiReader.h"
#include "support/ProgramRun.h"

namespace {

constexpr int kNoteOn = 0x90;
constexpr int kNoteOff = 0x80;
constexpr int kController = 0xB0;

// A C is held over the end of its recording, the holes go down one by one, a key breathes, and the program goes to the
// background and ends in a tone.
constexpr const char* kSession = R"(
2600 peak 200
+10500 press IDC_PANEL_HOLE 0.25 0.25
+400 touch 1 down 540 536
+400 touch 1 up
+100 release IDC_PANEL_HOLE
+400 peak 128
+400 key Space press
+400 key Space release
+400 peak 255
+300 background
+300 foreground
+500 quit
)";

/// "ocarina_4_01.ogg": 61.
int NoteOf(const std::string& file) {
    return (std::stoi(file.substr(8, 1)) + 1) * 12 + std::stoi(file.substr(10, 2));
}

}  // namespace

TEST(MidiFile, TellsTheTonesThatSoundAndTheBreath) {
    ProgramRun run;
    ASSERT_EQ(0, run.Play(kSession, {"--midi-file", run.Folder() / "a.mid"})) << run.Errors();
    const std::string content = run.Folder().Read("a.mid");
    const auto events = ReadMidiFile(content);
    EXPECT_TRUE(content.ends_with(std::string_view("\xFF\x2F\0", 3))) << "nothing is behind the track's end";

    // The notes as the trace has them: a play that follows an end repeats the tone.
    struct Note {
        double ms;
        int number;
    };
    std::vector<Note> played;
    std::string file;
    bool isRepeat = false;
    int repeats = 0;
    for (const auto& line : run.ReadTrace()) {
        if (line.at("what") != "player") continue;
        const std::string event = line.at("event");
        if (event == "open") file = line.at("file");
        if (event == "end") isRepeat = true;
        if (event == "close" || event == "open") isRepeat = false;
        if (event != "play") continue;
        repeats += isRepeat ? 1 : 0;
        if (!isRepeat) played.push_back({line.at("ms"), NoteOf(file)});
        isRepeat = false;
    }
    ASSERT_GT(played.size(), 5U);

    std::optional<int> sounding;
    std::size_t notes = 0;
    int breath = -1;
    std::vector<int> breaths;
    ASSERT_FALSE(events.empty());
    EXPECT_EQ(events.front().status, 0xC0);
    EXPECT_EQ(events.front().data, std::vector<int>{79}) << "General MIDI's ocarina";
    for (const MidiEvent& event : events) {
        if (event.status == kNoteOn) {
            ASSERT_LT(notes, played.size());
            EXPECT_FALSE(sounding) << "one tone at a time";
            sounding = event.data[0];
            EXPECT_EQ(event.data[0], played[notes].number) << notes;
            EXPECT_NEAR(event.ms, played[notes].ms, 1) << notes;
            EXPECT_EQ(event.data[1], 64 + breath / 2) << notes;
            ++notes;
        } else if (event.status == kNoteOff) {
            EXPECT_EQ(sounding, event.data[0]);
            sounding.reset();
        } else if (event.status == kController && event.data[0] == 2) {
            EXPECT_NE(event.data[1], breath) << "told only when it changes";
            breath = event.data[1];
            breaths.push_back(breath);
        }
    }
    EXPECT_EQ(notes, played.size());
    EXPECT_GT(repeats, 0) << "the first tone is longer than its recording";
    EXPECT_FALSE(sounding) << "no note is left";
    EXPECT_EQ(breath, 0);
    // The peak of 200, the end of it, the space bar, and full scale before and behind the background.
    EXPECT_EQ(breaths.at(1), 72);
    EXPECT_GT(*std::max_element(breaths.begin() + 3, breaths.end() - 4), 90) << "the space bar's breath is heard, too";
    EXPECT_EQ(std::count(breaths.begin(), breaths.end(), 127), 2);
}

TEST(Midi, IsRefusedWhereItCannotBeHad) {
    ProgramRun run;
    EXPECT_EQ(2, run.Play("100 quit\n", {"--midi"}));
    EXPECT_NE(run.Errors().find("--midi"), std::string::npos) << run.Errors();
    EXPECT_FALSE(std::filesystem::exists(run.Folder() / "recording.wav")) << "nothing is started";
    EXPECT_EQ(2, run.Play("100 quit\n", {"--midi-file", "/nowhere/a.mid"}));
    EXPECT_NE(run.Errors().find("/nowhere/a.mid"), std::string::npos) << run.Errors();
    EXPECT_EQ(1, run.Play("100 quit\n", {"--midi-file", "/dev/full"}));
    EXPECT_NE(run.Errors().find("/dev/full"), std::string::npos) << run.Errors();
    run.Folder().Write("mine", "0 quit\n");
    EXPECT_EQ(2, run.Start({"--backend", "headless", "--performance", run.Folder() / "mine", "--midi-file",
                            run.Folder() / "mine"}));
    EXPECT_EQ(run.Folder().Read("mine"), "0 quit\n");
}
