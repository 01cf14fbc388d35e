// The phone around the application: a loop that does not wait, and what becomes of fingers in the background.

#include "runtime/Phone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "backend/headless/VirtualClock.h"
#include "support/ProgramRun.h"
#include "support/TemporaryFolder.h"
#include "support/TestPhone.h"

extern "C" int OspMain(int argc, char* argv[]);

namespace {

using host::Microseconds;

// Its surroundings own the thread, as a browser does: the loop takes the client and returns.
struct ReturningLoop final : host::LoopDriver {
    void Run(host::LoopClient& taken) override { client = &taken; }
    void Wake() noexcept override {}

    host::LoopClient* client = nullptr;
};

}  // namespace

TEST(Phone, LivesOnWhereTheLoopReturnsAtOnce) {
    const TemporaryFolder folder;
    folder.Write("tune.performance", "3000 breath 0.8\n3500 key back press\n3501 key back release\n");
    host::Options options;
    options.performance = folder / "tune.performance";
    options.trace = folder / "trace.jsonl";
    ReturningLoop loop;
    host::VirtualClock* clock = nullptr;
    TestPhone phone(options, BREVANT_PACKAGE, [&](const host::BackendParts& parts) {
        clock = dynamic_cast<host::VirtualClock*>(&parts.clock);
        return host::BackendParts{parts.clock,      loop,         parts.window, parts.painter, parts.speaker,
                                  parts.microphone, parts.storage};
    });
    std::vector<int> ends;
    phone.GetPhone().Run(OspMain, [&ends](int status) { ends.push_back(status); });
    // The entry point has returned, and the application is alive.
    ASSERT_NE(nullptr, loop.client);
    EXPECT_TRUE(ends.empty());

    host::LoopClient& client = *loop.client;
    for (int step = 0; step < 10'000 && !client.HasEnded(); ++step) {
        const Microseconds due = client.RunStep(clock->Now());
        if (due != host::LoopClient::kNever) clock->AdvanceTo(due);
    }
    EXPECT_EQ(std::vector<int>{0}, ends);
    EXPECT_EQ(host::LoopClient::kNever, client.RunStep(clock->Now())) << "a step too many does nothing";

    std::vector<std::string> told;
    for (const auto& line : ReadTraceLines(folder.Read("trace.jsonl"))) {
        if (line["what"] == "player" && line["event"] == "open") told.push_back(line["file"]);
        if (line["what"] == "app") told.push_back(line["event"]);
    }
    EXPECT_EQ((std::vector<std::string>{"initialized", "foreground", "ocarina_5_00.ogg", "terminating", "ended"}),
              told);
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
