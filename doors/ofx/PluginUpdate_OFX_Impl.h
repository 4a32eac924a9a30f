#pragma once

#include "doors/ofx/EffectInstance.h"
#include "host/PluginUpdate.h"

namespace orbel {

/// Writes values and states of parameters back to the host; parameters that it does not have are
/// left out. Values take the units of the table. [main thread, where the host allows writing]
class PluginUpdate_OFX_Impl final : public PluginUpdate_API {
public:
    /// Borrowed.
    explicit PluginUpdate_OFX_Impl(const ofx::EffectInstance* instance) : m_instance(instance) {}

    bool isValid() override { return true; }
    void setFloatValue(int param, int sub, double value) override;
    void setAngleValue(int param, int sub, double degrees) override;
    void setIntValue(int param, int sub, int value) override;
    void setBoolValue(int param, int sub, bool value) override;
    void setEnumValue(int param, int sub, unsigned value) override;
    void setPoint2DValue(int param, int sub, double x, double y) override;
    void setColorValue(int param, int sub, double r, double g, double b) override;
    void setEnable(int param, int sub, bool enable) override;
    void setGroupOpen(int param, int sub, bool open) override;
    void setParamName(int param, int sub, const char* label) override;

private:
    template<class... Values>
    void set(int param, Values... values) const;
    [[nodiscard]] ofx::Properties properties(int param) const;

    const ofx::EffectInstance* m_instance;
};

} // namespace orbel
