#include "doors/fxplug/ParameterAccess.h"

#include "doors/fxplug/HostKind.h"

#include <bit>
#include <cstdint>

namespace orbel {

namespace {

constexpr double DEGREES_PER_RADIAN = 57.29577951308232;

double turnedOver(double y) {
    return isMotion() ? 1.0 - y : y;
}

UInt32 parm(int param) {
    return static_cast<UInt32>(param);
}

/// A number that the host may write, for what has to be converted then and only then.
class Place {
public:
    double* address() { return &m_value; }
    [[nodiscard]] bool isWritten() const {
        return std::bit_cast<std::uint64_t>(m_value) != UNWRITTEN;
    }
    [[nodiscard]] double value() const { return m_value; }

private:
    // A NaN that no arithmetic gives.
    static constexpr std::uint64_t UNWRITTEN = 0x7FF8'5EED'0B5E'55EDU;
    double m_value = std::bit_cast<double>(UNWRITTEN);
};

} // namespace

bool FxPlugParameters::getFloat(int param, double& value) const {
    return m_api != nil && [m_api getFloatValue:&value fromParm:parm(param) atTime:m_frame];
}

bool FxPlugParameters::getAngle(int param, double& degrees) const {
    Place radians;
    const bool known = getFloat(param, *radians.address());
    if (radians.isWritten()) {
        degrees = radians.value() * DEGREES_PER_RADIAN;
    }
    return known;
}

bool FxPlugParameters::getByte(int param, int& value) const {
    auto byte = static_cast<BOOL>(value);
    const bool known = m_api != nil && [m_api getBoolValue:&byte
                                                  fromParm:parm(param)
                                                    atTime:m_frame];
    value = static_cast<int>(byte);
    return known;
}

bool FxPlugParameters::getInt(int param, int& value) const {
    return m_api != nil && [m_api getIntValue:&value fromParm:parm(param) atTime:m_frame];
}

bool FxPlugParameters::getColor(int param, double& red, double& green, double& blue) const {
    return m_api != nil && [m_api getRedValue:&red
                                   GreenValue:&green
                                    BlueValue:&blue
                                     fromParm:parm(param)
                                       atTime:m_frame];
}

bool FxPlugParameters::getPoint(int param, double& x, double& y) const {
    Place height;
    const bool known = m_api != nil && [m_api getXValue:&x
                                                 YValue:height.address()
                                               fromParm:parm(param)
                                                 atTime:m_frame];
    if (height.isWritten()) {
        y = turnedOver(height.value());
    }
    return known;
}

void FxPlugParameterReader::readToggle(int param, bool& value) {
    int byte = value ? 1 : 0;
    m_parameters.getByte(param, byte);
    value = byte == 1;
}

bool FxPlugParameterWriter::setFloat(int param, double value) const {
    return m_api != nil && [m_api setFloatValue:value toParm:parm(param) atTime:m_frame];
}

bool FxPlugParameterWriter::setAngle(int param, double degrees) const {
    return setFloat(param, degrees / DEGREES_PER_RADIAN);
}

bool FxPlugParameterWriter::setInt(int param, int value) const {
    return m_api != nil && [m_api setIntValue:value toParm:parm(param) atTime:m_frame];
}

bool FxPlugParameterWriter::setBool(int param, bool value) const {
    return m_api != nil && [m_api setBoolValue:value ? YES : NO toParm:parm(param) atTime:m_frame];
}

bool FxPlugParameterWriter::setColor(int param, double red, double green, double blue) const {
    return m_api != nil && [m_api setRedValue:red
                                   GreenValue:green
                                    BlueValue:blue
                                       toParm:parm(param)
                                       atTime:m_frame];
}

bool FxPlugParameterWriter::setPoint(int param, double x, double y) const {
    return m_api != nil && [m_api setXValue:x
                                     YValue:turnedOver(y)
                                     toParm:parm(param)
                                     atTime:m_frame];
}

} // namespace orbel
