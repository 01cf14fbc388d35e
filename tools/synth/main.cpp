// Writes the ocarina's tone recordings, one for each tone that a fingering gives, into a folder.

#include "LoudnessMatch.h"
#include "Note.h"
#include "ToneModel.h"
#include "VorbisFile.h"

#include <cmath>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

namespace {

using synth::Loop;

// The instrument is as loud as its peaks allow. The ear hears low tones softer than the meter does and high ones louder
// (ISO 226): so the lowest note is stronger and the highest one weaker, on a straight line in semitones.
constexpr double kLowestLoudness = -7.3;  // LUFS
constexpr double kLoudnessASemitone = -4.0 / 17.0;

// What follows a piece of the recording so that the encoder sees no end there: the sustained part's beginning, which is
// what is heard there, faded out.
constexpr std::size_t kRunOverFrames = 4096;

void Append(Loop& sound, const Loop& piece, const Loop& sustained) {
    sound.insert(sound.end(), piece.begin(), piece.end());
    for (std::size_t i = 0; i < kRunOverFrames; ++i) {
        const double place = static_cast<double>(i) / static_cast<double>(kRunOverFrames);
        sound.push_back(sustained[i] * (0.5 + 0.5 * std::cos(synth::kPi * place)));
    }
}

std::string Comment(const char* name, double value, int decimals) {
    char text[64];
    std::snprintf(text, sizeof text, "%s=%.*f", name, decimals, value);
    return text;
}

void WriteNote(const synth::Note& note, const std::string& folder) {
    synth::Tone tone = synth::ToneModel(note).Render();
    const int semitones = note.Index() - synth::kFingeredNotes[0].Index();
    const double loudness = kLowestLoudness + kLoudnessASemitone * semitones;
    const double gain = synth::FromDecibels(loudness - synth::LoudnessMatch::Of(tone.sustained));
    for (double& x : tone.sustained) {
        x *= gain;
    }
    for (Loop& attack : tone.attacks) {
        for (double& x : attack) {
            x *= gain;
        }
    }

    const std::size_t loopStart = tone.attacks.front().size();
    Loop sound = tone.attacks.front();
    Append(sound, tone.sustained, tone.sustained);
    std::string takes;
    for (std::size_t i = 1; i < tone.attacks.size(); ++i) {
        takes += (i == 1 ? "TAKES=" : ",") + std::to_string(sound.size());
        Append(sound, tone.attacks[i], tone.sustained);
    }
    const std::vector<std::string> comments = {
        "LOOPSTART=" + std::to_string(loopStart), "LOOPLENGTH=" + std::to_string(tone.sustained.size()), takes,
        Comment("RELEASE", tone.releaseSeconds, 4), Comment("PITCH", tone.frequency, 3)};
    synth::VorbisFile::Write(folder + "/" + note.FileName(), sound, comments, note.Index());
    std::printf("%s  %7.2f Hz  %5.2f s  %6.2f LUFS\n", note.FileName().c_str(), tone.frequency,
                static_cast<double>(tone.sustained.size()) / synth::kRate, loudness);
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
