#pragma once

namespace orbel {

/// Reads parameters at one fixed time, in the user's units (percent, degrees, points with y
/// downwards). A parameter that cannot be read leaves the output alone.
class ParameterReader {
public:
    virtual void readFloat(int param, double& value) = 0;
    virtual void readAngle(int param, double& degrees) = 0;
    /// True only when the host's answer is exactly 1.
    virtual void readToggle(int param, bool& value) = 0;
    virtual void readMenu(int param, int& index) = 0;
    virtual void readColor(int param, double& red, double& green, double& blue) = 0;
    virtual void readPoint(int param, double& x, double& y) = 0;

protected:
    ~ParameterReader() = default;
};

} // namespace orbel
