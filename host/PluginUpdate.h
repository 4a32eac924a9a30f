#pragma once

namespace orbel {

/// Writes parameter values and the state of their controls back to the host: never while rendering,
/// only in answer to something that the user did. `param` is an identifier of
/// `params/ParameterTable.h`, `sub` a sub-index (0 everywhere in this program). Units are those of
/// the reads in `PluginHost_API`. Values are not checked, and a host that does not take one keeps
/// what it had; nothing is reported. [main thread]
class PluginUpdate_API {
public:
    /// Whether anything can be written at all; if not, the rest has no effect.
    virtual bool isValid() = 0;
    virtual void setFloatValue(int param, int sub, double value) = 0;
    virtual void setAngleValue(int param, int sub, double degrees) = 0;
    /// Of a menu, the entry counted from 0.
    virtual void setIntValue(int param, int sub, int value) = 0;
    virtual void setBoolValue(int param, int sub, bool value) = 0;
    /// As `setIntValue`.
    virtual void setEnumValue(int param, int sub, unsigned value) = 0;
    /// Fractions of the frame from its top left corner.
    virtual void setPoint2DValue(int param, int sub, double x, double y) = 0;
    /// 0..1 each.
    virtual void setColorValue(int param, int sub, double r, double g, double b) = 0;
    /// Whether the control can be used; its value counts all the same.
    virtual void setEnable(int param, int sub, bool enable) = 0;
    /// Whether a group shows its parameters.
    virtual void setGroupOpen(int param, int sub, bool open) = 0;
    /// What the control is called, UTF-8.
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
