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
/// than half a frame in its sustained part (a hundred-thousandth of a one-second clip). The filter goes on over the end
/// of that part into its beginning, and what it makes there follows the clip's last frame. A repeat starts after the
/// first frames, which the filter made before it had seen the end. Each further take is a piece of the file that goes
/// on into the sustained part in the same way.
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

    // Frames of the file, and how many of the clip they become together with what follows them in the sustained part.
    struct Piece {
        std::size_t begin;
        std::size_t end;
        std::size_t framesOut;
    };

    [[nodiscard]] bool StartNextPiece();
    [[nodiscard]] bool MakeMore(std::size_t most);
    [[nodiscard]] bool ReadMore();
    /// Reads on to that frame of the file.
    [[nodiscard]] bool SkipTo(std::size_t frame);
    void TakeMono(std::size_t frames);
    void KeepBeginning();

    std::unique_ptr<SoundReader> reader_;
    std::unique_ptr<Resampler> resampler_;  ///< the piece's own; null when the rates are equal
    std::shared_ptr<Clip> clip_;
    std::vector<float> interleaved_;
    std::vector<float> mono_;  ///< frames read and not taken yet begin at `monoAt_`
    std::size_t monoAt_ = 0;
    std::vector<Piece> pieces_;  ///< in the file's order
    std::size_t piece_ = 0;
    std::size_t pieceEnd_ = 0;  ///< the clip's frame where the piece is made
    bool needsResampler_ = false;
    double ratio_ = 1;
    std::vector<float> beginning_;  ///< of the sustained part, for the seams
    std::size_t beginningWanted_ = 0;
    std::size_t loopStart_ = 0;  ///< in frames of the file
    std::size_t framesRead_ = 0;
    std::size_t framesPromised_ = 0;
};

}  // namespace host
