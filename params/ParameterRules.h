#pragma once

#include "host/PluginUpdate.h"

#include <optional>
#include <span>

namespace orbel {

// Which parameters of the inspector are greyed out. Nothing but looks: values of disabled
// parameters count as they are.

/// When the user changes the parameter `changed`, the parameters `dependents` are enabled if its
/// new value is exactly `enablingValue` and disabled otherwise.
struct EnablingRule {
    int changed;
    bool menu; ///< the value is a menu index, else a toggle
    int enablingValue;
    std::span<const int> dependents; ///< in the order in which they are switched
};

/// The rules, in the order in which they are tested. Two name parameters that are not declared any
/// more: kept for hosts that still send their numbers.
[[nodiscard]] std::span<const EnablingRule> enablingRules();

/// Applies every rule for the parameter `changed`. `read` gives the parameter's new value, or
/// nothing when it cannot be read: the rule is then left out.
template<class Read>
void applyEnablingRules(int changed, Read read, PluginUpdate_API& update) {
    for (const EnablingRule& rule : enablingRules()) {
        if (rule.changed != changed) {
            continue;
        }
        const std::optional<int> value = read(rule);
        for (const int dependent : value ? rule.dependents : std::span<const int>{}) {
            update.setEnable(dependent, 0, *value == rule.enablingValue);
        }
    }
}

} // namespace orbel
