#include "sound/MikeInputCheck.h"

#include "Tizen/Media/AudioTypes.h"

using namespace Tizen::Base;
using namespace Tizen::Media;

namespace {

const int SAMPLE_RATE = 8000;
const int CHANNEL_COUNT = 2;

// The dead zone around silence (128), in which a sample is on neither side.
const int SILENCE_LOWEST = 125;
const int SILENCE_HIGHEST = 130;

const int SAMPLE_VALUES = 256;
const float CROSSING_RATE_DIVISOR = 0.12727273f;

// On which side of silence a sample lies, as bits. A sample in the dead zone keeps the previous side; any other
// replaces it.
const unsigned SIDE_LOW = 1;
const unsigned SIDE_HIGH = 2;
const unsigned SIDE_BOTH = SIDE_LOW | SIDE_HIGH;

struct SampleTable {
    constexpr SampleTable() {
        for (int sample = 0; sample < SAMPLE_VALUES; ++sample) {
            if (sample < SILENCE_LOWEST) {
                side[sample] = SIDE_LOW;
            } else if (sample > SILENCE_HIGHEST) {
                side[sample] = SIDE_HIGH;
            } else {
                kept[sample] = SIDE_BOTH;
            }
        }
    }

    byte side[SAMPLE_VALUES] = {};
    byte kept[SAMPLE_VALUES] = {};
};

constexpr SampleTable SAMPLE_TABLE;

}  // namespace

MikeInputCheck::MikeInputCheck(MikeEventListener* pListener) : __pMikeEventListener(pListener) {}

MikeInputCheck::~MikeInputCheck() {
    Stop();
    __audioIn.Unprepare();
}

result MikeInputCheck::Construct() {
    result r = __audioIn.Construct(*this);
    if (r != E_SUCCESS) return r;
    r = __audioIn.Prepare(AUDIO_INPUT_DEVICE_MIC, AUDIO_SAMPLE_TYPE_PCM_U8, AUDIO_CHANNEL_TYPE_STEREO, SAMPLE_RATE);
    if (r != E_SUCCESS) return r;

    const int size = __audioIn.GetMinBufferSize();
    for (ByteBuffer& buffer : __buffers) {
        r = buffer.Construct(size);
        if (r != E_SUCCESS) return r;
        __audioIn.AddBuffer(&buffer);
    }
    return E_SUCCESS;
}

result MikeInputCheck::Start() {
    return __audioIn.Start();
}

result MikeInputCheck::Stop() {
    if (__audioIn.GetState() != AUDIO_IN_STATE_RECORDING) return E_SUCCESS;
    return __audioIn.Stop();
}

void MikeInputCheck::OnAudioInBufferIsFilled(ByteBuffer* pData) {
    // This runs 50 times a second for as long as the ocarina is played. A branch on the sound would be mispredicted at
    // nearly every sample while the player blows; a table costs the same for every signal.
    const byte* pBytes = pData->GetPointer();
    const int size = pData->GetLimit();
    unsigned peak = 0;
    unsigned previousSide = 0;  // of the last sample outside the dead zone; neither before there was one
    int crossings = 0;
    for (int i = 0; i < size; i += CHANNEL_COUNT) {
        const unsigned sample = pBytes[i];
        const unsigned side = SAMPLE_TABLE.side[sample];
        peak = sample > peak ? sample : peak;
        crossings += (previousSide | side) == SIDE_BOTH;
        previousSide = side | (previousSide & SAMPLE_TABLE.kept[sample]);
    }

    if (__pMikeEventListener != nullptr) {
        __pMikeEventListener->OnMikeLevelChanged(static_cast<unsigned char>(peak),
                                                 static_cast<float>(crossings) / CROSSING_RATE_DIVISOR);
    }
    pData->Clear();
    __audioIn.AddBuffer(pData);
}

void MikeInputCheck::OnAudioInInterrupted() {}

void MikeInputCheck::OnAudioInReleased() {}

void MikeInputCheck::OnAudioInErrorOccurred(result) {}

void MikeInputCheck::OnAudioInAudioFocusChanged() {}

void MikeInputCheck::OnAudioInDeviceChanged() {}
