// What is recorded: that it is what was played, that it can be played whatever becomes of the program, and that it
// costs nobody a file.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "launcher/Surroundings.h"
#include "package/SoundMeasure.h"
#include "runtime/soundfile/SoundWriter.h"
#include "support/ProgramRun.h"
#include "support/TemporaryFolder.h"

namespace {

constexpr int kRate = 44100;

/// A file in memory of at most so many bytes.
class Disk final : public host::OutputFile {
public:
    Disk(std::string& content, std::size_t room) : content_(content), room_(room) {}
    bool Append(std::span<const std::byte> bytes) override {
        if (content_.size() + bytes.size() > room_) problem_ = "No space left on device";
        if (!problem_.empty()) return false;
        for (const std::byte byte : bytes) content_ += static_cast<char>(byte);
        return true;
    }
    bool Overwrite(std::uint64_t offset, std::span<const std::byte> bytes) override {
        for (const std::byte byte : bytes) content_.at(offset++) = static_cast<char>(byte);
        return true;
    }
    bool Close() override { return problem_.empty(); }
    const std::string& Problem() const override { return problem_; }

private:
    std::string& content_;
    std::size_t room_;
    std::string problem_;
};

std::vector<float> Tone(std::size_t frames) {
    std::vector<float> tone(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        constexpr double kHertz = 440;
        constexpr double kTurn = 2 * 3.14159265358979323846;
        tone[i] = static_cast<float>(0.5 * std::sin(kTurn * kHertz * static_cast<double>(i) / kRate));
    }
    return tone;
}

/// The largest difference of what `read` has to the beginning of `expected`.
double Difference(const std::vector<float>& read, const std::vector<float>& expected) {
    double largest = read.size() <= expected.size() ? 0 : 1;
    for (std::size_t i = 0; i < std::min(read.size(), expected.size()); ++i)
        largest = std::max<double>(largest, std::abs(read[i] - expected[i]));
    return largest;
}

class Takes : public testing::Test {
protected:
    void SetUp() override {
        for (const char* name : {"HOME", "XDG_MUSIC_DIR", "XDG_CONFIG_HOME"}) {
            const char* value = std::getenv(name);
            kept_.emplace_back(name, value == nullptr ? "" : value);
            unsetenv(name);
        }
        setenv("HOME", run_.Folder().Path().c_str(), 1);
    }
    void TearDown() override {
        for (const auto& [name, value] : kept_) value.empty() ? unsetenv(name) : setenv(name, value.c_str(), 1);
    }

    ProgramRun run_;
    std::vector<std::pair<const char*, std::string>> kept_;
};

constexpr const char* kTwoTakes = R"(
2600 breath 0.5
3000 key F9 press
+20 key F9 release
+200 press IDC_PANEL_HOLE 0.25 0.25
+700 release IDC_PANEL_HOLE
+1800 key F9 press
+20 key F9 release
+100 key F9 press
+500 quit
)";
constexpr const char* kFirstName = "Brevant 1970-01-01 00-00-03.flac";
constexpr const char* kSecondName = "Brevant 1970-01-01 00-00-05.flac";

}  // namespace

TEST(SoundWriter, CanBePlayedUpToTheLastSecondWhateverBecomesOfTheProgram) {
    struct Case {
        const char* name;
        double tolerance;  ///< of full scale
    };
    const std::vector<float> tone = Tone(5 * kRate);
    for (const Case& format : {Case{"a.wav", 1.0 / 32767}, Case{"a.FLAC", 1.0 / 32767}, Case{"a.ogg", 0.02}}) {
        SCOPED_TRACE(format.name);
        const TemporaryFolder folder;
        std::string content;
        const auto writer = host::CreateSoundWriter(*host::SoundFormatOf(format.name),
                                                    std::make_unique<Disk>(content, std::size_t{1} << 24U), kRate);
        constexpr std::size_t kPiece = 8820;
        for (std::size_t at = 0; at < tone.size(); at += kPiece) {
            ASSERT_TRUE(writer->Write({&tone[at], kPiece}));
            if (at + kPiece < kRate) continue;
            // The program dies here.
            folder.Write(format.name, content);
            const auto sound = measure::ReadSound(folder / format.name);
            EXPECT_GE(sound.samples.size() + kRate, at + kPiece);
            EXPECT_LT(Difference(sound.samples, tone), format.tolerance) << at;
        }
        EXPECT_TRUE(writer->Close());
        folder.Write(format.name, content);
        const auto sound = measure::ReadSound(folder / format.name);
        EXPECT_EQ(sound.rate, kRate);
        EXPECT_EQ(sound.samples.size(), tone.size());
        EXPECT_LT(Difference(sound.samples, tone), format.tolerance);
    }
    EXPECT_FALSE(host::SoundFormatOf("a.wav/take.mp3"));
    EXPECT_EQ(host::SoundFormatOf("a.flac/take"), host::SoundFormat::kWav);
}

TEST(SoundWriter, TellsOfAFullDiskAndKeepsWhatFits) {
    for (const char* name : {"a.wav", "a.flac", "a.ogg"}) {
        SCOPED_TRACE(name);
        const TemporaryFolder folder;
        std::string content;
        const auto writer =
            host::CreateSoundWriter(*host::SoundFormatOf(name), std::make_unique<Disk>(content, 40'000), kRate);
        const std::vector<float> tone = Tone(kRate / 5);
        bool isWritten = true;
        constexpr int kMostPieces = 200;
        for (int i = 0; i < kMostPieces && isWritten; ++i) isWritten = writer->Write(tone);
        EXPECT_FALSE(isWritten);
        EXPECT_FALSE(writer->Write(tone)) << "for good";
        EXPECT_EQ(writer->Problem(), "No space left on device");
        EXPECT_FALSE(writer->Close());
        folder.Write(name, content);
        EXPECT_GT(measure::ReadSound(folder / name).samples.size(), tone.size()) << "what fits can be played";
    }
}

TEST_F(Takes, HoldWhatWasPlayedBetweenTwoPressesAndOverwriteNothing) {
    const TemporaryFolder& folder = run_.Folder();
    std::filesystem::create_directories(folder / ".config");
    std::filesystem::create_directories(folder / "Musik");
    folder.Write(".config/user-dirs.dirs", "# a comment\nXDG_MUSIC_DIR=\"$HOME/Musik\"\nXDG_DESKTOP_DIR=\"/d\"\n");
    folder.Write(std::string("Musik/") + kFirstName, "mine");
    ASSERT_EQ(0, run_.Play(kTwoTakes)) << run_.Errors();

    EXPECT_EQ(folder.Read(std::string("Musik/") + kFirstName), "mine");
    const std::vector<float> all = run_.ReadRecording();
    const std::string first = "Brevant 1970-01-01 00-00-03 (2).flac";
    struct Take {
        std::string name;
        double seconds;
    };
    const std::vector<Take> takes = {{first, 2.72}, {kSecondName, 0.5}};
    for (const Take& take : takes) {
        const auto sound = measure::ReadSound(folder / ("Musik/" + take.name));
        EXPECT_EQ(sound.rate, kRate);
        EXPECT_NEAR(static_cast<double>(sound.samples.size()) / kRate, take.seconds, 0.02) << take.name;
        const auto found = std::search(all.begin(), all.end(), sound.samples.begin(), sound.samples.end());
        EXPECT_NE(found, all.end()) << take.name << " is a part of the whole recording, to the bit";
    }
    const auto ended = run_.ReadTrace("recording", "ended");
    ASSERT_EQ(ended.size(), 2U);
    EXPECT_EQ(ended.front().at("file"), first);

    // The choice of the session's environment comes first, and a folder that is missing is made.
    setenv("XDG_MUSIC_DIR", (folder / "made/here").c_str(), 1);
    ASSERT_EQ(0, run_.Play(kTwoTakes)) << run_.Errors();
    EXPECT_TRUE(std::filesystem::exists(folder / (std::string("made/here/") + kFirstName)));
}

TEST_F(Takes, GoWhereTheDesktopKeepsMusic) {
    const TemporaryFolder& folder = run_.Folder();
    const std::string home = folder.Path();
    std::filesystem::create_directories(folder / ".config");
    const std::pair<std::string, std::string> cases[] = {
        {"XDG_MUSIC_DIR=\"$HOME/Musik\"", home + "/Musik"},
        {"\tXDG_MUSIC_DIR=\"/srv/music\"\nXDG_DESKTOP_DIR=\"/d\"", "/srv/music"},
        {"# XDG_MUSIC_DIR=\"/d\"\nXDG_MUSIC_DIR=\"relative\"\nXDG_MUSIC_DIR=\"/cut", home + "/Music"},
        // The desktop has no folder for music.
        {"XDG_MUSIC_DIR=\"$HOME/\"", home + "/Music"},
        {"XDG_MUSIC_DIR=\"$HOME\"", home + "/Music"},
        {"XDG_MUSIC_DIR=\"" + home + "\"", home + "/Music"},
    };
    for (const auto& [lines, expected] : cases) {
        folder.Write(".config/user-dirs.dirs", lines + '\n');
        EXPECT_EQ(host::MusicFolder(), expected) << lines;
    }
}

TEST_F(Takes, AreToldLostWhereTheyCannotBeWritten) {
    for (const char* where : {"/proc/nowhere", "/dev/null/folder"}) {
        setenv("XDG_MUSIC_DIR", where, 1);
        EXPECT_EQ(1, run_.Play(kTwoTakes)) << where;
        const std::string errors = run_.Errors();
        EXPECT_NE(errors.find(where), std::string::npos) << errors;
        EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1) << errors;
    }
}

TEST_F(Takes, AreNoPartOfAKeptPerformance) {
    const std::string kept = run_.Folder() / "kept.performance";
    ASSERT_EQ(0, run_.Play(kTwoTakes, {"--keep-performance", kept})) << run_.Errors();
    EXPECT_EQ(run_.Folder().Read("kept.performance").find("F9"), std::string::npos);
    EXPECT_NE(run_.Folder().Read("kept.performance").find("touch"), std::string::npos);
}

TEST(Recording, IsRefusedUnderAnEndingThatItCannotHave) {
    ProgramRun run;
    run.Folder().Write("a.performance", "100 quit\n");
    EXPECT_EQ(2, run.Start({"--backend", "headless", "--performance", run.Folder() / "a.performance", "--record",
                            run.Folder() / "take.mp3"}));
    EXPECT_NE(run.Errors().find("take.mp3"), std::string::npos) << run.Errors();
    EXPECT_FALSE(std::filesystem::exists(run.Folder() / "take.mp3"));
}
