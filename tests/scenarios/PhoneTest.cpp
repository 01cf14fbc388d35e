// The phone around the application: a loop that does not wait, and what becomes of fingers in the background.

#include "runtime/Phone.h"

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "backend/headless/HeadlessBackend.h"
#include "backend/headless/VirtualClock.h"
#include "shared/JLib.h"
#include "support/ProgramRun.h"
#include "support/TemporaryFolder.h"

extern "C" int OspMain(int argc, char* argv[]);

namespace {

using host::Microseconds;

// Its surroundings own the thread, as a browser does: the loop takes the client and returns.
class ReturningBackend final : public host::Backend, public host::LoopDriver {
public:
    explicit ReturningBackend(const host::BackendOptions& options) : headless_(host::CreateHeadlessBackend(options)) {}

    [[nodiscard]] host::BackendParts Parts() override {
        const host::BackendParts parts = headless_->Parts();
        return {parts.clock, *this, parts.window, parts.painter, parts.speaker, parts.microphone, parts.storage};
    }
    void Run(host::LoopClient& client) override { client_ = &client; }
    void Wake() noexcept override {}

    static std::unique_ptr<host::Backend> Create(const host::BackendOptions& options) {
        auto backend = std::make_unique<ReturningBackend>(options);
        latest = backend.get();
        return backend;
    }
    static inline ReturningBackend* latest = nullptr;

    host::LoopClient* client_ = nullptr;

private:
    std::unique_ptr<host::Backend> headless_;
};

}  // namespace

TEST(Phone, LivesOnWhereTheLoopReturnsAtOnce) {
    const TemporaryFolder folder;
    folder.Write("tune.performance", "3000 breath 0.8\n3500 key back press\n3501 key back release\n");
    JLib::__strRegFilePath.Clear();
    host::Options options;
    options.rest = {"brevant"};
    options.performance = folder / "tune.performance";
    options.trace = folder / "trace.jsonl";
    const host::BackendEntry entry{"returning", host::Attendance::kAttended, host::MicrophoneSupport::kNone,
                                   host::IsHeadlessAvailable, ReturningBackend::Create};
    host::Phone phone(entry, {BREVANT_PACKAGE, folder / "data/"}, options);
    std::string problem;
    ASSERT_TRUE(phone.Open(problem)) << problem;
    std::vector<int> ends;
    phone.Run(OspMain, [&ends](int status) { ends.push_back(status); });
    // The entry point has returned, and the application is alive.
    ASSERT_NE(nullptr, ReturningBackend::latest->client_);
    EXPECT_TRUE(ends.empty());

    host::LoopClient& client = *ReturningBackend::latest->client_;
    auto& clock = dynamic_cast<host::VirtualClock&>(ReturningBackend::latest->Parts().clock);
    for (int step = 0; step < 10'000 && !client.HasEnded(); ++step) {
        const Microseconds due = client.RunStep(clock.Now());
        if (due != host::LoopClient::kNever) clock.AdvanceTo(due);
    }
    EXPECT_EQ(std::vector<int>{0}, ends);
    EXPECT_EQ(host::LoopClient::kNever, client.RunStep(clock.Now())) << "a step too many does nothing";

    std::vector<std::string> told;
    std::istringstream lines(folder.Read("trace.jsonl"));
    for (std::string line; std::getline(lines, line);) {
        const auto thing = nlohmann::json::parse(line);
        if (thing["what"] == "player" && thing["event"] == "open") told.push_back(thing["file"]);
        if (thing["what"] == "app") told.push_back(thing["event"]);
    }
    EXPECT_EQ((std::vector<std::string>{"initialized", "foreground", "ocarina_5_00.ogg", "terminating", "ended"}),
              told);
    JLib::__strRegFilePath.Clear();
}

// A tone goes on in the background; the finger that was down is lifted when the application is back, and only then.
TEST(Phone, LiftsFingersWhenTheApplicationIsBackInTheForeground) {
    ProgramRun run;
    ASSERT_EQ(
        0, run.Play("2600 breath 0.8\n3000 press IDC_PANEL_HOLE 0.25 0.25\n3500 background\n"
                    "4000 release IDC_PANEL_HOLE\n4100 press IDC_PANEL_HOLE 0.75 0.75\n5000 foreground\n5500 quit\n"));
    std::vector<std::string> told;
    for (const auto& line : run.ReadTrace()) {
        const double ms = line["ms"];
        if (ms < 2990) continue;
        if (line["what"] == "player" && line["event"] == "open") told.push_back(line["file"]);
        if (line["what"] == "app" || line["what"] == "microphone") told.push_back(line["event"]);
    }
    EXPECT_EQ((std::vector<std::string>{"ocarina_4_01.ogg", "background", "stop", "foreground", "ocarina_5_00.ogg",
                                        "start", "terminating", "stop", "ended"}),
              told);
}
