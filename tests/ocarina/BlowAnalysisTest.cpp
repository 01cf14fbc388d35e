// What the ocarina hears in a block of the microphone.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Tizen/Base/ByteBuffer.h"
#include "sound/MikeInputCheck.h"

namespace {

using Tizen::Base::ByteBuffer;

class Reports final : public MikeEventListener {
public:
    void OnMikeStateChanged() override { ADD_FAILURE(); }
    void OnMikeLevelChanged(unsigned char peak, float crossingRate) override {
        ++count;
        lastPeak = peak;
        lastRate = crossingRate;
    }

    int count = 0;
    int lastPeak = -1;
    float lastRate = -1;
};

// A block whose first channel has these samples and whose second channel is as loud as can be.
void Fill(ByteBuffer& buffer, const std::vector<int>& samples) {
    buffer.Clear();
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const int index = static_cast<int>(i) * 2;
        buffer.SetByte(index, static_cast<byte>(samples[i]));
        buffer.SetByte(index + 1, i % 2 == 0 ? byte{0} : byte{255});
    }
    buffer.SetLimit(static_cast<int>(samples.size()) * 2);
}

}  // namespace

TEST(BlowAnalysis, CountsSwingsFromOneSideOfSilenceToTheOther) {
    struct Case {
        std::vector<int> samples;
        int peak;
        int crossings;
    };
    const std::vector<Case> cases = {
        {std::vector<int>(160, 128), 128, 0},
        {{100, 200, 100, 200, 100, 200, 100, 200, 100, 200, 100}, 200, 10},
        {{100, 128, 128, 200}, 200, 1},
        {{100, 128, 120}, 128, 0},
        {{128, 200, 100}, 200, 1},
        {{125, 130, 125, 130}, 130, 0},
        {{124, 131, 124, 131}, 131, 3},
        {{124, 130, 125, 131}, 131, 1},
        {{128, 128, 100, 128, 131, 128, 90}, 131, 2},
        {{200}, 200, 0},
        {{7}, 7, 0},
        {{0, 255}, 255, 1},
        {{}, 0, 0},
    };
    Reports reports;
    MikeInputCheck check(&reports);
    ByteBuffer buffer;
    ASSERT_EQ(E_SUCCESS, buffer.Construct(320));
    for (const Case& each : cases) {
        Fill(buffer, each.samples);
        reports.count = 0;
        check.OnAudioInBufferIsFilled(&buffer);
        EXPECT_EQ(1, reports.count);
        EXPECT_EQ(each.peak, reports.lastPeak);
        EXPECT_EQ(static_cast<float>(each.crossings) / 0.12727273f, reports.lastRate);
        EXPECT_EQ(320, buffer.GetLimit()) << "it is free to be filled again";
    }
    Fill(buffer, cases[1].samples);
    check.OnAudioInBufferIsFilled(&buffer);
    EXPECT_EQ(78.571426f, reports.lastRate);
}
