#pragma once

#include "host/PluginUpdate.h"

namespace orbel {

class FxPlugParameterWriter;
class PluginHost_FXPLUG_Impl;

/// Writes parameters through the host object's setting interface, at its write time; without that
/// interface nothing happens.
class PluginUpdate_FXPLUG_Impl final : public PluginUpdate_API {
public:
    /// Borrows the host object.
    explicit PluginUpdate_FXPLUG_Impl(PluginHost_FXPLUG_Impl* host) : m_host(host) {}
    bool isValid() override;
    void setFloatValue(int param, int sub, double value) override;
    void setAngleValue(int param, int sub, double degrees) override;
    void setIntValue(int param, int sub, int value) override;
    void setBoolValue(int param, int sub, bool value) override;
    void setEnumValue(int param, int sub, unsigned value) override;
    void setPoint2DValue(int param, int sub, double x, double y) override;
    void setColorValue(int param, int sub, double r, double g, double b) override;
    void setEnable(int param, int sub, bool enable) override;
    void setGroupOpen(int param, int sub, bool open) override;
    /// These hosts cannot rename a parameter.
    void setParamName(int /*param*/, int /*sub*/, const char* /*name*/) override {}

private:
    [[nodiscard]] FxPlugParameterWriter writer() const;
    void setFlag(int param, unsigned flag, bool set);

    PluginHost_FXPLUG_Impl* m_host;
};

} // namespace orbel
