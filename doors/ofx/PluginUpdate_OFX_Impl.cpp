#include "doors/ofx/PluginUpdate_OFX_Impl.h"

#include "doors/ofx/platform/OfxNames.h"
#include "host/Numeric.h"

namespace orbel {

template<class... Values>
void PluginUpdate_OFX_Impl::set(int param, Values... values) const {
    if (auto* const handle = m_instance->param(param)) {
        m_instance->suites().parameter->paramSetValue(handle, values...);
    }
}

ofx::Properties PluginUpdate_OFX_Impl::properties(int param) const {
    return m_instance->suites().ofParam(m_instance->param(param));
}

void PluginUpdate_OFX_Impl::setFloatValue(int param, int /*sub*/, double value) {
    set(param, value);
}

void PluginUpdate_OFX_Impl::setAngleValue(int param, int /*sub*/, double degrees) {
    set(param, degrees);
}

void PluginUpdate_OFX_Impl::setIntValue(int param, int /*sub*/, int value) {
    set(param, value);
}

void PluginUpdate_OFX_Impl::setBoolValue(int param, int /*sub*/, bool value) {
    set(param, value ? 1 : 0);
}

void PluginUpdate_OFX_Impl::setEnumValue(int param, int /*sub*/, unsigned value) {
    set(param, saturateTo<int>(value));
}

void PluginUpdate_OFX_Impl::setPoint2DValue(int param, int /*sub*/, double x, double y) {
    set(param, x, 1.0 - y);
}

void PluginUpdate_OFX_Impl::setColorValue(int param, int /*sub*/, double r, double g, double b) {
    set(param, r, g, b);
}

void PluginUpdate_OFX_Impl::setEnable(int param, int /*sub*/, bool enable) {
    properties(param).setInt(ofx::PARAM_PROP_ENABLED, enable ? 1 : 0);
}

void PluginUpdate_OFX_Impl::setGroupOpen(int param, int /*sub*/, bool open) {
    properties(param).setInt(ofx::PARAM_PROP_GROUP_OPEN, open ? 1 : 0);
}

void PluginUpdate_OFX_Impl::setParamName(int param, int /*sub*/, const char* label) {
    properties(param).setString(ofx::PROP_LABEL, label);
}

} // namespace orbel
