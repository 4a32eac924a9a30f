#pragma once

namespace orbel {

/// Reads parameters at one fixed time, in the user's units (percent, degrees, points with y
/// downwards). What the host writes is taken; what it does not write leaves the output alone.
/// `param` is an identifier of `params/ParameterTable.h`. [render thread]
class ParameterReader {
public:
    virtual void readFloat(int param, double& value) = 0;
    virtual void readAngle(int param, double& degrees) = 0;
    /// True only when the host's answer is exactly 1.
    virtual void readToggle(int param, bool& value) = 0;
    /// The entry, counted from 0.
    virtual void readMenu(int param, int& index) = 0;
    /// 0..1 each.
    virtual void readColor(int param, double& red, double& green, double& blue) = 0;
    /// Fractions of the frame from its top left corner.
    virtual void readPoint(int param, double& x, double& y) = 0;

protected:
    ~ParameterReader() = default;
};

} // namespace orbel
