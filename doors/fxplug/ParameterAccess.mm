#include "doors/fxplug/ParameterAccess.h"

#include "doors/fxplug/HostKind.h"

namespace orbel {

namespace {

constexpr double DEGREES_PER_RADIAN = 57.29577951308232;

double turnedOver(double y) {
    return isMotion() ? 1.0 - y : y;
}

UInt32 parm(int param) {
    return static_cast<UInt32>(param);
}

} // namespace

bool FxPlugParameters::getFloat(int param, double& value) const {
    double read = 0.0;
    if (m_api == nil || ![m_api getFloatValue:&read fromParm:parm(param) atTime:m_frame]) {
        return false;
    }
    value = read;
    return true;
}

bool FxPlugParameters::getAngle(int param, double& degrees) const {
    double radians = 0.0;
    if (!getFloat(param, radians)) {
        return false;
    }
    degrees = radians * DEGREES_PER_RADIAN;
    return true;
}

bool FxPlugParameters::getByte(int param, int& value) const {
    BOOL read = NO;
    if (m_api == nil || ![m_api getBoolValue:&read fromParm:parm(param) atTime:m_frame]) {
        return false;
    }
    value = static_cast<int>(read);
    return true;
}

bool FxPlugParameters::getInt(int param, int& value) const {
    int read = 0;
    if (m_api == nil || ![m_api getIntValue:&read fromParm:parm(param) atTime:m_frame]) {
        return false;
    }
    value = read;
    return true;
}

bool FxPlugParameters::getColor(int param, double& red, double& green, double& blue) const {
    double r = 0.0;
    double g = 0.0;
    double b = 0.0;
    if (m_api == nil || ![m_api getRedValue:&r
                                 GreenValue:&g
                                  BlueValue:&b
                                   fromParm:parm(param)
                                     atTime:m_frame]) {
        return false;
    }
    red = r;
    green = g;
    blue = b;
    return true;
}

bool FxPlugParameters::getPoint(int param, double& x, double& y) const {
    double readX = 0.0;
    double readY = 0.0;
    if (m_api == nil || ![m_api getXValue:&readX
                                   YValue:&readY
                                 fromParm:parm(param)
                                   atTime:m_frame]) {
        return false;
    }
    x = readX;
    y = turnedOver(readY);
    return true;
}

void FxPlugParameterReader::readToggle(int param, bool& value) {
    int byte = 0;
    if (m_parameters.getByte(param, byte)) {
        value = byte == 1;
    }
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
