#pragma once

/// Hears of a hole's press and release, which alternate, a press first. Never deleted through this interface.
class JHoleListener {
public:
    /// A finger went down on a hole that was not covered.
    virtual void OnHolePressed(int holeIndex) = 0;
    /// A covered hole was released.
    virtual void OnHoleReleased(int holeIndex) = 0;

protected:
    ~JHoleListener() = default;
};
