#pragma once

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "backend/headless/HeadlessBackend.h"
#include "backend/mix/LocalSpeaker.h"
#include "runtime/Runtime.h"
#include "runtime/sound/Sound.h"
#include "support/TemporaryFolder.h"

/// A phone whose loop and whose speaker the bench turns by hand, one period after another: what is measured in between
/// runs as it does in a handler of the program. There is no application. UI thread only.
class SoundPhone {
public:
    SoundPhone() : backend_({BREVANT_PACKAGE, data_.Path()}) {
        std::string problem;
        if (!runtime_.Prepare(problem) || !runtime_.Open(listener_, problem)) throw std::runtime_error(problem);
        runtime_.GetSound().Open();
    }

    /// A folder that is gone with the phone.
    [[nodiscard]] const TemporaryFolder& Folder() const { return data_; }

    /// The speaker takes its next period, then everything that is due by now runs. True when something can be heard in
    /// the period.
    bool RunPeriod() {
        std::array<float, kPeriodFrames> frames{};
        backend_.speaker.Pull(frames);
        now_ += kPeriodFrames * host::kMicrosecondsPerSecond / kRate;
        runtime_.GetLoop().RunDue(now_, kIsEnding);
        return std::any_of(frames.begin(), frames.end(), [](float frame) { return frame != 0; });
    }
    void RunPeriods(int count) {
        for (int i = 0; i < count; ++i) RunPeriod();
    }

    static constexpr int kRate = 44'100;
    static constexpr int kPeriodFrames = 256;
    /// More than it takes until a recording that was opened is decoded to its end.
    static constexpr int kPeriodsToDecode = 5 * kRate / kPeriodFrames;

private:
    static constexpr bool kIsEnding = false;

    struct Speaker final : host::LocalSpeaker {
        void Open(host::SpeakerClient& client) override { StartMix(client, kRate, kPeriodFrames); }
        void Close() noexcept override { StopMix(); }
        [[nodiscard]] int Rate() const noexcept override { return kRate; }
        [[nodiscard]] int PeriodFrames() const noexcept override { return kPeriodFrames; }
        [[nodiscard]] std::uint64_t Underruns() const noexcept override { return 0; }
    };

    struct ByHand final : host::Backend, host::LoopDriver {
        explicit ByHand(const host::BackendOptions& options) : headless(host::CreateHeadlessBackend(options)) {}

        host::BackendParts Parts() override {
            const host::BackendParts parts = headless->Parts();
            return {parts.clock, *this, parts.window, parts.painter, speaker, parts.microphone, parts.storage};
        }

        void Run(host::LoopClient&) override {}
        void Wake() noexcept override {}

        std::unique_ptr<host::Backend> headless;
        Speaker speaker;
    };

    TemporaryFolder data_;
    ByHand backend_;
    struct Listener final : host::WindowListener {
        void OnVisibilityChanged(host::Visibility) override {}
        void OnCloseRequested() override {}
    };
    Listener listener_;
    const host::Options options_;
    host::Runtime runtime_{backend_.Parts(), options_, host::MicrophoneSupport::kNone};
    host::Microseconds now_ = 0;
};
