#pragma once

namespace orbel {

/// Writes parameter values and parameter UI state back to the host. `param` is a parameter
/// identifier, `sub` a sub-index (0 everywhere in this program). [main thread]
class PluginUpdate_API {
public:
    virtual bool isValid() = 0;
    virtual void setFloatValue(int param, int sub, double value) = 0;
    virtual void setAngleValue(int param, int sub, double degrees) = 0;
    virtual void setIntValue(int param, int sub, int value) = 0;
    virtual void setBoolValue(int param, int sub, bool value) = 0;
    virtual void setEnumValue(int param, int sub, unsigned value) = 0;
    virtual void setPoint2DValue(int param, int sub, double x, double y) = 0;
    virtual void setColorValue(int param, int sub, double r, double g, double b) = 0;
    virtual void setEnable(int param, int sub, bool enable) = 0;
    virtual void setGroupOpen(int param, int sub, bool open) = 0;
    virtual void setParamName(int param, int sub, const char* name) = 0;
    /// Renames, then enables or disables, in that order.
    virtual void setParamNameEnable(int param, int sub, const char* name, bool enable) {
        setParamName(param, sub, name);
        setEnable(param, sub, enable);
    }

protected:
    // Always destroyed as its concrete type.
    ~PluginUpdate_API() = default;
};

} // namespace orbel
