#pragma once

#include <string>
#include <vector>

#include "support/TemporaryFolder.h"
#include "support/TraceLines.h"

/// One run of the program itself, from its launcher to its exit status, in a folder of its own. Headless unless the
/// arguments say otherwise.
///
/// Where BREVANT_KEEP_RUNS names a folder, every performance that is played is kept there with all that came of it, so
/// that a browser's build can play it as well: tests/web/compare-renderings.mjs.
class ProgramRun {
public:
    /// Installs program and package into the run's folder; what is started from now on is that program with that
    /// package below "installed/share/brevant/", which a test may spoil.
    void Install();

    /// Starts `brevant` with these arguments and waits for its end.
    int Start(const std::vector<std::string>& arguments);

    /// Plays a performance's text headless, with a recording, a trace and screenshots in the run's folder and the data
    /// folder "data" there, plus further arguments.
    int Play(const std::string& performance, const std::vector<std::string>& further = {});

    [[nodiscard]] const TemporaryFolder& Folder() const { return folder_; }
    [[nodiscard]] std::string Output() const { return folder_.Read("stdout"); }
    [[nodiscard]] std::string Errors() const { return folder_.Read("stderr"); }

    [[nodiscard]] TraceLines ReadTrace() const { return ReadTraceLines(folder_.Read("trace.jsonl")); }
    /// Those lines of the trace that are of this kind and event.
    [[nodiscard]] TraceLines ReadTrace(const std::string& what, const std::string& event) const;
    /// What those lines say in that field.
    template <typename Value = std::string>
    [[nodiscard]] std::vector<Value> Told(const std::string& what, const std::string& event,
                                          const std::string& field) const {
        std::vector<Value> values;
        for (const auto& line : ReadTrace(what, event)) values.push_back(line.at(field));
        return values;
    }
    [[nodiscard]] std::vector<double> TimesOf(const std::string& what, const std::string& event) const {
        return Told<double>(what, event, "ms");
    }
    /// The recording's samples, -1..1, at 44100 Hz.
    [[nodiscard]] std::vector<float> ReadRecording() const;

private:
    [[nodiscard]] std::string FolderToKeep() const;

    std::string program_ = BREVANT_PROGRAM;
    TemporaryFolder folder_;
};
