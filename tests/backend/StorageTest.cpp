#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "backend/posix/PosixStorage.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace host;
namespace fs = std::filesystem;

constexpr std::size_t kLimit = 1000;

std::span<const std::byte> Bytes(const std::string& text) {
    return std::as_bytes(std::span(text));
}

class StorageTest : public ::testing::Test {
protected:
    [[nodiscard]] ReadOutcome Read(const std::string& name, std::size_t limit = kLimit) {
        return storage_.Read(folder_ / name, limit, content_);
    }
    [[nodiscard]] std::string Content() const {
        return {reinterpret_cast<const char*>(content_.data()), content_.size()};
    }
    [[nodiscard]] unsigned ModeOf(const std::string& name) const {
        struct stat status {};
        return ::stat((folder_ / name).c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
    }
    /// How many entries of any kind the folder has: nothing but the files may be left in it.
    [[nodiscard]] std::ptrdiff_t Entries(const std::string& name = "") const {
        return std::distance(fs::directory_iterator(folder_ / name), fs::directory_iterator());
    }

    /// Does the same here and in another process at once; true if both can.
    [[nodiscard]] static bool DoTwice(const std::function<bool(bool isChild)>& work) {
        const pid_t child = ::fork();
        if (child == 0) ::_exit(work(true) ? 0 : 1);
        const bool isDone = work(false);
        int status = 1;
        return ::waitpid(child, &status, 0) == child && status == 0 && isDone;
    }

    TemporaryFolder folder_;
    PosixStorage storage_{folder_.Path(), folder_ / "data/"};
    std::vector<std::byte> content_;
};

TEST_F(StorageTest, ReadsRegularFilesUpToTheLimitAndNothingElse) {
    folder_.Write("full", std::string(kLimit, 'x'));
    folder_.Write("long", std::string(kLimit + 1, 'x'));
    folder_.Write("empty", "");
    fs::create_directory(folder_ / "folder");
    fs::create_symlink("full", folder_ / "link");
    fs::create_symlink("circle", folder_ / "circle");
    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    const struct {
        const char* name;
        ReadOutcome expected;
        std::size_t bytes;
    } cases[] = {
        {"full", ReadOutcome::kRead, kLimit},  {"link", ReadOutcome::kRead, kLimit},
        {"empty", ReadOutcome::kRead, 0},      {"long", ReadOutcome::kTooLarge, 0},
        {"missing", ReadOutcome::kMissing, 0}, {"full/below", ReadOutcome::kMissing, 0},
        {"folder", ReadOutcome::kNotAFile, 0}, {"pipe", ReadOutcome::kNotAFile, 0},
        {"circle", ReadOutcome::kFailed, 0},
    };
    for (const auto& row : cases) {
        content_.assign(3, std::byte{1});
        EXPECT_EQ(Read(row.name), row.expected) << row.name;
        EXPECT_EQ(content_.size(), row.bytes) << row.name;
        EXPECT_EQ(storage_.Stat(folder_ / row.name).has_value(),
                  row.expected == ReadOutcome::kRead || row.expected == ReadOutcome::kTooLarge)
            << row.name;
    }
    EXPECT_EQ(storage_.Stat(folder_ / "long")->bytes, kLimit + 1);
    // A file that does not tell its size ahead is read to its end all the same.
    EXPECT_EQ(storage_.Read("/proc/self/status", 1 << 20, content_), ReadOutcome::kRead);
    EXPECT_EQ(Content().rfind("Name:", 0), 0U);
    EXPECT_EQ(storage_.Read("/proc/self/status", 10, content_), ReadOutcome::kTooLarge);
    EXPECT_EQ(storage_.List(folder_.Path()), (std::vector<std::string>{"empty", "full", "link", "long"}));
    EXPECT_TRUE(storage_.List(folder_ / "missing").empty());
}

TEST_F(StorageTest, ReplacesAFileWholeAndKeepsWhatItsUserMadeOfIt) {
    const std::string path = storage_.DataRoot() + "deeper/info.ini";
    ASSERT_TRUE(storage_.Replace(path, Bytes("old and long")));  // Makes the folders, too.
    EXPECT_EQ(ModeOf("data/deeper/info.ini"), 0600U);
    EXPECT_EQ(ModeOf("data"), 0700U);
    const auto before = storage_.Stat(path);
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    fs::create_hard_link(path, folder_ / "backup");
    ASSERT_TRUE(storage_.Replace(path, Bytes("new")));
    EXPECT_EQ(folder_.Read("data/deeper/info.ini"), "new");
    EXPECT_EQ(folder_.Read("backup"), "old and long");  // The old file itself was not written to.
    EXPECT_EQ(ModeOf("data/deeper/info.ini"), 0644U);
    EXPECT_NE(storage_.Stat(path), before);
    EXPECT_EQ(Entries("data/deeper"), 1);
}

TEST_F(StorageTest, ReplacesWhatALinkLeadsToAndLeavesTheLink) {
    fs::create_directory(folder_ / "real");
    folder_.Write("real/target", "old");
    const struct {
        const char* link;
        std::string leadsTo;
        const char* target;
    } cases[] = {
        {"absolute", folder_ / "real/target", "real/target"},
        {"chain", "absolute", "real/target"},
        {"relative", "real/target", "real/target"},
        {"dangling", "real/new", "real/new"},
    };
    for (const auto& row : cases) {
        fs::create_symlink(row.leadsTo, folder_ / row.link);
        ASSERT_TRUE(storage_.Replace(folder_ / row.link, Bytes(row.link))) << row.link;
        EXPECT_TRUE(fs::is_symlink(folder_ / row.link)) << row.link;
        EXPECT_EQ(folder_.Read(row.target), row.link);
    }
    fs::create_symlink("circle", folder_ / "circle");
    EXPECT_FALSE(storage_.Replace(folder_ / "circle", Bytes("x")));
}

TEST_F(StorageTest, LeavesTheOldFileAloneWhenItCannotWrite) {
    folder_.Write("file", "old");
    fs::create_directory(folder_ / "folder");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto limitFileSize = [&](rlim_t bytes) {
        const rlimit limit{bytes, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    };
    const auto nothing = [] {};
    const struct {
        const char* fault;
        std::string path;
        std::function<void()> begin;
        std::function<void()> end;
    } cases[] = {
        // The system cuts the write short and then refuses, as a full disk does.
        {"full", folder_ / "file", [&] { limitFileSize(4096); }, [&] { limitFileSize(before.rlim_cur); }},
        {"folder in its place", folder_ / "folder", nothing, nothing},
        {"file above it", folder_ / "file/below", nothing, nothing},
        {"read-only file system", "/proc/version", nothing, nothing},
        {"no folder can be made", "/proc/no/such/file", nothing, nothing},
        {"no name", folder_.Path(), nothing, nothing},
        {"empty path", "", nothing, nothing},
        {"cut short by a NUL", (folder_ / "file") + std::string("\0x", 2), nothing, nothing},
        {"name too long", folder_ / std::string(250, 'n'), nothing, nothing},
    };
    for (const auto& row : cases) {
        row.begin();
        const bool isReplaced = storage_.Replace(row.path, Bytes(std::string(10'000, 'x')));
        row.end();
        EXPECT_FALSE(isReplaced) << row.fault;
        EXPECT_EQ(folder_.Read("file"), "old") << row.fault;
        EXPECT_EQ(Entries(), 2) << row.fault;
    }
}

TEST_F(StorageTest, LeavesAFileAndAFolderAloneThatMayNotBeWritten) {
    if (::geteuid() == 0 && ::seteuid(65534) != 0) GTEST_SKIP() << "the superuser may write everything";
    ::chmod(folder_.Path().c_str(), 0755);
    const TemporaryFolder own;
    own.Write("kept", "old");
    ::chmod((own / "kept").c_str(), 0444);
    EXPECT_FALSE(storage_.Replace(own / "kept", Bytes("new")));
    EXPECT_EQ(own.Read("kept"), "old");
    ::chmod(own.Path().c_str(), 0555);
    EXPECT_FALSE(storage_.Replace(own / "other", Bytes("new")));
    ::chmod(own.Path().c_str(), 0755);
    EXPECT_EQ(own.Read("other"), "");
    fs::remove_all(own.Path());
    ASSERT_EQ(::seteuid(::getuid()), 0);
}

TEST_F(StorageTest, RemovesWhatAKilledWriteLeftBehind) {
    folder_.Write(".info.ini.new-a1B2c3", "half of a fi");
    folder_.Write(".info.ini.new", "the user's own");
    folder_.Write(".other.ini.new-a1B2c3", "another file's");
    ASSERT_TRUE(storage_.Replace(folder_ / "info.ini", Bytes("whole")));
    EXPECT_EQ(storage_.List(folder_.Path()),
              (std::vector<std::string>{".info.ini.new", ".other.ini.new-a1B2c3", "info.ini"}));
}

// Two programs that keep their settings in one folder, each taking the other's new file for a leftover.
TEST_F(StorageTest, LosesNoWriteToAnotherProcessThatCleansUp) {
    constexpr int kWrites = 200;
    EXPECT_TRUE(DoTwice([this](bool isChild) {
        for (int i = 0; i < kWrites; ++i) {
            if (!storage_.Replace(folder_ / "info.ini", Bytes(isChild ? "the child's" : "the parent's"))) return false;
        }
        return true;
    }));
    EXPECT_EQ(Entries(), 1);
}

// Two programs that share their settings: each adds to what the other one has written.
TEST_F(StorageTest, UpdatesWhatAnotherProcessUpdatesWithoutLosingAnything) {
    constexpr int kUpdates = 200;
    EXPECT_TRUE(DoTwice([this](bool isChild) {
        const auto add = [isChild](std::span<const std::byte> content) {
            std::vector<std::byte> longer(content.begin(), content.end());
            longer.push_back(static_cast<std::byte>(isChild ? 'c' : 'p'));
            return longer;
        };
        for (int i = 0; i < kUpdates; ++i) {
            if (!storage_.Update(folder_ / "data/info.ini", kLimit, add)) return false;
        }
        return true;
    }));
    const std::string content = folder_.Read("data/info.ini");
    EXPECT_EQ(std::count(content.begin(), content.end(), 'c'), kUpdates);
    EXPECT_EQ(std::count(content.begin(), content.end(), 'p'), kUpdates);
    EXPECT_EQ(Entries("data"), 1);
    // What is to stay, or cannot be read, does.
    EXPECT_FALSE(storage_.Update(folder_ / "data/info.ini", kLimit, [](auto) { return std::nullopt; }));
    EXPECT_FALSE(storage_.Update(folder_ / "data/info.ini", 1, [](auto) { return std::vector<std::byte>(); }));
    EXPECT_EQ(folder_.Read("data/info.ini"), content);
}

TEST_F(StorageTest, WritesAFileAsItGrowsAndTellsWhatIsLost) {
    folder_.Write("old", "what was there");
    std::string problem;
    {
        // Opened and never written to, as when something else is refused: nothing is lost and nothing is made.
        const auto old = storage_.OpenOutput(folder_ / "old", problem);
        const auto made = storage_.OpenOutput(folder_ / "made", problem);
        fs::create_symlink("linked", folder_ / "link");
        const auto linked = storage_.OpenOutput(folder_ / "link", problem);
        ASSERT_TRUE(old != nullptr && made != nullptr && linked != nullptr) << problem;
        EXPECT_TRUE(fs::exists(folder_ / "linked"));
    }
    EXPECT_EQ(folder_.Read("old"), "what was there");
    EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
    EXPECT_EQ(Entries(), 2);

    auto file = storage_.OpenOutput(folder_ / "old", problem);
    ASSERT_NE(file, nullptr);
    EXPECT_TRUE(file->Append(Bytes("head")));
    EXPECT_TRUE(file->Append(Bytes(" and tail")));
    EXPECT_TRUE(file->Overwrite(1, Bytes("EA")));
    EXPECT_EQ(folder_.Read("old"), "hEAd and tail");
    EXPECT_TRUE(file->Close());

    const auto full = storage_.OpenOutput("/dev/full", problem);
    ASSERT_NE(full, nullptr);
    EXPECT_FALSE(full->Append(Bytes("lost")));
    EXPECT_EQ(full->Problem(), "No space left on device");
    EXPECT_FALSE(full->Append(Bytes("after the first loss")));
    EXPECT_FALSE(full->Close());

    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    fs::create_directory(folder_ / "folder");
    for (const char* refused : {"pipe", "folder", "no/such/folder"}) {
        problem.clear();
        EXPECT_EQ(storage_.OpenOutput(folder_ / refused, problem), nullptr) << refused;
        EXPECT_FALSE(problem.empty()) << refused;
    }
}

TEST_F(StorageTest, ReadsAFilePieceByPieceAndWaitsForNone) {
    folder_.Write("file", "0123456789");
    std::string problem;
    const auto file = storage_.OpenInput(folder_ / "file", problem);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Size(), 10U);
    content_.resize(4);
    EXPECT_EQ(file->Read(3, content_), 4U);
    EXPECT_EQ(Content(), "3456");
    EXPECT_EQ(file->Read(8, content_), 2U);
    EXPECT_EQ(file->Read(10, content_), 0U);

    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    const struct {
        std::string path;
        const char* problem;
    } refused[] = {{folder_ / "missing", "No such file or directory"},
                   {folder_ / "pipe", "it is not a regular file"},
                   {folder_.Path(), "it is not a regular file"}};
    for (const auto& row : refused) {
        EXPECT_EQ(storage_.OpenInput(row.path, problem), nullptr) << row.path;
        EXPECT_EQ(problem, row.problem);
    }
}

}  // namespace
