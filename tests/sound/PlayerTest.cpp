// The player's states, the files that it opens and refuses, and what of all that reaches the speaker.

#include <gtest/gtest.h>
#include <ogg/ogg.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>

#include "measure/SoundFile.h"
#include "sound/SoundRig.h"

using namespace Tizen::Media;

namespace sound_test {

namespace {

constexpr int kRate = 44100;
constexpr std::size_t kRamp = 220;  // 5 ms
constexpr int kRingPeriods = 48;    // 280 ms; no tone of the package rings on for longer
constexpr float kRounding = 2e-6F;

const std::string kTone = BREVANT_PACKAGE "data/ocarina_4_00.ogg";

std::string WriteClip(const Rig& rig, const std::string& name, std::span<const float> frames, int rate = kRate) {
    const std::string path = rig.Path(name);
    WriteWav(path, rate, 1, 16, To16Bit(frames));
    return path;
}

// Every frame is another number, so that a missing or doubled one shows.
std::vector<float> Counting(std::size_t frames) {
    std::vector<float> counting(frames);
    for (std::size_t i = 0; i < frames; ++i) counting[i] = static_cast<float>(static_cast<double>(i + 1) / 32767);
    return counting;
}

bool IsSilent(std::span<const float> frames) {
    return std::all_of(frames.begin(), frames.end(), [](float frame) { return frame == 0; });
}

std::span<const float> From(const std::vector<float>& frames, std::size_t at) {
    return std::span<const float>(frames).subspan(at);
}

// Where `heard` first differs from `expected` repeated, from its frame `from` on; heard.size() when it never does. It
// begins with the frame `phase` of `expected`.
std::size_t FirstDifference(std::span<const float> heard, std::span<const float> expected, std::size_t from,
                            std::size_t phase = 0) {
    for (std::size_t i = from; i < heard.size(); ++i) {
        if (std::abs(heard[i] - expected[(i + phase) % expected.size()]) > kRounding) return i;
    }
    return heard.size();
}

// Puts the checksum that a reader expects into the Ogg page at `offset`.
void SetPageChecksum(Bytes& file, std::size_t offset) {
    constexpr long kSegmentsAt = 26;
    ogg_page page{};
    page.header = file.data() + offset;
    page.header_len = kSegmentsAt + 1 + page.header[kSegmentsAt];
    page.body = page.header + page.header_len;
    for (long i = kSegmentsAt + 1; i < page.header_len; ++i) page.body_len += page.header[i];
    ogg_page_checksum_set(&page);
}

}  // namespace

TEST(Player, AllowsInEachStateWhatItsTableSays) {
    struct Row {
        PlayerState phase;
        const char* way;  // o(pen), p(lay), s(top), c(lose), e(nd of clip)
        const char* allowed;
    };
    constexpr Row kRows[] = {
        {PLAYER_STATE_INITIALIZED, "", "o"}, {PLAYER_STATE_OPENED, "o", "psc"},  {PLAYER_STATE_PLAYING, "op", "sc"},
        {PLAYER_STATE_STOPPED, "ops", "pc"}, {PLAYER_STATE_STOPPED, "os", "pc"}, {PLAYER_STATE_ENDOFCLIP, "ope", "psc"},
        {PLAYER_STATE_CLOSED, "opsc", "o"},  {PLAYER_STATE_CLOSED, "opc", "o"},  {PLAYER_STATE_OPENED, "opsco", "psc"},
    };
    const std::vector<PlayerState> phaseAfter = {PLAYER_STATE_OPENED, PLAYER_STATE_PLAYING, PLAYER_STATE_STOPPED,
                                                 PLAYER_STATE_CLOSED};
    const std::string operations = "opsc";
    for (const Row& row : kRows) {
        for (std::size_t i = 0; i < operations.size(); ++i) {
            Rig rig;
            TestPlayer user;
            user.repeats = 0;
            const auto path = WriteClip(rig, "clip.wav", Counting(9000));
            const auto act = [&](char operation) {
                Player& player = *user.player;
                if (operation == 'o') return player.OpenFile(path.c_str());
                if (operation == 'p') return player.Play();
                if (operation == 's') return player.Stop();
                if (operation == 'c') return player.Close();
                rig.Hear(40);
                return E_SUCCESS;
            };
            for (const char* step = row.way; *step != '\0'; ++step) ASSERT_EQ(act(*step), E_SUCCESS);
            ASSERT_EQ(user.player->GetState(), row.phase) << row.way;

            const bool isAllowed = std::string(row.allowed).find(operations[i]) != std::string::npos;
            EXPECT_EQ(act(operations[i]), isAllowed ? E_SUCCESS : E_INVALID_STATE)
                << row.way << " then " << operations[i];
            EXPECT_EQ(user.player->GetState(), isAllowed ? phaseAfter[i] : row.phase);
        }
    }
    Rig rig;
    TestPlayer user;
    EXPECT_EQ(user.player->SetVolume(101), E_OUT_OF_RANGE);
    EXPECT_EQ(user.player->SetVolume(-1), E_OUT_OF_RANGE);
    EXPECT_EQ(user.player->GetVolume(), 100);
    EXPECT_EQ(user.player->OpenFile(kTone.c_str(), true), E_INVALID_ARG);
    EXPECT_EQ(user.player->GetState(), PLAYER_STATE_INITIALIZED);
    EXPECT_EQ(user.player->Construct(user), E_INVALID_STATE);
    Player unconstructed;
    EXPECT_EQ(unconstructed.OpenFile(kTone.c_str()), E_INVALID_STATE);
}

TEST(Player, RefusesWhatIsNoWholeRecordingAndStaysSilent) {
    Rig rig;
    const Bytes whole = ReadFile(kTone);
    ASSERT_GT(whole.size(), 20000U);
    const auto cut = [&](std::size_t size) { return Bytes(whole.begin(), whole.begin() + static_cast<long>(size)); };
    std::vector<std::size_t> pages;
    for (std::size_t i = 0; i + 4 < whole.size(); ++i) {
        if (std::equal(whole.begin() + static_cast<long>(i), whole.begin() + static_cast<long>(i) + 4, "OggS")) {
            pages.push_back(i);
        }
    }
    Bytes flipped = whole;
    flipped[whole.size() / 2] ^= 4;
    Bytes withoutPage = whole;
    withoutPage.erase(withoutPage.begin() + static_cast<long>(pages[3]),
                      withoutPage.begin() + static_cast<long>(pages[4]));
    Bytes twice = whole;
    twice.insert(twice.end(), whole.begin(), whole.end());
    const auto minute = std::vector<float>(60 * 8000 + 1, 0.1F);
    const std::string wav = WriteClip(rig, "whole.wav", Counting(3000));
    Bytes cutWav = ReadFile(wav);
    cutWav.resize(cutWav.size() - 2);
    Bytes noFrames = ReadFile(wav);
    noFrames.resize(44);
    std::fill(noFrames.begin() + 40, noFrames.end(), std::uint8_t{0});
    // A last page that promises more frames than the packets hold, with a right checksum.
    Bytes tooLong = whole;
    constexpr std::size_t kGranuleAt = 6;
    tooLong[pages.back() + kGranuleAt + 1] += 0x4e;  // some 20000 frames
    SetPageChecksum(tooLong, pages.back());
    // A file whose structure tells nothing of its samples is decoded to know that it is whole.
    WriteSound(rig.Path("whole-compressed"), kRate, 1, SF_FORMAT_WAV | SF_FORMAT_IMA_ADPCM, Sine(50000, 777, 0.5));
    ASSERT_EQ(TestPlayer().Change(rig.Path("whole-compressed")), E_SUCCESS);

    struct Row {
        const char* name;
        Bytes bytes;
    };
    const Row rows[] = {
        {"empty", {}},
        {"one-byte", cut(1)},
        {"only-headers", cut(pages[2])},
        {"cut-in-a-page", cut(whole.size() - 1)},
        {"cut-in-the-middle", cut(whole.size() / 2)},
        {"cut-between-pages", cut(pages.back())},
        {"flipped-bit", flipped},
        {"lost-page", withoutPage},
        {"two-streams", twice},
        {"text", {'O', 'g', 'g', ' ', 'i', 's', ' ', 'n', 'o', 't', ' ', 'i', 't', '\n'}},
        {"picture", ReadFile(BREVANT_PACKAGE "images/intro01.png")},
        {"too-long-a-promise", tooLong},
        {"cut-wav", cutWav},
        {"wav-without-frames", noFrames},
    };
    TestPlayer user;
    for (const Row& row : rows) {
        WriteFile(rig.Path(row.name), row.bytes);
        user.Change(kTone);
        rig.Hear(10);
        EXPECT_EQ(user.Change(rig.Path(row.name)), E_UNSUPPORTED_FORMAT) << row.name;
        EXPECT_EQ(user.player->GetState(), PLAYER_STATE_CLOSED);
        rig.Hear(kRingPeriods);
        EXPECT_TRUE(IsSilent(rig.Hear(10))) << row.name;
    }
    WriteWav(rig.Path("over-a-minute"), 8000, 1, 16, To16Bit(minute));
    EXPECT_EQ(user.Change(rig.Path("over-a-minute")), E_UNSUPPORTED_FORMAT);
    WriteWav(rig.Path("a-minute"), 8000, 1, 16, To16Bit(std::span(minute).first(minute.size() - 1)));
    EXPECT_EQ(user.Change(rig.Path("a-minute")), E_SUCCESS);
    EXPECT_EQ(user.Change(rig.Path("missing")), E_FILE_NOT_FOUND);
    EXPECT_EQ(user.Change(BREVANT_PACKAGE "data"), E_FILE_NOT_FOUND);

    // However many were refused, the intact ones sound.
    for (const char* note : {"3_07", "3_09", "4_00", "5_00"}) {
        EXPECT_EQ(user.Change(BREVANT_PACKAGE "data/ocarina_" + std::string(note) + ".ogg"), E_SUCCESS);
        rig.Hear(4);
        EXPECT_FALSE(IsSilent(rig.Hear(4))) << note;
    }
}

TEST(Player, ChangesEveryToneForEveryOtherWithoutAClick) {
    std::vector<std::string> paths;
    for (const auto& file : std::filesystem::directory_iterator(BREVANT_PACKAGE "data")) paths.push_back(file.path());
    std::sort(paths.begin(), paths.end());
    ASSERT_EQ(paths.size(), 16U);
    constexpr int kBefore[] = {3, 9, 30};  // periods
    constexpr int kAfter = 6;
    Rig rig;
    TestPlayer user;
    for (const auto& first : paths) {
        for (const auto& second : paths) {
            for (const int before : kBefore) {
                user.Change(first, 99);
                const auto old = rig.Hear(before);
                user.Change(second, 99);
                const auto changed = rig.Hear(kAfter);
                user.Silence();
                const auto end = rig.Hear(kRingPeriods);
                EXPECT_NE(changed[0] - end.back(), 0);

                std::vector<float> all = old;
                all.insert(all.end(), changed.begin(), changed.end());
                all.insert(all.end(), end.begin(), end.end());
                const float ownStep = std::max(LargestStep(old), LargestStep(From(changed, kRamp)));
                EXPECT_LE(LargestStep(all), 1.5F * ownStep) << first << " to " << second;
                // Nothing of the next round is to be heard of this one.
                ASSERT_TRUE(IsSilent(rig.Hear(1)));
            }
        }
    }
}

TEST(Player, IsHeardInTheVeryNextPeriod) {
    for (const int periodFrames : {64, 256, 1024}) {
        Rig rig({}, kRate, periodFrames);
        const auto path = WriteClip(rig, "loud.wav", std::vector<float>(20000, 0.5F));
        TestPlayer user;
        EXPECT_TRUE(IsSilent(rig.Hear(3)));
        user.Change(path);
        const auto heard = rig.HearLate(6);
        EXPECT_GT(heard[0], 0);
        EXPECT_TRUE(std::is_sorted(heard.begin(), heard.end()));
        EXPECT_NEAR(heard[kRamp], 0.5, 1e-4);
    }
}

TEST(Player, RepeatsWithoutAMissingOrDoubledFrame) {
    for (const int periodFrames : {64, 256, 441, 1024}) {
        for (const std::size_t length : {300U, 1000U, 4096U, 5000U, 30000U}) {
            Rig rig({}, kRate, periodFrames);
            const auto frames = Counting(length);
            const auto path = WriteClip(rig, "clip.wav", frames);
            TestPlayer user;
            user.Change(path);
            const auto heard = rig.Hear(static_cast<int>(3 * length + 3 * 1024) / periodFrames + 1);
            EXPECT_EQ(FirstDifference(heard, From16Bit(frames), kRamp), heard.size()) << length << ' ' << periodFrames;
            EXPECT_GE(user.ends, 3);
            EXPECT_EQ(user.player->GetState(), PLAYER_STATE_PLAYING);
        }
    }
}

TEST(Player, RepeatsAsOftenAsItIsAnsweredThenEndsOrStops) {
    for (const std::size_t length : {300U, 6000U}) {
        Rig rig;
        const auto path = WriteClip(rig, "clip.wav", std::vector<float>(length, 0.5F));
        TestPlayer user;
        user.repeats = 4;
        user.Change(path);
        const auto heard = rig.Hear(static_cast<int>(6 * length) / 256 + 2);
        // Unanswered, the recording plays to its end.
        const auto last = std::find_if(heard.rbegin(), heard.rend(), [](float frame) { return frame != 0; });
        EXPECT_NEAR(static_cast<double>(heard.rend() - last), static_cast<double>(5 * length), 2) << length;
        EXPECT_LE(LargestStep(From(heard, 1)), 0.5 * 3.15 / 2 / kRamp);
        EXPECT_EQ(user.ends, 5);
        EXPECT_EQ(user.player->GetState(), PLAYER_STATE_ENDOFCLIP);
        EXPECT_EQ(user.player->Play(), E_SUCCESS);
        EXPECT_FALSE(IsSilent(rig.Hear(1)));

        using AtLastEnd = TestPlayer::AtLastEnd;
        for (const AtLastEnd answer : {AtLastEnd::kStop, AtLastEnd::kClose, AtLastEnd::kDestroy}) {
            TestPlayer other;
            user.Silence();
            rig.Hear(3);
            other.repeats = 0;
            other.atLastEnd = answer;
            other.Change(path);
            while (other.ends == 0) rig.Hear(1);
            rig.Hear(1);
            EXPECT_TRUE(IsSilent(rig.Hear(40)));
            EXPECT_EQ(other.ends, 1);
        }
    }
}

TEST(Player, RisesAndFallsWithinAClipThatIsShorterThanItsRamps) {
    for (const std::size_t length : {1U, 2U, 100U, 219U, 220U, 300U, 441U}) {
        Rig rig;
        TestPlayer user;
        user.repeats = 0;
        user.Change(WriteClip(rig, "clip.wav", std::vector<float>(length, 0.5F)));
        rig.RunDue();
        const auto heard = rig.Hear(4);
        const auto peak = static_cast<std::size_t>(std::max_element(heard.begin(), heard.end()) - heard.begin());
        EXPECT_NEAR(static_cast<double>(peak), static_cast<double>(length - 1) / 2, length > 440 ? 2 : 1) << length;
        EXPECT_GT(heard[peak], 0);
        EXPECT_LE(LargestStep(heard), 0.5 * 3.15 / 2 / kRamp) << length;
        EXPECT_TRUE(IsSilent(From(heard, length)));
        EXPECT_EQ(user.player->GetState(), PLAYER_STATE_ENDOFCLIP);
    }
}

TEST(Player, IsSilentWhileTheAnswerIsLateAndThenBeginsAnew) {
    Rig rig;
    const auto frames = Counting(6000);
    const auto path = WriteClip(rig, "clip.wav", frames);
    TestPlayer user;
    user.Change(path);
    const auto late = rig.HearLate(40);
    const auto decoded = From16Bit(frames);
    EXPECT_EQ(FirstDifference(std::span(late).first(6000), decoded, kRamp), 6000U);
    EXPECT_TRUE(IsSilent(From(late, 6000)));
    const auto heard = rig.Hear(5);
    EXPECT_EQ(user.ends, 1);
    EXPECT_EQ(FirstDifference(heard, decoded, kRamp), heard.size());
    EXPECT_LT(heard[0], decoded[0]);

    // A report that was under way when the tone was changed, closed or destroyed is nobody's.
    for (const int way : {0, 1, 2}) {
        TestPlayer other;
        other.Change(path);
        rig.HearLate(12);
        if (way == 0) other.Change(kTone);
        if (way == 1) other.Silence();
        if (way == 2) other.player.reset();
        rig.Hear(4);
        EXPECT_EQ(other.ends, 0);
    }
}

TEST(Player, ResamplesSoThatTheRepeatIsSeamless) {
    for (const int rate : {22050, 48000, 96000}) {
        for (const std::size_t length : {600U, 44100U}) {
            Rig rig({}, rate);
            const double cycles = static_cast<double>(length) / 60;  // 735 Hz
            const auto path = WriteClip(rig, "sine.wav", Sine(length, cycles, 0.5));
            TestPlayer user;
            user.Change(path);
            const auto heard = rig.Hear(rate * 3 / 256);
            const double frames = std::round(static_cast<double>(length) * rate / kRate);
            double largest = 0;
            for (std::size_t i = static_cast<std::size_t>(rate) / 50; i < heard.size(); ++i) {
                const double ideal = 0.5 * std::sin(2 * M_PI * cycles * static_cast<double>(i) / frames);
                largest = std::max(largest, std::abs(ideal - static_cast<double>(heard[i])));
            }
            EXPECT_LT(largest, 3e-4) << rate << ' ' << length;
        }
    }
}

TEST(Player, SaysWhichCommentOfARecordingMakesNoSenseAndPlaysItWhole) {
    Rig rig;
    Bytes file = ReadFile(kTone);
    const std::string name = "PITCH=";
    const auto comment = std::search(file.begin(), file.end(), name.begin(), name.end());
    ASSERT_NE(comment, file.end());
    comment[static_cast<long>(name.size())] = '?';
    const std::string tag = "OggS";
    const auto page = std::find_end(file.begin(), comment, tag.begin(), tag.end());
    SetPageChecksum(file, static_cast<std::size_t>(page - file.begin()));
    const std::string path = rig.Path("false.ogg");
    WriteFile(path, file);
    TestPlayer user;
    testing::internal::CaptureStderr();
    EXPECT_EQ(user.Change(path), E_SUCCESS);
    EXPECT_EQ(user.Change(path), E_SUCCESS);
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_EQ(told.find("brevant: " + path + ": its comment PITCH=?"), 0U) << told;
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 1);
    std::shared_ptr<const host::Clip> clip;
    ASSERT_EQ(rig.sound->GetClips().Open(path, clip), host::ClipCache::Outcome::kOpened);
    EXPECT_EQ(clip->Shape().loopStart, 0U);
    EXPECT_EQ(clip->Shape().takes, 1U);
    // It ends as a recording does that says nothing.
    rig.Hear(60);
    user.Silence();
    EXPECT_TRUE(IsSilent(From(rig.Hear(4), kRamp)));
}

// The attacks of the package's tones end after 200 ms; at these rates they are resampled apart from what follows them.
TEST(Player, LeadsEachTakeIntoTheSustainedPartAtEveryRate) {
    for (const int rate : {22050, 44100, 48000, 96000}) {
        Rig rig({}, rate);
        TestPlayer user;
        const auto frames = [&](double seconds) { return static_cast<std::size_t>(seconds * rate); };
        std::vector<std::vector<float>> beginnings;
        for (int take = 0; take < 4; ++take) {
            user.Change(kTone);
            const auto heard = rig.Hear(rate / 2 / 256);
            const std::span<const float> seam = std::span(heard).subspan(frames(0.15), frames(0.1));
            const std::span<const float> later = std::span(heard).subspan(frames(0.3), frames(0.1));
            EXPECT_NEAR(LargestStep(seam), LargestStep(later), 0.05F * LargestStep(later)) << rate << ' ' << take;
            beginnings.emplace_back(heard.begin(), heard.begin() + static_cast<std::ptrdiff_t>(frames(0.02)));
            user.Silence();
            rig.Hear(rate / 2 / 256);
        }
        EXPECT_NE(beginnings[0], beginnings[1]) << rate;
        EXPECT_NE(beginnings[1], beginnings[2]) << rate;
        EXPECT_NE(beginnings[0], beginnings[2]) << rate;
        EXPECT_EQ(beginnings[0], beginnings[3]) << rate;
    }
}

TEST(Player, FollowsTheVolumeWithoutAClickAndNeverWraps) {
    Rig rig;
    const auto sine = Sine(44100, 440, 1);
    const auto path = WriteClip(rig, "sine.wav", sine);
    TestPlayer user;
    user.Change(path, 99);
    const auto loud = rig.Hear(20);
    EXPECT_NEAR(*std::max_element(loud.begin(), loud.end()), 0.99, 1e-3);
    user.player->SetVolume(0);
    const auto fading = rig.Hear(2);
    EXPECT_LE(LargestStep(fading), 1.2F * LargestStep(loud));
    EXPECT_TRUE(IsSilent(rig.Hear(5)));
    user.player->SetVolume(50);
    EXPECT_LE(LargestStep(rig.Hear(5)), LargestStep(loud));
    user.player->SetVolume(99);
    TestPlayer second;
    second.Change(path, 99);
    const auto both = rig.Hear(20);
    EXPECT_EQ(*std::max_element(both.begin(), both.end()), 1);
    EXPECT_GE(*std::min_element(both.begin(), both.end()), -1);
    EXPECT_LE(LargestStep(both), 2.2F * LargestStep(loud));
}

TEST(Player, SharesAClipUntilItsFileChanges) {
    Rig rig;
    host::ClipCache& clips = rig.sound->GetClips();
    const auto open = [&](const std::string& path) {
        std::shared_ptr<const host::Clip> clip;
        EXPECT_EQ(clips.Open(path, clip), host::ClipCache::Outcome::kOpened);
        return clip;
    };
    // A tone of the package is known to be whole before it is decoded, so that its first open is short.
    for (const auto& file : std::filesystem::directory_iterator(BREVANT_PACKAGE "data")) {
        const auto tone = open(file.path());
        EXPECT_LT(tone->Ready(), tone->Length() / 2) << file.path();
    }
    const auto path = WriteClip(rig, "clip.wav", Counting(5000));
    const auto first = open(path);
    EXPECT_EQ(open(path), first);
    WriteClip(rig, "clip.wav", Sine(5000, 3, 0.5));
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) + std::chrono::seconds(1));
    const auto second = open(path);
    EXPECT_NE(second, first);
    std::filesystem::remove(path);
    std::shared_ptr<const host::Clip> none;
    EXPECT_EQ(clips.Open(path, none), host::ClipCache::Outcome::kMissing);

    // What lies beyond the limit is given up, the oldest first, unless somebody plays it.
    constexpr std::size_t kLong = 50 * kRate;
    const std::vector<float> frames(kLong, 0.1F);
    std::vector<std::weak_ptr<const host::Clip>> opened;
    const auto kept = open(WriteClip(rig, "long-0.wav", frames));
    for (int i = 1; i < 10; ++i) opened.push_back(open(WriteClip(rig, "long-" + std::to_string(i) + ".wav", frames)));
    rig.Run(60 * host::kMicrosecondsPerSecond);
    std::size_t bytes = 0;
    for (const auto& clip : opened) bytes += clip.expired() ? 0 : kLong * sizeof(float);
    EXPECT_LE(bytes, host::ClipCache::kLimitBytes);
    EXPECT_GT(bytes, host::ClipCache::kLimitBytes / 2);
    EXPECT_FALSE(opened.back().expired());
    EXPECT_EQ(kept->Ready(), kLong);
}

TEST(Player, DoesNotReadARefusedFileAgainBeforeItChanges) {
    Rig rig;
    const auto open = [&rig](const std::string& path) {
        std::shared_ptr<const host::Clip> clip;
        return rig.sound->GetClips().Open(path, clip);
    };
    const auto path = WriteClip(rig, "clip.wav", Sine(500, 3, 0.5));
    const Bytes whole = ReadFile(path);
    WriteFile(path, Bytes(whole.size(), 'x'));
    const auto time = std::filesystem::last_write_time(path);
    EXPECT_EQ(open(path), host::ClipCache::Outcome::kUnsupported);
    // Whole now, but it looks the same from outside.
    WriteFile(path, whole);
    std::filesystem::last_write_time(path, time);
    EXPECT_EQ(open(path), host::ClipCache::Outcome::kUnsupported);
    std::filesystem::last_write_time(path, time + std::chrono::seconds(1));
    EXPECT_EQ(open(path), host::ClipCache::Outcome::kOpened);
}

// The device that comes back may ask for more at once.
TEST(Player, GoesOnInTimeWhileTheSpeakerIsLost) {
    Rig rig;
    const auto frames = Counting(30000);
    const auto path = WriteClip(rig, "clip.wav", frames);
    testing::internal::CaptureStderr();
    for (const int periodFrames : {0, 256, 8192}) {
        const bool isSimulated = periodFrames == 0;
        TestPlayer user;
        user.Change(path);
        rig.Hear(4);
        isSimulated ? rig.sound->GetOutput().SetSimulatedLoss(true) : rig.speaker.LoseDevice();
        EXPECT_TRUE(IsSilent(rig.Hear(10)));
        isSimulated ? rig.sound->GetOutput().SetSimulatedLoss(false) : rig.speaker.Restore(periodFrames);
        const auto heard = rig.Hear(60);
        EXPECT_EQ(FirstDifference(heard, From16Bit(frames), 0, 14 * 256), heard.size()) << periodFrames;
        user.Silence();
        rig.Hear(kRingPeriods);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "brevant: the sound output is gone; playing goes on when it is back\n"
              "brevant: the sound output is back\n");
}

TEST(Player, RecordsWhatTheSpeakerPlaysFromItsOpeningToItsClosing) {
    const std::string path = BREVANT_TEST_OUTPUT "sound/record.wav";
    std::vector<float> heard;
    const auto hear = [&](const std::vector<float>& more) { heard.insert(heard.end(), more.begin(), more.end()); };
    std::filesystem::create_directories(BREVANT_TEST_OUTPUT "sound");
    {
        host::Options options;
        options.record = path;
        Rig rig(options);
        TestPlayer user;
        hear(rig.Hear(10));
        user.Change(kTone);
        hear(rig.Hear(200));
        rig.sound->GetOutput().SetSimulatedLoss(true);
        hear(rig.Hear(20));
        rig.sound->GetOutput().SetSimulatedLoss(false);
        hear(rig.Hear(100));
        // It is a valid file already, should the program die now.
        EXPECT_GT(std::filesystem::file_size(path), 44U + 200U * 256U * 2U);
        rig.sound->Close();
        EXPECT_FALSE(rig.speaker.IsMixing());
        EXPECT_EQ(user.player->Stop(), E_SUCCESS);
        EXPECT_EQ(user.player->Close(), E_SUCCESS);
    }
    const auto recorded = measure::ReadSound(path);
    EXPECT_EQ(recorded.rate, kRate);
    EXPECT_EQ(recorded.samples, From16Bit(heard));

    host::Options options;
    options.record = BREVANT_TEST_OUTPUT "no-such-folder/record.wav";
    Rig rig(options);
    EXPECT_EQ(rig.problem, *options.record + ": No such file or directory");
    EXPECT_FALSE(rig.speaker.IsMixing());
}

}  // namespace sound_test
