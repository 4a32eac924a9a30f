#pragma once

#include "doors/ofx/platform/OfxTypes.h"

#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace orbel::ofxtest {

using PropertyValue = std::variant<int, double, std::string, void*>;

/// Which properties a set knows, of which type and with how many values (0: any number). The value
/// is an example of the type.
struct PropertyRule {
    PropertyValue type;
    int dimension = 1;
};
using PropertyRules = std::map<std::string, PropertyRule>;

/// A property set of the host. Whatever is done to it that the interface does not allow is noted.
class PropertySet {
public:
    std::map<std::string, std::vector<PropertyValue>> values;
    const PropertyRules* rules = nullptr; ///< null: everything may be set
    bool readOnly = false;                ///< for the plug-in
    bool silent = false;                  ///< reads answer that all went well and write nothing
    std::vector<std::string> faults;

    void set(const std::string& name, std::vector<PropertyValue> all) {
        values[name] = std::move(all);
    }
    template<typename T>
    [[nodiscard]] T get(const std::string& name, std::size_t index, T fallback) const {
        const auto found = values.find(name);
        if (found == values.end() || index >= found->second.size()) {
            return fallback;
        }
        const T* const value = std::get_if<T>(&found->second[index]);
        return value == nullptr ? fallback : *value;
    }
    [[nodiscard]] std::string text(const std::string& name) const {
        return get<std::string>(name, 0, "");
    }

    [[nodiscard]] OfxPropertySetHandle handle() {
        return static_cast<OfxPropertySetHandle>(static_cast<void*>(this));
    }
    [[nodiscard]] static PropertySet& of(OfxPropertySetHandle handle) {
        return *static_cast<PropertySet*>(static_cast<void*>(handle));
    }
};

[[nodiscard]] const OfxPropertySuiteV1* propertySuite();

// What the interface lets a plug-in set.
[[nodiscard]] const PropertyRules& effectRules();
[[nodiscard]] const PropertyRules& clipRules();
/// Of a parameter of a type; empty for a type that does not exist.
[[nodiscard]] const PropertyRules& parameterRules(const std::string& type);

} // namespace orbel::ofxtest
