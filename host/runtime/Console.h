#pragma once

#include <cstdio>
#include <set>
#include <string>
#include <string_view>

namespace host {

/// A text for a terminal: what would control it (C0, DEL and, in UTF-8, C1) stands as \xNN.
[[nodiscard]] std::string Printable(std::string_view text);

/// The few lines that the program says on stderr about its surroundings. Each is said once in the program's life, so
/// that a fault that repeats does not flood a terminal. UI thread only.
class Console {
public:
    void SayOnce(const std::string& line) {
        if (!said_.insert(line).second) return;
        std::fprintf(stderr, "brevant: %s\n", Printable(line).c_str());
    }
    /// As SayOnce, of something that was asked for and is lost: the program's exit status tells of it, too.
    void ReportLoss(const std::string& line) {
        hasLoss_ = true;
        SayOnce(line);
    }
    [[nodiscard]] bool HasLoss() const noexcept { return hasLoss_; }

private:
    std::set<std::string> said_;
    bool hasLoss_ = false;
};

}  // namespace host
