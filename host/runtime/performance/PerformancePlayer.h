#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "backend/Storage.h"
#include "runtime/performance/Performance.h"
#include "runtime/screen/input/Fingers.h"

namespace host {

class Package;
class Phone;
class Runtime;

/// Does a performance's actions to the phone at their times. UI thread only.
class PerformancePlayer {
public:
    enum class AtEnd { kEndProgram, kGoOn };

    /// Whether every named control is in the package and screenshots have a folder, which is made when it is missing.
    /// False with one line in `problem`.
    [[nodiscard]] static bool Check(const Performance& performance, const Package& package, Storage& storage,
                                    const std::string& screenshotFolder, std::string& problem);

    PerformancePlayer(Phone& phone, std::shared_ptr<const Performance> performance, std::string screenshotFolder,
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
    void Do(const PeakAction& action, int line);
    void Do(const RingtoneAction& action, int line);
    void Do(const PickAction& action, int line);
    void Do(const StateAction& action, int line);
    void Do(const DeviceAction& action, int line);
    void Do(const ScreenshotAction& action, int line);
    void Do(const QuitAction& action, int line);

    void Complain(int line, const std::string& reason);
    [[nodiscard]] std::string Place(int line) const;
    /// The finger that presses the named control; one a name, beside the ten that a file numbers itself.
    [[nodiscard]] FingerId FingerFor(const std::string& control);

    Phone& phone_;
    Runtime& runtime_;
    std::shared_ptr<const Performance> performance_;
    std::string screenshotFolder_;
    AtEnd atEnd_;
    std::size_t next_ = 0;
    Microseconds start_ = 0;
    std::map<std::string, std::int64_t> fingers_;
};

}  // namespace host
