#include "tests/doors/ofx/HostProperties.h"

#include "doors/ofx/platform/OfxNames.h"

namespace orbel::ofxtest {

namespace {

template<typename T>
OfxStatus setValue(OfxPropertySetHandle handle, const char* name, int index, T value) {
    if (handle == nullptr) {
        return ofx::STAT_ERR_BAD_HANDLE;
    }
    PropertySet& set = PropertySet::of(handle);
    const auto fault = [&](const std::string& text, OfxStatus status) {
        set.faults.push_back(std::string(name) + ": " + text);
        return status;
    };
    if (set.readOnly) {
        return fault("set where nothing may be set", ofx::STAT_ERR_VALUE);
    }
    if (set.rules != nullptr) {
        const auto rule = set.rules->find(name);
        if (rule == set.rules->end()) {
            return fault("no such property", ofx::STAT_ERR_UNKNOWN);
        }
        if (!std::holds_alternative<T>(rule->second.type)) {
            return fault("wrong type", ofx::STAT_ERR_VALUE);
        }
        if (rule->second.dimension != 0 && index >= rule->second.dimension) {
            return fault("index too large", ofx::STAT_ERR_BAD_INDEX);
        }
    }
    std::vector<PropertyValue>& values = set.values[name];
    if (index < 0 || static_cast<std::size_t>(index) > values.size()) {
        return fault("index leaves a gap", ofx::STAT_ERR_BAD_INDEX);
    }
    values.resize(std::max(values.size(), static_cast<std::size_t>(index) + 1));
    values[static_cast<std::size_t>(index)] = value;
    return ofx::STAT_OK;
}

OfxStatus setString(OfxPropertySetHandle handle, const char* name, int index, const char* value) {
    return setValue(handle, name, index, std::string(value));
}

template<typename T, typename Out>
OfxStatus getValue(OfxPropertySetHandle handle, const char* name, int index, Out* out) {
    if (handle == nullptr) {
        return ofx::STAT_ERR_BAD_HANDLE;
    }
    PropertySet& set = PropertySet::of(handle);
    if (set.silent) {
        return ofx::STAT_OK;
    }
    const auto found = set.values.find(name);
    if (found == set.values.end()) {
        return ofx::STAT_ERR_UNKNOWN;
    }
    if (index < 0 || static_cast<std::size_t>(index) >= found->second.size()) {
        return ofx::STAT_ERR_BAD_INDEX;
    }
    T* const value = std::get_if<T>(&found->second[static_cast<std::size_t>(index)]);
    if (value == nullptr) {
        set.faults.push_back(std::string(name) + ": read as another type");
        return ofx::STAT_ERR_VALUE;
    }
    if constexpr (std::is_same_v<T, std::string>) {
        *out = value->data();
    } else {
        *out = *value;
    }
    return ofx::STAT_OK;
}

// The plug-in under test must come by with single values.
template<typename... Args>
OfxStatus refuse(OfxPropertySetHandle, const char*, Args...) {
    return ofx::STAT_ERR_UNSUPPORTED;
}

const PropertyValue INT = 0;
const PropertyValue DOUBLE = 0.0;
const PropertyValue STRING = std::string();
const PropertyValue POINTER = static_cast<void*>(nullptr);

PropertyRules joined(PropertyRules rules, const PropertyRules& more) {
    rules.insert(more.begin(), more.end());
    return rules;
}

const PropertyRules LABELS{
    {"OfxPropLabel", {STRING}}, {"OfxPropShortLabel", {STRING}}, {"OfxPropLongLabel", {STRING}}};

PropertyRules numberRules(int dimension) {
    PropertyRules rules;
    for (const char* const name : {"Default", "Min", "Max", "DisplayMin", "DisplayMax"}) {
        rules["OfxParamProp" + std::string(name)] = {DOUBLE, dimension};
    }
    rules["OfxParamPropIncrement"] = {DOUBLE};
    rules["OfxParamPropDigits"] = {INT};
    rules["OfxParamPropDoubleType"] = {STRING};
    return rules;
}

std::map<std::string, PropertyRules> allParameterRules() {
    const PropertyRules any = joined(LABELS, {{"OfxParamPropHint", {STRING}},
                                              {"OfxParamPropScriptName", {STRING}},
                                              {"OfxParamPropParent", {STRING}},
                                              {"OfxParamPropEnabled", {INT}},
                                              {"OfxParamPropSecret", {INT}}});
    const PropertyRules value = joined(any, {{"OfxParamPropAnimates", {INT}},
                                             {"OfxParamPropPersistant", {INT}},
                                             {"OfxParamPropEvaluateOnChange", {INT}},
                                             {"OfxParamPropCanUndo", {INT}}});
    return {
        {"OfxParamTypeDouble", joined(value, numberRules(1))},
        {"OfxParamTypeDouble2D", joined(value, numberRules(2))},
        {"OfxParamTypeRGB", joined(value, {{"OfxParamPropDefault", {DOUBLE, 3}}})},
        {"OfxParamTypeBoolean", joined(value, {{"OfxParamPropDefault", {INT}}})},
        {"OfxParamTypeChoice", joined(value, {{"OfxParamPropDefault", {INT}},
                                              {"OfxParamPropChoiceOption", {STRING, 0}}})},
        {"OfxParamTypeString", joined(value, {{"OfxParamPropDefault", {STRING}},
                                              {"OfxParamPropStringMode", {STRING}},
                                              {"OfxParamPropStringFilePathExists", {INT}}})},
        {"OfxParamTypeGroup", joined(any, {{"OfxParamPropGroupOpen", {INT}}})},
        {"OfxParamTypePage", joined(LABELS, {{"OfxParamPropPageChild", {STRING, 0}}})},
    };
}

} // namespace

const OfxPropertySuiteV1* propertySuite() {
    static const OfxPropertySuiteV1 suite{setValue<void*>,
                                          setString,
                                          setValue<double>,
                                          setValue<int>,
                                          refuse<int, void* const*>,
                                          refuse<int, const char* const*>,
                                          refuse<int, const double*>,
                                          refuse<int, const int*>,
                                          getValue<void*, void*>,
                                          getValue<std::string, char*>,
                                          getValue<double, double>,
                                          getValue<int, int>,
                                          refuse<int, void**>,
                                          refuse<int, char**>,
                                          refuse<int, double*>,
                                          refuse<int, int*>,
                                          refuse<>,
                                          refuse<int*>};
    return &suite;
}

const PropertyRules& effectRules() {
    static const PropertyRules rules =
        joined(LABELS, {{"OfxPropPluginDescription", {STRING}},
                        {"OfxPropVersionLabel", {STRING}},
                        {"OfxImageEffectPluginPropGrouping", {STRING}},
                        {"OfxImageEffectPropSupportedContexts", {STRING, 0}},
                        {"OfxImageEffectPropSupportedPixelDepths", {STRING, 0}},
                        {"OfxImageEffectPluginRenderThreadSafety", {STRING}},
                        {"OfxImageEffectPluginPropHostFrameThreading", {INT}},
                        {"OfxImageEffectPluginPropSingleInstance", {INT}},
                        {"OfxImageEffectInstancePropSequentialRender", {INT}},
                        {"OfxImageEffectPropSupportsTiles", {INT}},
                        {"OfxImageEffectPropSupportsMultiResolution", {INT}},
                        {"OfxImageEffectPropTemporalClipAccess", {INT}},
                        {"OfxImageEffectPropMultipleClipDepths", {INT}},
                        {"OfxImageEffectPropSupportsMultipleClipPARs", {INT}},
                        {"OfxImageEffectPluginPropFieldRenderTwiceAlways", {INT}},
                        {"OfxImageEffectPropClipPreferencesSlaveParam", {STRING, 0}}});
    return rules;
}

const PropertyRules& clipRules() {
    static const PropertyRules rules =
        joined(LABELS, {{"OfxImageEffectPropSupportedComponents", {STRING, 0}},
                        {"OfxImageEffectPropTemporalClipAccess", {INT}},
                        {"OfxImageEffectPropSupportsTiles", {INT}},
                        {"OfxImageClipPropOptional", {INT}},
                        {"OfxImageClipPropIsMask", {INT}},
                        {"OfxImageClipPropFieldExtraction", {STRING}}});
    return rules;
}

const PropertyRules& parameterRules(const std::string& type) {
    static const std::map<std::string, PropertyRules> all = allParameterRules();
    static const PropertyRules none;
    const auto found = all.find(type);
    return found == all.end() ? none : found->second;
}

} // namespace orbel::ofxtest
