#pragma once

namespace host {

/// What the keyboard does beside the screen: breath and the phone's volume keys. UI thread.
class PhoneKeyListener {
public:
    /// 0..1; 0 when the last key that gives breath was lifted.
    virtual void OnKeyBreath(double level) = 0;
    /// +1 or -1.
    virtual void OnVolumeKey(int step) = 0;

protected:
    ~PhoneKeyListener() = default;
};

}  // namespace host
