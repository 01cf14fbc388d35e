// Measures whole processes from outside, and prints a line "row|column value" for each figure:
//   start COLUMN RUNS PROGRAM... [-- COLUMN PROGRAM...]...
//     nanoseconds from before the start until the program says "frame", and the largest resident bytes a moment later;
//     medians. Of several programs each is started in turn, so that all meet the same machine.
//   idle COLUMN SECONDS PROGRAM...
//     after a warm-up: the share of a core, the wake-ups a second of all threads, and the largest resident bytes
//   elapsed COLUMN RUNS PROGRAM...
//     nanoseconds from start to end; the median

#include <dirent.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kAfterFirstFrame = std::chrono::milliseconds(300);
constexpr auto kWarmUp = std::chrono::seconds(5);
constexpr double kBytesPerKibibyte = 1024;

double NanosecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double, std::nano>(Clock::now() - begin).count();
}

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void Report(const char* row, const std::string& column, double value) {
    std::printf("%s|%s %.6g\n", row, column.c_str(), value);
}

/// A process that was started, with a pipe from its standard output.
class Child {
public:
    explicit Child(char** program) {
        int ends[2] = {};
        if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        const int error = posix_spawn(&pid_, program[0], &actions, nullptr, program, environ);
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        output_ = ends[0];
        if (error != 0) throw std::runtime_error(std::string(program[0]) + " cannot be started");
    }
    ~Child() {
        if (pid_ > 0) kill(pid_, SIGKILL);
        close(output_);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    void AwaitFrame() const {
        std::string said;
        char byte = 0;
        while (said.find("frame\n") == std::string::npos) {
            if (read(output_, &byte, 1) != 1) throw std::runtime_error("the program ended before its first frame");
            said += byte;
        }
    }
    /// Ends it, unless it ends by itself, and returns its largest resident size in bytes.
    double End(int signal) {
        if (signal != 0) kill(pid_, signal);
        int status = 0;
        rusage usage{};
        wait4(pid_, &status, 0, &usage);
        pid_ = 0;
        if (signal == 0 && (!WIFEXITED(status) || WEXITSTATUS(status) != 0))
            throw std::runtime_error("the program failed");
        return static_cast<double>(usage.ru_maxrss) * kBytesPerKibibyte;
    }

    struct Work {
        double nanoseconds = 0;
        double wakeUps = 0;
    };
    /// What all of its threads have done up to now, to the nanosecond.
    [[nodiscard]] Work WorkDone() const {
        Work work;
        for (const auto& task : std::filesystem::directory_iterator("/proc/" + std::to_string(pid_) + "/task")) {
            double nanoseconds = 0;
            std::ifstream(task.path() / "schedstat") >> nanoseconds;
            work.nanoseconds += nanoseconds;
            std::ifstream status(task.path() / "status");
            for (std::string word; status >> word;) {
                double switches = 0;
                if (word == "voluntary_ctxt_switches:" && status >> switches) work.wakeUps += switches;
            }
        }
        return work;
    }

private:
    pid_t pid_ = 0;
    int output_ = -1;
};

struct Starter {
    std::string column;
    char** program = nullptr;
    std::vector<double> times;
    std::vector<double> sizes;
};

/// The programs that the arguments name; the separators between them become ends of argument lists.
std::vector<Starter> StartersOf(const std::string& column, char** arguments) {
    std::vector<Starter> starters{{column, arguments, {}, {}}};
    for (char** argument = arguments; *argument != nullptr; ++argument) {
        if (std::string_view(*argument) != "--") continue;
        if (argument[1] == nullptr || argument[2] == nullptr) throw std::runtime_error("-- needs COLUMN PROGRAM");
        *argument = nullptr;
        starters.push_back({argument[1], argument + 2, {}, {}});
        ++argument;
    }
    return starters;
}

void MeasureStart(std::vector<Starter> starters, int runs) {
    setenv("LD_PRELOAD", BENCH_FIRST_FRAME, 1);
    for (int i = 0; i < runs; ++i) {
        for (Starter& starter : starters) {
            const auto begin = Clock::now();
            Child child(starter.program);
            child.AwaitFrame();
            starter.times.push_back(NanosecondsSince(begin));
            std::this_thread::sleep_for(kAfterFirstFrame);
            starter.sizes.push_back(child.End(SIGKILL));
        }
    }
    for (const Starter& starter : starters) {
        Report("start", starter.column, Median(starter.times));
        Report("memory", starter.column, Median(starter.sizes));
    }
}

void MeasureIdle(const std::string& column, int seconds, char** program) {
    Child child(program);
    std::this_thread::sleep_for(kWarmUp);
    const Child::Work before = child.WorkDone();
    const auto begin = Clock::now();
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const Child::Work after = child.WorkDone();
    const double passed = NanosecondsSince(begin);
    Report("idle", column, (after.nanoseconds - before.nanoseconds) / passed);
    Report("wakeups", column, (after.wakeUps - before.wakeUps) / seconds);
    Report("memory playing", column, child.End(SIGKILL));
}

void MeasureElapsed(const std::string& column, int runs, char** program) {
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const auto begin = Clock::now();
        Child(program).End(0);
        times.push_back(NanosecondsSince(begin));
    }
    Report("elapsed", column, Median(times));
}

}  // namespace

int main(int argc, char* argv[]) {
    constexpr int kProgramAt = 4;
    if (argc <= kProgramAt) return 2;
    const std::string kind = argv[1];
    try {
        const int count = std::stoi(argv[3]);
        if (kind == "start") MeasureStart(StartersOf(argv[2], argv + kProgramAt), count);
        if (kind == "idle") MeasureIdle(argv[2], count, argv + kProgramAt);
        if (kind == "elapsed") MeasureElapsed(argv[2], count, argv + kProgramAt);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_process: %s: %s\n", argv[kProgramAt], error.what());
        return 1;
    }
}
