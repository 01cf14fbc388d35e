// Writes the ocarina's tone recordings, one for each tone that a fingering gives, into a folder.

#include "LoudnessMatch.h"
#include "Note.h"
#include "ToneModel.h"
#include "VorbisFile.h"

#include <cstdint>
#include <cstdio>
#include <exception>
#include <string>

namespace {

// The loudness at which music is commonly delivered; a tone as pure as this leaves some 10 dB to full scale.
constexpr double kLoudness = -16.0;  // LUFS

// Of each note the take is kept whose seam has come through the encoder best.
constexpr int kTakes = 10;

double WriteTake(const synth::Note& note, int take, const std::string& path) {
    synth::Loop loop = synth::ToneModel(note, take).Render();
    synth::LoudnessMatch::Apply(loop, kLoudness);
    return synth::VorbisFile::Write(path, loop, static_cast<std::uint32_t>(note.Index()));
}

void WriteNote(const synth::Note& note, const std::string& folder) {
    const std::string path = folder + "/" + note.FileName();
    int best = 0;
    double bestSeam = 1.0;
    for (int take = 0; take < kTakes; ++take) {
        const double seam = WriteTake(note, take, path);
        if (seam < bestSeam) {
            best = take;
            bestSeam = seam;
        }
    }
    WriteTake(note, best, path);
    std::printf("%s  %7.2f Hz  take %d  seam %.5f\n", note.FileName().c_str(), note.Frequency(), best, bestSeam);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: ocarina_synth OUTDIR\n");
        return 2;
    }
    try {
        for (const synth::Note& note : synth::kFingeredNotes) {
            WriteNote(note, argv[1]);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ocarina_synth: %s\n", error.what());
        return 1;
    }
    return 0;
}
