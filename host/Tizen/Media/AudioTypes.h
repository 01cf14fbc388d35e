#pragma once

namespace Tizen {
namespace Media {

enum AudioInputDevice { AUDIO_INPUT_DEVICE_MIC = 0 };

enum AudioSampleType {
    AUDIO_SAMPLE_TYPE_NONE = 0,
    AUDIO_SAMPLE_TYPE_PCM_U8 = 1,  ///< unsigned 8 bits, silence at 128
    AUDIO_SAMPLE_TYPE_PCM_S16 = 2  ///< signed 16 bits, the machine's order of bytes
};

enum AudioChannelType {
    AUDIO_CHANNEL_TYPE_NONE = 0,
    AUDIO_CHANNEL_TYPE_MONO = 1,
    AUDIO_CHANNEL_TYPE_STEREO = 2  ///< interleaved, the left channel first
};

/// What an AudioIn is doing. The numbers are fixed: applications compare with them.
enum AudioInState {
    AUDIO_IN_STATE_INITIALIZED = 0,
    AUDIO_IN_STATE_PREPARED = 1,
    AUDIO_IN_STATE_RECORDING = 2,
    AUDIO_IN_STATE_STOPPED = 3,
    AUDIO_IN_STATE_ERROR = 4
};

}  // namespace Media
}  // namespace Tizen
