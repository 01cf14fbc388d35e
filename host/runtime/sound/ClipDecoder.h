#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "runtime/sound/Clip.h"

namespace host {

class Resampler;
class SoundReader;

/// Turns a file's bytes into a clip, as far as it is asked each time. UI thread only.
///
/// A clip of another rate than the speaker's is resampled to a whole number of frames, which moves its pitch by less
/// than half a frame in its length (a hundred-thousandth of a one-second clip). The filter goes on over the clip's end
/// into its beginning, and what it makes there follows the clip's last frame. A repeat starts after the first frames,
/// which the filter made before it had seen the clip's end.
class ClipDecoder {
public:
    /// Null when it is no sound file, not a whole one, longer than a minute or of a rate that cannot be brought to
    /// `rate`.
    [[nodiscard]] static std::unique_ptr<ClipDecoder> Open(std::vector<std::byte> content, int rate);
    ~ClipDecoder();

    [[nodiscard]] const std::shared_ptr<Clip>& GetClip() const noexcept { return clip_; }
    [[nodiscard]] bool IsDone() const noexcept { return clip_->Ready() == clip_->Length(); }
    /// True when the file is known to decode to its end without having been decoded.
    [[nodiscard]] bool IsProvedWhole() const noexcept;
    /// Makes about `frames` more frames of the clip. False when the file does not decode to its promised end.
    [[nodiscard]] bool Advance(std::size_t frames);

private:
    ClipDecoder();

    [[nodiscard]] bool ReadMore();
    void TakeMono(std::size_t frames);

    std::unique_ptr<SoundReader> reader_;
    std::unique_ptr<Resampler> resampler_;  ///< null when the rates are equal
    std::shared_ptr<Clip> clip_;
    std::vector<float> interleaved_;
    std::vector<float> mono_;  ///< frames read and not taken yet begin at `monoAt_`
    std::size_t monoAt_ = 0;
    std::vector<float> beginning_;  ///< of the file, for the repeat's seam
    std::size_t beginningWanted_ = 0;
    std::size_t framesRead_ = 0;
    std::size_t framesPromised_ = 0;
};

}  // namespace host
