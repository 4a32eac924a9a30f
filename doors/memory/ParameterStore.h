#pragma once

#include <array>
#include <map>
#include <vector>

namespace orbel {

/// A parameter value as the user sees it: one component, two (point) or three (colour); toggles are
/// 0 or 1, menus their index.
using ParameterValue = std::array<double, 3>;

/// How a value moves over the stretch that follows a key. With s the fraction of the stretch:
/// linear s; hold 0; ease 3s^2 - 2s^3; ease-in s^2; ease-out 1 - (1 - s)^2.
enum class Easing { Linear, Hold, Ease, EaseIn, EaseOut };

struct Keyframe {
    double frame;
    ParameterValue value;
    Easing easing;
};

/// The parameter values of one effect instance: declared defaults, constants and keyframes. Values
/// are not checked against their ranges; whoever takes them from a user does that.
class ParameterStore {
public:
    /// Makes a parameter constant.
    void set(int param, const ParameterValue& value);
    void set(int param, double value) { set(param, ParameterValue{value}); }
    /// Animates a parameter; frames must ascend strictly. Before the first key its value holds,
    /// after the last its value holds. No keys: back to the default.
    void setKeys(int param, std::vector<Keyframe> keys);
    /// Whether the parameter has more than one key.
    [[nodiscard]] bool isAnimated(int param) const;
    /// Whether any parameter has.
    [[nodiscard]] bool isAnyAnimated() const;
    /// The value at a frame. False, `value` untouched, for an identifier that is not declared.
    bool evaluate(int param, double frame, ParameterValue& value) const;

private:
    std::map<int, std::vector<Keyframe>> m_tracks;
};

} // namespace orbel
