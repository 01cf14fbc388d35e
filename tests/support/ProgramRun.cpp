#include "support/ProgramRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "package/SoundMeasure.h"

void ProgramRun::Install() {
    namespace fs = std::filesystem;
    const fs::path installed = folder_ / "installed";
    fs::create_directories(installed / "bin");
    fs::create_directories(installed / "share");
    program_ = installed / "bin" / "brevant";
    fs::copy(BREVANT_PROGRAM, program_);
    fs::copy(BREVANT_PACKAGE, installed / "share" / "brevant", fs::copy_options::recursive);
}

int ProgramRun::Start(const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {program_};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const std::string outputPath = folder_ / "stdout";
    const std::string errorsPath = folder_ / "stderr";

    const pid_t child = fork();
    if (child == 0) {
        constexpr int kReadable = 0644;
        dup2(open(outputPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, kReadable), STDOUT_FILENO);
        dup2(open(errorsPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, kReadable), STDERR_FILENO);
        execv(pointers.front(), pointers.data());
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int ProgramRun::Play(const std::string& performance, const std::vector<std::string>& further) {
    folder_.Write("test.performance", performance);
    std::vector<std::string> arguments = {"--backend",     "headless",
                                          "--data",        folder_ / "data",
                                          "--performance", folder_ / "test.performance",
                                          "--record",      folder_ / "recording.wav",
                                          "--trace",       folder_ / "trace.jsonl",
                                          "--screenshots", folder_.Path(),
                                          "--language",    "en"};
    arguments.insert(arguments.end(), further.begin(), further.end());
    const std::string kept = FolderToKeep();
    if (kept.empty()) return Start(arguments);

    namespace fs = std::filesystem;
    const auto copyHere = [&](const std::string& path, const std::string& name) {
        std::error_code error;
        fs::copy(path, fs::path(kept) / name, fs::copy_options::recursive, error);
    };
    fs::create_directories(kept);
    copyHere(folder_ / "data", "data-before");
    const int status = Start(arguments);
    std::ofstream list(kept + "/arguments");
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        list << arguments[i] << '\n';
        const bool isInput = i > 0 && (arguments[i - 1] == "--performance" || arguments[i - 1] == "--breath");
        if (isInput) copyHere(arguments[i], fs::path(arguments[i]).filename());
    }
    for (const char* name : {"trace.jsonl", "recording.wav"}) copyHere(folder_ / name, name);
    std::ofstream(kept + "/status") << status;
    return status;
}

// Empty when nothing is kept, or when the package is not what the browser's build has.
std::string ProgramRun::FolderToKeep() const {
    const char* const folder = std::getenv("BREVANT_KEEP_RUNS");
    if (folder == nullptr || program_ != BREVANT_PROGRAM) return {};
    static int runs = 0;
    const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info();
    std::string name = test == nullptr ? std::string("run") : std::string(test->test_suite_name()) + '.' + test->name();
    std::replace(name.begin(), name.end(), '/', '-');
    return std::string(folder) + '/' + name + '-' + std::to_string(++runs);
}

TraceLines ProgramRun::ReadTrace(const std::string& what, const std::string& event) const {
    TraceLines found;
    for (const auto& line : ReadTrace()) {
        if (line["what"] == what && line.value("event", "") == event) found.push_back(line);
    }
    return found;
}

std::vector<float> ProgramRun::ReadRecording() const {
    const measure::Sound sound = measure::ReadSound(folder_ / "recording.wav");
    EXPECT_EQ(44100, sound.rate);
    return sound.samples;
}
