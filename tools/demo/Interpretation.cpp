#include "Interpretation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

// The splash takes 2.5 s; a player takes a breath before the first note.
constexpr double kFirstNoteMs = 3200;

// Skilled players stray from the beat by about a hundredth of a second (B. Repp, "Variability of timing in expressive
// piano performance", Perception and Psychophysics 59, 1997).
constexpr double kStrayMs = 9;
constexpr double kMostStrayMs = 20;

// The last beats slow down to this part of the tempo.
constexpr double kRitardandoBeats = 4;
constexpr double kRitardandoTempo = 0.68;

// A tongue closes the breath this long before the note that repeats the one before: the tone falls meanwhile.
constexpr int kTongueMs = 100;
constexpr int kPhraseBreathMs = 300;
constexpr int kMostPhraseStrayMs = 40;

constexpr double kSoftBreath = 0.72;
constexpr double kStrongBreath = 0.95;
constexpr int kUsualRingtone = 11;
constexpr int kSofter = 1;  // steps at a phrase's ends
constexpr int kLouder = 2;  // at its middle

constexpr double kMsAMinute = 60000;
constexpr double kPi = 3.14159265358979323846;

class Player {
public:
    // About normal, with the standard deviation 1: the sum of twelve uniform numbers.
    double Stray() {
        constexpr int kTerms = 12;
        double sum = -kTerms / 2.0;
        for (int i = 0; i < kTerms; ++i) {
            // xorshift64, G. Marsaglia, "Xorshift RNGs", Journal of Statistical Software 8 (2003).
            state_ ^= state_ << 13U;
            state_ ^= state_ >> 7U;
            state_ ^= state_ << 17U;
            constexpr unsigned kUnusedBits = 11;
            constexpr double kRange = 9007199254740992.0;
            sum += static_cast<double>(state_ >> kUnusedBits) / kRange;
        }
        return sum;
    }

private:
    std::uint64_t state_ = 0x0ca41a5eed;
};

bool IsSame(const Tone& a, const Tone& b) {
    return a.octave == b.octave && a.semitone == b.semitone;
}

int ToBlock(double ms) {
    return static_cast<int>(std::lround(ms / kBlockMs)) * kBlockMs;
}

// Where in its phrase each note stands, 0 to 1.
std::vector<double> PlacesInPhrases(const std::vector<WrittenNote>& notes) {
    std::vector<double> places;
    for (std::size_t first = 0; first < notes.size();) {
        std::size_t last = first;
        while (last + 1 < notes.size() && !notes[last].endsPhrase) ++last;
        for (std::size_t i = first; i <= last; ++i) {
            places.push_back(last == first ? 0 : static_cast<double>(i - first) / static_cast<double>(last - first));
        }
        first = last + 1;
    }
    return places;
}

}  // namespace

Interpretation::Interpretation(const Tune& tune) {
    double beatsLeft = 0;
    for (const WrittenNote& note : tune.notes) beatsLeft += note.beats;
    const std::vector<double> places = PlacesInPhrases(tune.notes);
    Player player;
    double ms = kFirstNoteMs;
    for (std::size_t i = 0; i < tune.notes.size(); ++i) {
        const WrittenNote& note = tune.notes[i];
        const bool isTongued = i == 0 || tune.notes[i - 1].endsPhrase || IsSame(tune.notes[i - 1].tone, note.tone);
        const double stray = i == 0 ? 0 : std::clamp(kStrayMs * player.Stray(), -kMostStrayMs, kMostStrayMs);
        // A new breath is heard at the end of one of the microphone's blocks, wherever the player's mind was.
        const double begin = isTongued ? ToBlock(ms + stray) + kSpeakerMs : ms + stray;
        const double swell = std::sin(kPi * places[i]);
        notes.push_back({note.tone, begin, isTongued, note.endsPhrase,
                         kUsualRingtone - kSofter + static_cast<int>(std::lround((kSofter + kLouder) * swell))});
        if (isTongued) {
            if (i > 0) {
                const bool isPhrase = tune.notes[i - 1].endsPhrase;
                const double pause =
                    isPhrase ? kPhraseBreathMs + std::clamp(kStrayMs * player.Stray(), -1.0 * kMostPhraseStrayMs,
                                                            1.0 * kMostPhraseStrayMs)
                             : kTongueMs;
                breaths.back().endMs = ToBlock(begin - kSpeakerMs - pause);
            }
            breaths.push_back(
                {ToBlock(begin - kSpeakerMs) - kBlockMs, 0, kSoftBreath + (kStrongBreath - kSoftBreath) * swell});
        }
        const double tempo =
            beatsLeft > kRitardandoBeats
                ? 1
                : kRitardandoTempo + (1 - kRitardandoTempo) * (beatsLeft - note.beats / 2) / kRitardandoBeats;
        ms += note.beats * kMsAMinute / tune.beatsAMinute / std::max(tempo, kRitardandoTempo);
        beatsLeft -= note.beats;
    }
    endMs = ms;
    breaths.back().endMs = ToBlock(ms - kPhraseBreathMs);
}
