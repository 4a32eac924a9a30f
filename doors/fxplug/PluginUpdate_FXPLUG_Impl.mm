#include "doors/fxplug/PluginUpdate_FXPLUG_Impl.h"

#include "doors/fxplug/PluginHost_FXPLUG_Impl.h"
#include "params/ParameterTable.h"

namespace orbel {

FxPlugParameterWriter PluginUpdate_FXPLUG_Impl::writer() const {
    return {m_host->setting(), m_host->writeTime()};
}

bool PluginUpdate_FXPLUG_Impl::isValid() {
    return m_host->setting() != nil;
}

void PluginUpdate_FXPLUG_Impl::setFloatValue(int param, int /*sub*/, double value) {
    writer().setFloat(param, value);
}

void PluginUpdate_FXPLUG_Impl::setAngleValue(int param, int /*sub*/, double degrees) {
    writer().setAngle(param, degrees);
}

void PluginUpdate_FXPLUG_Impl::setIntValue(int param, int /*sub*/, int value) {
    writer().setInt(param, value);
}

void PluginUpdate_FXPLUG_Impl::setBoolValue(int param, int /*sub*/, bool value) {
    writer().setBool(param, value);
}

void PluginUpdate_FXPLUG_Impl::setEnumValue(int param, int /*sub*/, unsigned value) {
    writer().setInt(param, static_cast<int>(value));
}

void PluginUpdate_FXPLUG_Impl::setPoint2DValue(int param, int /*sub*/, double x, double y) {
    writer().setPoint(param, x, y);
}

void PluginUpdate_FXPLUG_Impl::setColorValue(int param, int /*sub*/, double r, double g, double b) {
    writer().setColor(param, r, g, b);
}

void PluginUpdate_FXPLUG_Impl::setEnable(int param, int /*sub*/, bool enable) {
    setFlag(param, PARAM_DISABLED, !enable);
}

void PluginUpdate_FXPLUG_Impl::setGroupOpen(int param, int /*sub*/, bool open) {
    setFlag(param, PARAM_COLLAPSED, !open);
}

// The flags are written even when they are the same already, which is meant.
void PluginUpdate_FXPLUG_Impl::setFlag(int param, unsigned flag, bool set) {
    constexpr FxParameterFlags unwritten = ~0U;
    const auto id = static_cast<UInt32>(param);
    FxParameterFlags flags = unwritten;
    [m_host->retrieval() getParameterFlags:&flags fromParm:id];
    if (flags != unwritten) {
        [m_host->setting() setParameterFlags:set ? flags | flag : flags & ~flag toParm:id];
    }
}

} // namespace orbel
