#include "Clay.h"

#include <algorithm>
#include <cstdint>

namespace pictures::clay {

namespace {

constexpr Vector3 kBody = {1.0, 1.10, kDepth};
constexpr Vector3 kMouthpieceCentre = {0, -1.20, -0.03};
constexpr Vector3 kMouthpieceHalf = {0.34, 0.40, 0.15};
constexpr double kMouthpieceRound = 0.11;
// The mouthpiece narrows towards the lips by this share of its width for each unit of length.
constexpr double kMouthpieceTaper = 0.30;
constexpr double kNeckBlend = 0.30;

// The finger wells: where they lie on the body's face, how wide and how deep.
constexpr double kWellX = 0.405;
constexpr double kWellY = 0.405;
constexpr double kWellRadius = 0.295;
constexpr double kWellBall = 0.46;
constexpr double kWellBlend = 0.045;
constexpr double kBoreRadius = 0.145;
constexpr double kBoreDepth = 0.5;
constexpr double kBoreBlend = 0.03;
// No well and no bore reaches down to here.
constexpr double kUnderWells = -0.42;

// Two turned grooves decorate the neck.
constexpr double kGrooveY[] = {-0.985, -1.045};
constexpr double kGrooveWidth = 0.014;
constexpr double kGrooveDepth = 0.016;

double SmoothUnion(double a, double b, double blend) {
    const double h = std::max(blend - std::abs(a - b), 0.0) / blend;
    return std::min(a, b) - h * h * blend / 4;
}

double SmoothCut(double solid, double tool, double blend) {
    return -SmoothUnion(-solid, tool, blend);
}

double BodyDistance(const Vector3& p) {
    const Vector3 scaled = {p.x / kBody.x, p.y / kBody.y, p.z / kBody.z};
    const Vector3 steep = {scaled.x / kBody.x, scaled.y / kBody.y, scaled.z / kBody.z};
    const double k0 = Length(scaled);
    const double k1 = Length(steep);
    return k0 < 1e-9 ? -kBody.z : k0 * (k0 - 1) / k1;
}

double MouthpieceDistance(const Vector3& p) {
    Vector3 q = p - kMouthpieceCentre;
    const double narrowing = 1 + kMouthpieceTaper * std::clamp(q.y, -0.5, 0.5);
    q.x /= narrowing;
    q.z /= narrowing;
    const Vector3 d = {std::abs(q.x) - kMouthpieceHalf.x + kMouthpieceRound,
                       std::abs(q.y) - kMouthpieceHalf.y + kMouthpieceRound,
                       std::abs(q.z) - kMouthpieceHalf.z + kMouthpieceRound};
    const Vector3 outside = {std::max(d.x, 0.0), std::max(d.y, 0.0), std::max(d.z, 0.0)};
    return (Length(outside) + std::min(std::max(d.x, std::max(d.y, d.z)), 0.0) - kMouthpieceRound) * narrowing;
}

/// The middle of the well on the body's face in the quarter x > 0, y > 0, and the face's direction there.
struct Well {
    Vector3 place;
    Vector3 axis;
};

const Well& TheWell() {
    static const Well kWell = [] {
        const double fx = kWellX / kBody.x;
        const double fy = kWellY / kBody.y;
        const Vector3 place = {kWellX, kWellY, kBody.z * std::sqrt(1 - fx * fx - fy * fy)};
        const Vector3 slope = {place.x / (kBody.x * kBody.x), place.y / (kBody.y * kBody.y),
                               place.z / (kBody.z * kBody.z)};
        return Well{place, Normalized(slope)};
    }();
    return kWell;
}

/// The four wells mirror each other, so one is enough.
Vector3 Folded(const Vector3& p) {
    return {std::abs(p.x), std::abs(p.y), p.z};
}

double FromAxis(const Vector3& folded) {
    const Vector3 away = folded - TheWell().place;
    return Length(away - TheWell().axis * Dot(away, TheWell().axis));
}

/// Noise on a grid: the same value for the same corner on every machine.
double Corner(int x, int y, int z) {
    // The multipliers are those of M. Teschner et al., "Optimized Spatial Hashing" (2003), the final mix is
    // MurmurHash3's.
    auto h = static_cast<std::uint32_t>(x) * 73856093U ^ static_cast<std::uint32_t>(y) * 19349663U ^
             static_cast<std::uint32_t>(z) * 83492791U;
    h = (h ^ (h >> 16)) * 0x85EBCA6BU;
    h = (h ^ (h >> 13)) * 0xC2B2AE35U;
    h ^= h >> 16;
    return static_cast<double>(h) / 0xFFFFFFFFU * 2 - 1;
}

double Noise(const Vector3& p) {
    const int x = static_cast<int>(std::floor(p.x));
    const int y = static_cast<int>(std::floor(p.y));
    const int z = static_cast<int>(std::floor(p.z));
    const double fx = SmoothStep(0, 1, p.x - x);
    const double fy = SmoothStep(0, 1, p.y - y);
    const double fz = SmoothStep(0, 1, p.z - z);
    const auto along = [&](int dy, int dz) {
        return std::lerp(Corner(x, y + dy, z + dz), Corner(x + 1, y + dy, z + dz), fx);
    };
    return std::lerp(std::lerp(along(0, 0), along(1, 0), fy), std::lerp(along(0, 1), along(1, 1), fy), fz);
}

}  // namespace

double Distance(const Vector3& point) {
    double d = SmoothUnion(BodyDistance(point), MouthpieceDistance(point), kNeckBlend);
    for (const double y : kGrooveY) {
        const double t = (point.y - y) / kGrooveWidth;
        d += kGrooveDepth * std::exp(-t * t);
    }
    if (point.z > kUnderWells) {
        const Vector3 away = Folded(point) - TheWell().place;
        const double along = Dot(away, TheWell().axis);
        const double lift = std::sqrt(kWellBall * kWellBall - kWellRadius * kWellRadius);
        d = SmoothCut(d, Length(away - TheWell().axis * lift) - kWellBall, kWellBlend);
        const double clamped = std::clamp(along, -kBoreDepth, kBoreDepth);
        d = SmoothCut(d, Length(away - TheWell().axis * clamped) - kBoreRadius, kBoreBlend);
    }
    return d;
}

Vector3 Normal(const Vector3& point) {
    constexpr double kStep = 0.0012;
    const double here = Distance(point);
    return Normalized({Distance(point + Vector3{kStep, 0, 0}) - here, Distance(point + Vector3{0, kStep, 0}) - here,
                       Distance(point + Vector3{0, 0, kStep}) - here});
}

Material MaterialAt(const Vector3& point) {
    if (point.z <= kUnderWells) {
        return {};
    }
    const Vector3 folded = Folded(point);
    const double radius = FromAxis(folded);
    const double inside = 1 - SmoothStep(kWellRadius - 0.012, kWellRadius + 0.004, radius);
    const double bore = 1 - SmoothStep(kBoreRadius - 0.002, kBoreRadius + 0.010, radius);
    const double along = Dot(folded - TheWell().place, TheWell().axis);
    return {inside - bore, bore, bore * SmoothStep(0.10, 0.36, -along)};
}

double Grain(const Vector3& point) {
    constexpr double kCoarse = 9;
    constexpr double kFine = 38;
    return 0.6 * Noise(point * kCoarse) + 0.4 * Noise(point * kFine);
}

}  // namespace pictures::clay
