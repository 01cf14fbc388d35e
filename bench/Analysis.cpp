// The analysis of one block of the microphone by the ocarina's own code, with all that it does for a block: it is
// measured, reported to a listener, and its buffer is queued again.

#include "AnalysisSignals.h"
#include "SoundPhone.h"
#include "Tizen/Base/ByteBuffer.h"
#include "sound/MikeInputCheck.h"

namespace {

class Analysis final : private MikeEventListener {
public:
    Analysis() { buffer_.Construct(static_cast<int>(kBlockBytes)); }

    void Take(const Block& block) {
        std::copy(block.begin(), block.end(), buffer_.GetPointer());
        check_.OnAudioInBufferIsFilled(&buffer_);
    }

private:
    void OnMikeStateChanged() override {}
    void OnMikeLevelChanged(unsigned char peak, float crossingRate) override {
        benchmark::DoNotOptimize(peak);
        benchmark::DoNotOptimize(crossingRate);
    }

    // Not prepared: the buffer is given back to nobody, so that there can be any number of blocks.
    MikeInputCheck check_{this};
    Tizen::Base::ByteBuffer buffer_;
};

const bool kIsRegistered = RegisterForEverySignal("ours", [] { return std::make_unique<Analysis>(); });

}  // namespace
