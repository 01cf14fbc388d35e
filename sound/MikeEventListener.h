#pragma once

/// Hears what the microphone's blocks hold. Never deleted through this interface.
class MikeEventListener {
public:
    virtual void OnMikeStateChanged() = 0;
    /// Once a block. `peak` is its loudest sample, 0..255 with silence at about 128; `crossingRate` grows with the
    /// number of times that the signal swings from one side of silence to the other.
    virtual void OnMikeLevelChanged(unsigned char peak, float crossingRate) = 0;

protected:
    ~MikeEventListener() = default;
};
