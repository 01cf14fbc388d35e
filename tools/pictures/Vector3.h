#pragma once

#include <algorithm>
#include <cmath>

namespace pictures {

/// Three numbers: a place, a direction or linear light. Plain value.
struct Vector3 {
    double x = 0;
    double y = 0;
    double z = 0;
};

constexpr Vector3 operator+(const Vector3& a, const Vector3& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
constexpr Vector3 operator-(const Vector3& a, const Vector3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
constexpr Vector3 operator*(const Vector3& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}
constexpr Vector3 operator*(const Vector3& a, const Vector3& b) {
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
constexpr double Dot(const Vector3& a, const Vector3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
constexpr Vector3 Cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
inline double Length(const Vector3& a) {
    return std::sqrt(Dot(a, a));
}
inline Vector3 Normalized(const Vector3& a) {
    return a * (1 / Length(a));
}
constexpr Vector3 Mix(const Vector3& from, const Vector3& to, double share) {
    return from + (to - from) * share;
}

/// 0 up to `from`, 1 beyond `to`, and an even slope between.
inline double SmoothStep(double from, double to, double value) {
    const double t = std::clamp((value - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}

}  // namespace pictures
