// How the instrument sounds, measured from recordings of the program: what an ear would take for a machine, in figures.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numeric>
#include <string>
#include <vector>

#include "package/SoundMeasure.h"
#include "play/FingeringTable.h"
#include "scenarios/Performing.h"
#include "support/ProgramRun.h"

namespace {

using measure::Course;
using measure::Samples;

constexpr double kC4 = 261.63;
constexpr double kThirdOfOctave = 1.26;

double HzOf(int mask) {
    const Tone& tone = kFingeringTable[static_cast<std::size_t>(mask)];
    return measure::NoteHz(tone.octave, tone.semitone);
}

std::vector<float> Play(const std::string& performance, int endMs, int ringtone = 15) {
    ProgramRun run;
    EXPECT_EQ(
        0, run.Play(performance + std::to_string(endMs) + " quit\n", {"--ringtone-volume", std::to_string(ringtone)}))
        << run.Errors();
    return run.ReadRecording();
}

double Mean(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

double Deviation(const std::vector<double>& values) {
    const double mean = Mean(values);
    double sum = 0;
    for (const double value : values) sum += (value - mean) * (value - mean);
    return std::sqrt(sum / static_cast<double>(values.size()));
}

double Correlation(const std::vector<double>& a, const std::vector<double>& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += (a[i] - Mean(a)) * (b[i] - Mean(b));
    return sum / static_cast<double>(a.size()) / Deviation(a) / Deviation(b);
}

double Amplitude(double decibels) {
    return std::pow(10.0, decibels / 20);
}

// A figure with the range that it must be in; printed, so that a change of the tone can be judged.
void Expect(double figure, const char* name, double least, double most, int mask) {
    std::printf(" | %s %.2f", name, figure);
    EXPECT_GE(figure, least) << name << " at " << HzOf(mask) << " Hz";
    EXPECT_LE(figure, most) << name << " at " << HzOf(mask) << " Hz";
}

// The loudest stretch of `ms` in decibels; `atMs` becomes its end.
double Loudest(Samples sound, double ms, double& atMs) {
    constexpr double kStepMs = 1;
    double loudest = measure::kSilenceDb;
    for (double at = 0; at + ms < static_cast<double>(sound.size()) * 1000 / kRate; at += kStepMs) {
        const double level = measure::RmsDb(Between(sound, at, at + ms));
        if (level > loudest) {
            loudest = level;
            atMs = at + ms;
        }
    }
    return loudest;
}

constexpr int kStarts = 3;
constexpr int kStartMs = 1200;
constexpr int kHoldMs = 700;

// Each note blown three times from silence.
std::vector<float> PlayStarts(int mask) {
    std::string performance = Finger(kPlayMs - 100, mask);
    for (int start = 0; start < kStarts; ++start) {
        const int ms = kPlayMs + start * kStartMs;
        performance += std::to_string(ms) + " breath 0.9\n" + std::to_string(ms + kHoldMs) + " breath 0\n";
    }
    return Play(performance, kPlayMs + kStarts * kStartMs);
}

// From the first sound of the n-th start on.
Samples StartOf(Samples sound, int start) {
    const Samples part = Between(sound, kPlayMs + start * kStartMs, kPlayMs + (start + 1) * kStartMs);
    return part.subspan(measure::Onset(part, 1e-4F).value_or(0));
}

double FirstMs(const Course& course, double level, std::size_t fromMs, bool isRising) {
    std::size_t ms = fromMs;
    while (ms < course.levelDb.size() && (Amplitude(course.levelDb[ms]) < level) == isRising) ++ms;
    return static_cast<double>(ms);
}

}  // namespace

TEST(Voice, SpeaksAndFallsSilentAsItsChamberDoes) {
    for (int mask = 0; mask < kMasks; ++mask) {
        const double hz = HzOf(mask);
        const auto sound = PlayStarts(mask);
        // 55 ms at G3, 45 at C4 and 25 at C5.
        const double release = 45 + (hz < kC4 ? (kC4 - hz) * 10 / 65.6 : (kC4 - hz) * 20 / 261.6);
        std::vector<std::vector<double>> chiffs;
        std::printf("%.0f Hz", hz);
        for (int start = 0; start < kStarts; ++start) {
            const Samples tone = StartOf(sound, start);
            const Course course = measure::Follow(tone, kRate, hz, hz, 16);
            const double full = Amplitude(course.levelDb[150]);
            const double ninety = FirstMs(course, 0.9 * full, 0, true);
            const double attack = ninety - FirstMs(course, 0.1 * full, 0, true);
            Expect(attack, "attack ms", hz < 255 ? 25 : 14.5, hz < 255 ? 45 : 26, mask);
            const std::vector<double> early(course.cents.begin() + 11, course.cents.begin() + 22);
            Expect(Mean(early), "cents at first", -20, -12, mask);
            double off = 0;
            for (std::size_t ms = 60; ms < 300; ++ms) off = std::max(off, std::abs(course.cents[ms]));
            Expect(off, "after 60 ms", 0, 3, mask);

            const auto breath = measure::Above(tone, kRate, std::max(1000.0, 3.4 * hz));
            double chiffMs = 0;
            const double level = measure::RmsDb(Between(tone, 100, 300));
            Expect(Loudest(Between(breath, 0, 80), 10, chiffMs) - level, "chiff dB", -37.5, -32, mask);
            EXPECT_LT(chiffMs - 5, ninety) << "the chiff comes before the tone is full";
            // The chiff alone: the tone's partials lie below it, or are not there yet.
            const measure::Spectrum spectrum(Between(breath, 0, 25), kRate);
            std::vector<double> bands;
            for (double band = 1250; band < 8000; band *= kThirdOfOctave) {
                bands.push_back(spectrum.BandDb(band, kThirdOfOctave * band));
            }
            chiffs.push_back(bands);

            const double last = Amplitude(course.levelDb[640]);
            const double falls = FirstMs(course, 0.9 * last, 660, false);
            Expect((FirstMs(course, 0.1 * last, 660, false) - falls) / release, "release", 0.8, 1.2, mask);
            // Three releases after its first sign; the meter's own window is a part of it.
            Expect(course.levelDb[static_cast<std::size_t>(falls + 3 * release)] - course.levelDb[640], "after three",
                   -200, -57, mask);
        }
        for (int a = 0; a < kStarts; ++a) {
            double most = 0;
            const auto& one = chiffs[static_cast<std::size_t>(a)];
            const auto& other = chiffs[static_cast<std::size_t>((a + 1) % kStarts)];
            for (std::size_t i = 0; i < one.size(); ++i) most = std::max(most, std::abs(one[i] - other[i]));
            Expect(most, "differ dB", 6, 60, mask);
        }
        std::puts("");
    }
}

TEST(Voice, StopsTheLowestToneWithoutAThud) {
    constexpr int kG3 = 10;
    const auto sound = PlayStarts(kG3);
    const Samples tone = StartOf(sound, 0);
    const Course course = measure::Follow(tone, kRate, HzOf(kG3), HzOf(kG3), 16);
    const double falls = FirstMs(course, 0.9 * Amplitude(course.levelDb[640]), 660, false);
    const Samples stop = Between(tone, falls - 30, falls + 120);
    const measure::Spectrum spectrum(stop, kRate);
    const double within = spectrum.BandDb(0.7 * HzOf(kG3), 1.4 * HzOf(kG3));
    EXPECT_LT(spectrum.BandDb(0, 0.7 * HzOf(kG3)) - within, -38);
    EXPECT_LT(spectrum.BandDb(1.4 * HzOf(kG3), 1.8 * HzOf(kG3)) - within, -38);
}

TEST(Voice, IsNeverQuiteSteadyAndRepeatsWithoutASign) {
    constexpr int kEndMs = kPlayMs + 29000;
    for (const int mask : {10, 15, 5, 4, 0}) {
        const double hz = HzOf(mask);
        const auto sound = Play(Finger(kPlayMs - 100, mask) + "3000 breath 0.9\n", kEndMs);
        std::printf("%.0f Hz", hz);
        const Samples held = Between(sound, kPlayMs + 500, kEndMs - 200);
        const Course course = measure::Follow(held, kRate, hz, 40, 50);
        std::vector<double> cents;
        std::vector<double> levels;
        constexpr std::size_t kStep = 25;
        for (std::size_t ms = 200; ms + 200 < course.cents.size(); ms += kStep) {
            cents.push_back(course.cents[ms]);
            levels.push_back(course.levelDb[ms]);
        }
        Expect(Mean(cents), "cents off", -1, 1, mask);
        Expect(Deviation(cents), "cents sd", 2, 3, mask);
        Expect(Deviation(levels), "dB sd", 0.5, 0.7, mask);
        Expect(Correlation(cents, levels), "tied", 0.4, 0.7, mask);
        // The quick part: what a mean over a second does not follow.
        std::vector<double> quick;
        constexpr std::size_t kHalfSecond = 500 / kStep;
        for (std::size_t i = kHalfSecond; i + kHalfSecond < cents.size(); ++i) {
            const auto at = cents.begin() + static_cast<std::ptrdiff_t>(i);
            quick.push_back(cents[i] - std::accumulate(at - kHalfSecond, at + kHalfSecond, 0.0) / (2 * kHalfSecond));
        }
        Expect(Deviation(quick), "quick", 0.8, 1.8, mask);
        double strongest = 0;
        for (double turn = 0.02; turn < 8; turn += 0.02) {
            double a = 0;
            double b = 0;
            for (std::size_t i = 0; i < cents.size(); ++i) {
                const double angle = 2 * M_PI * turn * static_cast<double>(i * kStep) / 1000;
                a += (cents[i] - Mean(cents)) * std::cos(angle);
                b += (cents[i] - Mean(cents)) * std::sin(angle);
            }
            const double n = static_cast<double>(cents.size());
            strongest = std::max(strongest, 2 * (a * a + b * b) / (n * n));
        }
        Expect(strongest / (Deviation(cents) * Deviation(cents)), "strongest sine", 0, 0.25, mask);

        // The repeats come every 8 to 10 s: no frame of 20 ms stands out.
        const auto band = measure::Below(measure::Above(held, kRate, std::max(1000.0, 3.4 * hz)), kRate, 8000);
        auto frames = measure::RmsDbWindows(Samples(band).subspan(kRate / 10), kRate / 50);
        std::sort(frames.begin(), frames.end() - 5);
        Expect(frames[frames.size() - 6] - frames[frames.size() - 7], "loudest frame", 0, 2, mask);
        Expect(frames[frames.size() - 6] - Mean(frames), "above mean", 0, 5, mask);
        std::puts("");
    }
}

TEST(Voice, SlursEveryToneIntoEveryOther) {
    constexpr int kSlurMs = 190;
    std::string performance = "2990 breath 0.9\n";
    struct Slur {
        int from;
        int to;
        int ms;
    };
    std::vector<Slur> slurs;
    int ms = kPlayMs;
    for (int from = 0; from < kMasks; ++from) {
        for (int to = 0; to < kMasks; ++to) {
            if (from == to) continue;
            slurs.push_back({from, to, ms + kSlurMs + (from * 7 + to * 3) % 11});
            performance += Finger(ms, from) + Finger(slurs.back().ms, to);
            ms += 2 * kSlurMs + 11;
        }
    }
    const auto sound = Play(performance, ms);
    EXPECT_LE(measure::TruePeakDb(sound, kRate), -2);
    const auto breath = measure::Above(measure::Above(sound, kRate, 2500), kRate, 2500);
    double deepest = 0;
    double loudestBurst = -20;
    double shortest = 1000;
    double longest = 0;
    for (const Slur& slur : slurs) {
        const double low = std::min(HzOf(slur.from), HzOf(slur.to));
        const double periodMs = 1000 / low;
        const auto level = [&](double from, double to) {
            return measure::RmsDb(Between(sound, slur.ms + from, slur.ms + to));
        };
        const double softer = std::min(level(-60, -20), level(40, 100));
        for (double at = -5; at < 40; at += 1) deepest = std::max(deepest, softer - level(at, at + 2 * periodMs));

        double burstMs = 0;
        const double steady = std::max(measure::RmsDb(Between(breath, slur.ms - 80, slur.ms - 10)),
                                       measure::RmsDb(Between(breath, slur.ms + 50, slur.ms + 120)));
        loudestBurst = std::max(loudestBurst, Loudest(Between(breath, slur.ms, slur.ms + 40), 10, burstMs) - steady);

        // Followed at the pitch in the middle, both tones lie within the band.
        const double high = std::max(HzOf(slur.from), HzOf(slur.to));
        const double middle = std::sqrt(low * high);
        const Course course =
            measure::Follow(Between(sound, slur.ms - 60, slur.ms + 90), kRate, middle, 2 * (high - low) + 120, 3);
        const double before = measure::Cents(HzOf(slur.from), middle);
        const double way = measure::Cents(HzOf(slur.to), HzOf(slur.from));
        const auto firstAt = [&](double part) {
            std::size_t at = 55;
            while (at < 130 && (course.cents[at] - before) / way < part) ++at;
            return static_cast<double>(at);
        };
        const double glide = firstAt(0.9) - firstAt(0.1);
        shortest = std::min(shortest, glide);
        longest = std::max(longest, glide);
    }
    std::printf("dip %.2f dB | burst %.2f dB | glide %.0f to %.0f ms\n", deepest, loudestBurst, shortest, longest);
    EXPECT_LT(deepest, 2);
    EXPECT_LT(loudestBurst, 4);
    EXPECT_GE(shortest, 9);
    EXPECT_LE(longest, 20);
}

TEST(Voice, TakesASingleMissedBlockForADip) {
    constexpr int kBlockMs = 20;
    constexpr int kMisses = 4;
    for (int mask = 0; mask < kMasks; ++mask) {
        std::string performance = Finger(kPlayMs - 100, mask) + std::to_string(kPlayMs) + " peak 220\n";
        // At other places in the wave, and in the speaker's periods.
        std::vector<int> misses;
        for (int i = 0; i < kMisses; ++i) {
            misses.push_back(kPlayMs + 500 + i * 420);
            performance += std::to_string(misses.back()) + " peak 128\n+" + std::to_string(kBlockMs) + " peak 220\n";
        }
        const auto sound = Play(performance, kPlayMs + 2500);
        const auto breath = measure::Above(measure::Above(sound, kRate, 2500), kRate, 2500);
        const double periodMs = 1000 / HzOf(mask);
        double deepest = 0;
        double burst = -20;
        for (const int ms : misses) {
            const double level = measure::RmsDb(Between(sound, ms - 60, ms - 20));
            for (double at = 0; at < 100; at += 1) {
                const Samples window = Between(sound, ms + at, ms + at + periodMs);
                deepest = std::max(deepest, level - measure::RmsDb(window));
            }
            double burstMs = 0;
            burst = std::max(burst, Loudest(Between(breath, ms, ms + 120), 10, burstMs) -
                                        measure::RmsDb(Between(breath, ms - 100, ms)));
        }
        std::printf("%.0f Hz", HzOf(mask));
        Expect(deepest, "dip", 1, 9, mask);
        Expect(burst, "burst", -20, 4, mask);
        std::puts("");
    }
}

TEST(Voice, UsesTheRoomToFullScaleAndIsAsLoudToTheEarOnAllNotes) {
    // The ear's curves (ISO 226) in loudness units of the meter, from the lowest note to the highest.
    std::array<double, kMasks> loudness{};
    double peak = -100;
    for (int mask = 0; mask < kMasks; ++mask) {
        const auto sound = Play(Finger(kPlayMs - 100, mask) + "3000 breath 0.9\n", kPlayMs + 11000);
        const Samples held = Between(sound, kPlayMs + 100, kPlayMs + 11000);
        loudness[static_cast<std::size_t>(mask)] = measure::Loudness(held, kRate);
        peak = std::max(peak, measure::TruePeakDb(held, kRate));
    }
    const double mean = std::accumulate(loudness.begin(), loudness.end(), 0.0) / kMasks;
    const double lowest = loudness[10];
    const double highest = loudness[0];
    std::printf("mean %.2f LUFS | G3 %.2f | C5 %.2f | peak %.2f dBTP\n", mean, lowest, highest, peak);
    EXPECT_NEAR(mean, -9, 1);
    EXPECT_NEAR(lowest - mean, 2.5, 1);
    EXPECT_NEAR(highest - mean, -2, 1);
    EXPECT_LE(peak, -2);
    for (int mask = 0; mask < kMasks; ++mask) {
        const double place = std::log(HzOf(mask) / HzOf(10)) / std::log(HzOf(0) / HzOf(10));
        EXPECT_NEAR(loudness[static_cast<std::size_t>(mask)], lowest + place * (highest - lowest), 0.4) << HzOf(mask);
    }
}
