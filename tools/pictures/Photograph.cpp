#include "Photograph.h"

#include "Clay.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <numbers>
#include <thread>

namespace pictures {

namespace {

constexpr double kPi = std::numbers::pi;

// The table on which it lies, and how it is turned there.
constexpr double kTurn = 24 * kPi / 180;

// The camera, in the instrument's measure; the picture is this many units wide at the instrument's middle.
constexpr double kElevation = 62 * kPi / 180;
constexpr double kCameraDistance = 9;
constexpr double kFieldWidth = 3.02;
// Where the middle of the instrument comes to lie, as a share of the picture's height.
constexpr double kMiddleAt = 0.375;

// The lamp's pool of light: where its middle lies, as a share of the picture's height, and where it ends, in half
// widths of the picture. The instrument stands higher than the table and keeps its light farther out.
constexpr double kPoolAt = 0.41;
constexpr double kPoolEdge = 1.0;
constexpr double kPoolSoftness = 1.4;
constexpr double kPoolCoreOnClay = 0.45;
constexpr double kPoolEdgeOnClay = 1.50;

constexpr Vector3 kKeyLight = {-0.52, 0.50, 0.78};
constexpr double kHitDistance = 0.0006;
constexpr double kSafeStep = 0.78;
constexpr int kMostSteps = 160;
// Samples a pixel along each axis, on the instrument and near its outline.
constexpr int kSamples = 3;

Vector3 Linear(const Colour& c) {
    // The exact curve is IEC 61966-2-1; a power of 2.2 is close enough for light that is mixed by eye.
    constexpr double kGamma = 2.2;
    return {std::pow(c.red, kGamma), std::pow(c.green, kGamma), std::pow(c.blue, kGamma)};
}

/// From the table's space into the instrument's own.
Vector3 ToInstrument(const Vector3& p) {
    const double c = std::cos(kTurn);
    const double s = std::sin(kTurn);
    const double z = p.z - clay::kDepth;
    return {c * p.x + s * p.y, -s * p.x + c * p.y, z};
}

Vector3 TurnedToTable(const Vector3& v) {
    const double c = std::cos(kTurn);
    const double s = std::sin(kTurn);
    return {c * v.x - s * v.y, s * v.x + c * v.y, v.z};
}

double Distance(const Vector3& p) {
    return clay::Distance(ToInstrument(p));
}

struct Ray {
    Vector3 from;
    Vector3 along;
};

/// The stretch of the ray within the ball around the instrument; empty (near > far) when it misses.
struct Stretch {
    double near = 1;
    double far = 0;
};

Stretch WithinReach(const Ray& ray) {
    const Vector3 toMiddle = Vector3{0, 0, clay::kDepth} - ray.from;
    const double closest = Dot(toMiddle, ray.along);
    const double apart2 = Dot(toMiddle, toMiddle) - closest * closest;
    const double reach2 = clay::kReach * clay::kReach;
    if (apart2 >= reach2) {
        return {};
    }
    const double half = std::sqrt(reach2 - apart2);
    return {std::max(closest - half, 0.0), closest + half};
}

/// @return the distance along the ray to the instrument, negative when it is missed.
double Hit(const Ray& ray) {
    const Stretch stretch = WithinReach(ray);
    double t = stretch.near;
    for (int step = 0; step < kMostSteps && t < stretch.far; ++step) {
        const double d = Distance(ray.from + ray.along * t);
        if (d < kHitDistance) {
            return t;
        }
        t += d * kSafeStep;
    }
    return -1;
}

/// The share of the light that passes, with a soft edge as from a wide window. @param softness the light's width as
/// seen from the table.
double Lit(const Vector3& from, const Vector3& light, double softness) {
    const Ray ray = {from, light};
    const Stretch stretch = WithinReach(ray);
    double share = 1;
    double t = std::max(stretch.near, 0.012);
    constexpr double kShortest = 0.012;
    while (t < stretch.far && share > -1) {
        const double d = Distance(from + light * t);
        share = std::min(share, d / (softness * t));
        t += std::clamp(d * kSafeStep, kShortest, 0.07);
    }
    // The share runs from -1 (behind the whole window's edge) to 1; I. Quilez, "soft shadows", the improved form.
    share = std::max(share, -1.0);
    return (1 + share) * (1 + share) * (2 - share) / 4;
}

/// How open the surroundings of a point are, 0..1. After I. Quilez, "ambient occlusion from a distance field".
double Openness(const Vector3& point, const Vector3& normal) {
    constexpr int kProbes = 6;
    constexpr double kProbeStep = 0.075;
    double shut = 0;
    double weight = 1;
    for (int probe = 1; probe <= kProbes; ++probe) {
        const double reach = probe * kProbeStep;
        const Vector3 at = point + normal * reach;
        const double free = std::min(Distance(at), std::max(at.z, 0.0));
        shut += std::max(reach - free, 0.0) * weight;
        weight *= 0.78;
    }
    return std::clamp(1 - 1.15 * shut, 0.0, 1.0);
}

/// The room as a mirror would show it: a bright window, a narrow one behind, a pale ceiling, a warm table.
double Window(const Vector3& direction, const Vector3& middle, double halfWidth, double halfHeight) {
    const Vector3 side = Normalized(Cross({0, 0, 1}, middle));
    const Vector3 up = Cross(middle, side);
    const double facing = Dot(direction, middle);
    if (facing <= 0) {
        return 0;
    }
    const double x = std::abs(Dot(direction, side)) / facing;
    const double y = std::abs(Dot(direction, up)) / facing;
    constexpr double kEdge = 0.10;
    return (1 - SmoothStep(halfWidth - kEdge, halfWidth + kEdge, x)) *
           (1 - SmoothStep(halfHeight - kEdge, halfHeight + kEdge, y));
}

Vector3 Room(const Vector3& direction, const Vector3& ground) {
    const Vector3 ceiling = {0.95, 0.90, 0.86};
    const Vector3 base = Mix(ground * 0.55, ceiling * 0.55, SmoothStep(-0.25, 0.5, direction.z));
    const double key = Window(direction, Normalized(kKeyLight), 0.42, 0.30);
    const double rim = Window(direction, Normalized({0.75, 0.45, 0.40}), 0.20, 0.35);
    return base + Vector3{1, 0.97, 0.92} * (4.2 * key) + Vector3{1, 0.93, 0.85} * (1.3 * rim);
}

Vector3 ShadeInstrument(const Vector3& point, const Vector3& along, const Vector3& ground) {
    const Vector3 own = ToInstrument(point);
    const clay::Material material = clay::MaterialAt(own);
    const double bare = 1 - material.glaze - material.bore;
    Vector3 normal = TurnedToTable(clay::Normal(own));
    const double grain = clay::Grain(own);

    // Fired clay is faintly mottled and freckled; the glaze pools darker towards the bore.
    const double freckle = SmoothStep(0.56, 0.66, clay::Grain(own * 2.3 + Vector3{7, 3, 1}));
    Vector3 bareColour = Linear(Rgb(0xE36066)) * (1 + 0.07 * grain);
    bareColour = Mix(bareColour, Linear(Rgb(0x8E2F3C)), 0.50 * freckle);
    const Vector3 glazeColour = Linear(Rgb(0xFFB81C));
    const Vector3 albedo = bareColour * bare + glazeColour * material.glaze + Linear(Rgb(0x8A3A30)) * material.bore;

    const Vector3 key = Normalized(kKeyLight);
    const Vector3 lifted = point + normal * 0.004;
    const double lit = Lit(lifted, key, 0.16);
    const double open = Openness(point, normal);
    // Clay lets a little light under its skin: the terminator is soft and warm.
    const double wrap = 0.22 * bare;
    const double facing = std::max((Dot(normal, key) + wrap) / (1 + wrap), 0.0);
    const double sky = 0.5 + 0.5 * normal.z;
    const Vector3 light = Vector3{1.0, 0.94, 0.86} * (2.2 * facing * lit) +
                          Vector3{0.80, 0.82, 0.92} * (0.62 * sky * open) + ground * (0.55 * (1 - sky) * open) +
                          Vector3{1.0, 0.55, 0.45} * (0.10 * bare * open);
    Vector3 out = albedo * light * 0.55;

    const Vector3 mirrored = along - normal * (2 * Dot(along, normal));
    const double grazing = std::pow(1 - std::clamp(-Dot(along, normal), 0.0, 1.0), 5.0);
    const double gloss = (0.035 + 0.55 * grazing) * material.glaze + (0.022 + 0.22 * grazing) * bare;
    const double clear = std::clamp(open * 1.3 - 0.2, 0.0, 1.0) * (0.35 + 0.65 * lit);
    out = out + Room(mirrored, ground) * (gloss * clear);
    // The clay's own sheen is broad, as from a waxed surface.
    const Vector3 half = Normalized(key - along);
    const double sheen = std::pow(std::max(Dot(normal, half), 0.0), 24.0) * 0.26 * bare +
                         std::pow(std::max(Dot(normal, half), 0.0), 140.0) * 0.5 * material.glaze;
    return Mix(out + Vector3{1, 0.92, 0.86} * (sheen * lit), Linear(Rgb(0x2A1012)), material.darkness);
}

/// The table: even light, and the instrument's shadow.
Vector3 ShadeTable(const Vector3& point, const Vector3& paper) {
    constexpr double kShadowReach = 3.2;
    if (point.x * point.x + point.y * point.y > kShadowReach * kShadowReach) {
        return paper;
    }
    const double lit = Lit(point + Vector3{0, 0, 0.003}, Normalized(kKeyLight), 0.22);
    const double open = Openness(point, {0, 0, 1});
    const double light = (0.30 + 0.70 * lit) * (0.25 + 0.75 * open);
    // A shadow on warm paper is warm: it goes towards terracotta, not towards grey.
    return Mix(paper * Linear(Rgb(0xB06A50)), paper, light);
}

std::uint8_t Encoded(double linear) {
    constexpr double kGamma = 1 / 2.2;
    return static_cast<std::uint8_t>(std::lround(255 * std::pow(std::clamp(linear, 0.0, 1.0), kGamma)));
}

/// The lamp's light, from 1 where it is full to 0 beyond its edge. Blue fades first, as under a bulb that is dimmed.
/// The picture ends in black on every side, because black is what surrounds it on a screen of other proportions.
Vector3 Lamplight(double light) {
    constexpr double kGreenFades = 1.12;
    constexpr double kBlueFades = 1.28;
    return {light, std::pow(light, kGreenFades), std::pow(light, kBlueFades)};
}

/// Keeps bright places from clipping hard.
double Shoulder(double v) {
    constexpr double kKnee = 0.80;
    return v < kKnee ? v : kKnee + (1 - kKnee) * (1 - std::exp(-(v - kKnee) / (1 - kKnee)));
}

class Camera {
public:
    Camera(int width, int height) : width_(width), height_(height) {
        const Vector3 target = {0, 0, clay::kDepth};
        forward_ = {0, std::cos(kElevation), -std::sin(kElevation)};
        right_ = {1, 0, 0};
        up_ = Cross(right_, forward_);
        place_ = target - forward_ * kCameraDistance;
    }

    Ray At(double x, double y) const {
        const double unit = kFieldWidth / width_;
        const double right = (x - width_ / 2.0) * unit;
        const double up = (kMiddleAt * height_ - y) * unit;
        return {place_, Normalized(forward_ * kCameraDistance + right_ * right + up_ * up)};
    }

private:
    int width_;
    int height_;
    Vector3 place_;
    Vector3 forward_;
    Vector3 right_;
    Vector3 up_;
};

}  // namespace

void PhotographOcarina(Picture& picture) {
    cairo_surface_flush(picture.Surface());
    unsigned char* data = cairo_image_surface_get_data(picture.Surface());
    const int width = cairo_image_surface_get_width(picture.Surface());
    const int height = cairo_image_surface_get_height(picture.Surface());
    const int stride = cairo_image_surface_get_stride(picture.Surface());
    const Camera camera(width, height);
    const Vector3 paper = Linear(Rgb(0xFFC79A));

    const auto shade = [&](double x, double y) {
        const double across = (x - width / 2.0) / (width / 2.0);
        const double along = (y - kPoolAt * height) / (width / 2.0);
        const double distance = std::sqrt(across * across + along * along);
        const Ray ray = camera.At(x, y);
        const double t = Hit(ray);
        if (t >= 0) {
            const Vector3 c = ShadeInstrument(ray.from + ray.along * t, ray.along, paper);
            return Vector3{Shoulder(c.x), Shoulder(c.y), Shoulder(c.z)} *
                   Lamplight(1 - SmoothStep(kPoolCoreOnClay, kPoolEdgeOnClay, distance));
        }
        const double light = 1 - SmoothStep(0, kPoolEdge, distance);
        return ShadeTable(ray.from + ray.along * (-ray.from.z / ray.along.z), paper) *
               Lamplight(std::pow(light, kPoolSoftness));
    };
    std::atomic<int> nextRow = 0;
    const auto work = [&] {
        for (int y = nextRow++; y < height; y = nextRow++) {
            for (int x = 0; x < width; ++x) {
                const Ray ray = camera.At(x + 0.5, y + 0.5);
                const Stretch stretch = WithinReach(ray);
                const int samples = stretch.near <= stretch.far ? kSamples : 1;
                Vector3 sum;
                for (int sample = 0; sample < samples * samples; ++sample) {
                    const int column = sample % samples;
                    const int row = sample / samples;
                    sum = sum + shade(x + (column + 0.5) / samples, y + (row + 0.5) / samples);
                }
                sum = sum * (1.0 / (samples * samples));
                const std::uint32_t pixel = 0xFF000000U | static_cast<std::uint32_t>(Encoded(sum.x) << 16) |
                                            static_cast<std::uint32_t>(Encoded(sum.y) << 8) | Encoded(sum.z);
                reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride)[x] = pixel;
            }
        }
    };
    std::thread other(work);
    work();
    other.join();
    cairo_surface_mark_dirty(picture.Surface());
}

}  // namespace pictures
