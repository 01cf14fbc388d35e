#pragma once

#include <functional>
#include <memory>
#include <string>

#include "backend/headless/HeadlessBackend.h"
#include "runtime/Phone.h"
#include "support/TemporaryFolder.h"

/// A phone without a display, with a virtual clock and a data folder of its own, inside the test's process. A test says
/// what is to happen when, then runs an application on it; nothing waits for real time.
class TestPhone {
public:
    /// Puts parts of a test's own in the place of the headless ones.
    using Alteration = std::function<host::BackendParts(const host::BackendParts& headless)>;
    explicit TestPhone(host::Options options = {}, const std::string& packageRoot = BREVANT_PACKAGE,
                       Alteration alter = nullptr);
    ~TestPhone();

    [[nodiscard]] host::Phone& GetPhone() { return *phone_; }
    [[nodiscard]] host::Runtime& GetRuntime() { return phone_->GetRuntime(); }
    [[nodiscard]] host::Screen& GetScreen() { return GetRuntime().GetScreen(); }
    [[nodiscard]] const TemporaryFolder& Data() const { return data_; }

    /// Runs `action` that many milliseconds after the start.
    void At(int ms, std::function<void()> action);
    /// Runs the ocarina from its entry point until `ms`.
    void RunOcarina(int ms);
    /// Runs an application with an empty frame until `ms`, for tests of the framework by itself.
    void RunEmpty(int ms);

private:
    void Run(host::EntryPoint entryPoint, int ms);

    TemporaryFolder data_;
    std::unique_ptr<host::Phone> phone_;
};
