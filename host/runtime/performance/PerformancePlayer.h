#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>

#include "runtime/performance/Performance.h"

namespace host {

class Runtime;

/// Does a performance's actions to the phone at their times. UI thread only.
class PerformancePlayer {
public:
    enum class AtEnd { kEndProgram, kGoOn };

    PerformancePlayer(Runtime& runtime, std::shared_ptr<const Performance> performance, std::string screenshotFolder,
                      AtEnd atEnd);
    PerformancePlayer(const PerformancePlayer&) = delete;
    PerformancePlayer& operator=(const PerformancePlayer&) = delete;

    /// Arms the first action; times count from now.
    void Start();

private:
    void ArmNext();
    void DoNext();

    void Do(const TouchAction& action, int line);
    void Do(const PressAction& action, int line);
    void Do(const ReleaseAction& action, int line);
    void Do(const TapAction& action, int line);
    void Do(const KeyAction& action, int line);
    void Do(const BreathAction& action, int line);
    void Do(const RingtoneAction& action, int line);
    void Do(const PickAction& action, int line);
    void Do(const StateAction& action, int line);
    void Do(const DeviceAction& action, int line);
    void Do(const ScreenshotAction& action, int line);
    void Do(const QuitAction& action, int line);

    void Complain(int line, const std::string& reason);
    // The number of the finger that presses the named control; one a name, beside the ten that a file numbers itself.
    [[nodiscard]] std::int64_t FingerFor(const std::string& control);

    Runtime& runtime_;
    std::shared_ptr<const Performance> performance_;
    std::string screenshotFolder_;
    AtEnd atEnd_;
    std::size_t next_ = 0;
    Microseconds start_ = 0;
    std::map<std::string, std::int64_t> fingers_;
};

}  // namespace host
