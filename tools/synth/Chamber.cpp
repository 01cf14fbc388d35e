#include "Chamber.h"

#include "Loop.h"

#include <cmath>

namespace synth {
namespace {

constexpr double kSoundSpeed = 343.0;        // m/s, at 20 degrees
constexpr double kAirViscosity = 1.5e-5;     // m^2/s, kinematic
constexpr double kVolume = 0.8e-4;           // m^3, a clay body that fits two hands
constexpr double kBodyLength = 0.085;        // m, inside
constexpr double kMouthToEdge = 0.007;       // m, the way of the jet
constexpr double kJetThickness = 0.001;      // m
constexpr double kHoleRadius = 0.0038;       // m, of the mouth and of a finger hole
constexpr double kJetQuality = 52.0;         // vortices shed at the edge
constexpr double kWaveToJetSpeed = 0.4;      // a wave on the jet against the jet (F&R ch. 16, Coltman)
constexpr double kTurbulenceStrouhal = 0.2;  // f h / U at the top of a plane jet's spectrum

}  // namespace

double Chamber::Conductance() const {
    const double omega = 2.0 * kPi * frequency_;
    return kVolume * omega * omega / (kSoundSpeed * kSoundSpeed);
}

double Chamber::Quality() const {
    const double omega = 2.0 * kPi * frequency_;
    // A small source radiates into the whole space with the resistance rho w^2 / (4 pi c) (F&R ch. 7), against the
    // inertance rho / S; so every hole that opens damps the resonance more.
    const double radiation = 4.0 * kPi * kSoundSpeed / (omega * Conductance());
    // Friction in the boundary layer of a hole's wall, of thickness sqrt(2 nu / w): Q is radius over thickness.
    const double friction = kHoleRadius / std::sqrt(2.0 * kAirViscosity / omega);
    return 1.0 / (1.0 / radiation + 1.0 / friction + 1.0 / kJetQuality);
}

double Chamber::RingSeconds() const {
    return Quality() / (kPi * frequency_);
}

double Chamber::JetSpeed() const {
    // The jet drives best when its wave crosses to the edge in half a period (F&R ch. 16): l / (0.4 U) = 1 / (2 f).
    return 2.0 * frequency_ * kMouthToEdge / kWaveToJetSpeed;
}

double Chamber::TurbulenceCorner() const {
    return kTurbulenceStrouhal * JetSpeed() / kJetThickness;
}

double Chamber::StandingWave() {
    return kSoundSpeed / (2.0 * kBodyLength);
}

}  // namespace synth
