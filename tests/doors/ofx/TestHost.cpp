#include "tests/doors/ofx/TestHost.h"

#include "doors/ofx/platform/OfxNames.h"

#include <cstdarg>

namespace orbel::ofxtest {

namespace {

template<typename T, typename Handle>
T* behind(Handle handle) {
    return static_cast<T*>(static_cast<void*>(handle));
}

template<typename Handle, typename T>
Handle handleOf(T* object) {
    return static_cast<Handle>(static_cast<void*>(object));
}

// Whose image it is, for the release.
std::mutex imageMutex;
std::map<OfxPropertySetHandle, Clip*> imageClips;

// --- Image effect suite ---

OfxStatus getPropertySet(OfxImageEffectHandle effect, OfxPropertySetHandle* set) {
    *set = behind<Effect>(effect)->properties.handle();
    return ofx::STAT_OK;
}

OfxStatus getParamSet(OfxImageEffectHandle effect, OfxParamSetHandle* set) {
    *set = handleOf<OfxParamSetHandle>(behind<Effect>(effect));
    return ofx::STAT_OK;
}

OfxStatus clipDefine(OfxImageEffectHandle handle, const char* name, OfxPropertySetHandle* set) {
    auto* const effect = behind<Effect>(handle);
    if (!effect->describing) {
        effect->properties.faults.emplace_back("clip defined outside description");
        return ofx::STAT_ERR_BAD_HANDLE;
    }
    auto& clip = effect->clips[name];
    clip = std::make_unique<Clip>();
    clip->properties.rules = &clipRules();
    *set = clip->properties.handle();
    return ofx::STAT_OK;
}

OfxStatus clipGetHandle(OfxImageEffectHandle handle, const char* name, OfxImageClipHandle* clip,
                        OfxPropertySetHandle* set) {
    auto* const effect = behind<Effect>(handle);
    const auto found = effect->clips.find(name);
    if (effect->describing || found == effect->clips.end()) {
        return ofx::STAT_ERR_BAD_HANDLE;
    }
    *clip = handleOf<OfxImageClipHandle>(found->second.get());
    if (set != nullptr) {
        *set = found->second->properties.handle();
    }
    return ofx::STAT_OK;
}

OfxStatus clipGetPropertySet(OfxImageClipHandle clip, OfxPropertySetHandle* set) {
    *set = behind<Clip>(clip)->properties.handle();
    return ofx::STAT_OK;
}

OfxStatus clipGetImage(OfxImageClipHandle handle, OfxTime time, const OfxRectD*,
                       OfxPropertySetHandle* image) {
    auto* const clip = behind<Clip>(handle);
    PropertySet* const found = clip->image ? clip->image(time) : nullptr;
    if (found == nullptr) {
        return ofx::STAT_FAILED;
    }
    ++clip->held;
    const std::lock_guard lock(imageMutex);
    imageClips[found->handle()] = clip;
    *image = found->handle();
    return ofx::STAT_OK;
}

OfxStatus clipReleaseImage(OfxPropertySetHandle image) {
    const std::lock_guard lock(imageMutex);
    --imageClips.at(image)->held;
    return ofx::STAT_OK;
}

OfxStatus clipGetRegion(OfxImageClipHandle clip, OfxTime, OfxRectD* bounds) {
    const OfxRectD& region = behind<Clip>(clip)->region;
    if (region.x1 == region.x2) {
        return ofx::STAT_FAILED;
    }
    *bounds = region;
    return ofx::STAT_OK;
}

int abortRender(OfxImageEffectHandle handle) {
    auto* const effect = behind<Effect>(handle);
    return ++effect->abortCalls >= effect->abortAt ? 1 : 0;
}

// --- Parameter suite ---

OfxStatus paramDefine(OfxParamSetHandle set, const char* type, const char* name,
                      OfxPropertySetHandle* properties) {
    auto* const effect = behind<Effect>(set);
    if (parameterRules(type).empty()) {
        effect->properties.faults.push_back(std::string(name) + ": no such type: " + type);
        return ofx::STAT_ERR_UNKNOWN;
    }
    if (!effect->describing || effect->params.contains(name)) {
        effect->properties.faults.push_back(std::string(name) + ": declared twice, or too late");
        return ofx::STAT_ERR_EXISTS;
    }
    auto& param = effect->params[name];
    param = std::make_unique<Param>();
    param->type = type;
    param->properties.rules = &parameterRules(type);
    effect->order.emplace_back(name);
    *properties = param->properties.handle();
    return ofx::STAT_OK;
}

OfxStatus paramGetHandle(OfxParamSetHandle set, const char* name, OfxParamHandle* handle,
                         OfxPropertySetHandle* properties) {
    auto* const effect = behind<Effect>(set);
    const auto found = effect->params.find(name);
    if (found == effect->params.end() || effect->noParams) {
        return ofx::STAT_ERR_UNKNOWN;
    }
    *handle = handleOf<OfxParamHandle>(found->second.get());
    if (properties != nullptr) {
        *properties = found->second->properties.handle();
    }
    return ofx::STAT_OK;
}

OfxStatus paramSetGetPropertySet(OfxParamSetHandle, OfxPropertySetHandle*) {
    return ofx::STAT_ERR_UNSUPPORTED;
}

OfxStatus paramGetPropertySet(OfxParamHandle handle, OfxPropertySetHandle* properties) {
    *properties = behind<Param>(handle)->properties.handle();
    return ofx::STAT_OK;
}

std::size_t componentsOf(const std::string& type) {
    return type == "OfxParamTypeRGB" ? 3 : type == "OfxParamTypeDouble2D" ? 2 : 1;
}

bool isWhole(const std::string& type) {
    return type == "OfxParamTypeBoolean" || type == "OfxParamTypeChoice";
}

std::array<double, 3> valueOf(const Param& param, OfxTime time) {
    if (param.value) {
        return param.value(time);
    }
    std::array<double, 3> value{};
    for (std::size_t i = 0; i < componentsOf(param.type); ++i) {
        const char* const name = "OfxParamPropDefault";
        value.at(i) = isWhole(param.type) ? param.properties.get<int>(name, i, 0)
                                          : param.properties.get<double>(name, i, 0.0);
    }
    return value;
}

OfxStatus readValue(Param& param, OfxTime time, va_list out) {
    if (param.silent) {
        return param.status;
    }
    if (param.type == "OfxParamTypeString") {
        *va_arg(out, char**) = param.text.data();
        return param.status;
    }
    const std::array<double, 3> value = valueOf(param, time);
    if (isWhole(param.type)) {
        *va_arg(out, int*) = static_cast<int>(value[0]);
        return param.status;
    }
    for (std::size_t i = 0; i < componentsOf(param.type); ++i) {
        *va_arg(out, double*) = value.at(i);
    }
    return param.status;
}

OfxStatus paramGetValue(OfxParamHandle handle, ...) {
    va_list out;
    va_start(out, handle);
    const OfxStatus status = readValue(*behind<Param>(handle), 0.0, out);
    va_end(out);
    return status;
}

OfxStatus paramGetValueAtTime(OfxParamHandle handle, OfxTime time, ...) {
    va_list out;
    va_start(out, time);
    const OfxStatus status = readValue(*behind<Param>(handle), time, out);
    va_end(out);
    return status;
}

OfxStatus paramSetValue(OfxParamHandle handle, ...) {
    Param& param = *behind<Param>(handle);
    va_list in;
    va_start(in, handle);
    std::vector<double> values;
    for (std::size_t i = 0; i < componentsOf(param.type); ++i) {
        values.push_back(isWhole(param.type) ? va_arg(in, int) : va_arg(in, double));
    }
    va_end(in);
    param.written.push_back(values);
    return ofx::STAT_OK;
}

} // namespace

std::vector<std::string> Effect::faults() const {
    std::vector<std::string> all = properties.faults;
    const auto add = [&all](const std::string& name, const PropertySet& set) {
        for (const std::string& fault : set.faults) {
            all.push_back(name);
            all.back().append(".").append(fault);
        }
    };
    for (const auto& [name, clip] : clips) {
        add(name, clip->properties);
        if (clip->held != 0) {
            all.push_back(name + ": image not released");
        }
    }
    for (const auto& [name, param] : params) {
        add(name, param->properties);
    }
    return all;
}

TestHost::TestHost() : m_host{properties.handle(), &fetchSuite} {
    properties.readOnly = true;
    properties.set("OfxParamHostPropSupportsBooleanAnimation", {1});
    properties.set("OfxParamHostPropSupportsChoiceAnimation", {1});
    properties.set("test.host", {static_cast<void*>(this)});
}

const void* TestHost::fetchSuite(OfxPropertySetHandle host, const char* name, int version) {
    const auto* const self =
        static_cast<const TestHost*>(PropertySet::of(host).get<void*>("test.host", 0, nullptr));
    if (version != 1 || self->missingSuites.contains(name)) {
        return nullptr;
    }
    if (const auto own = self->suites.find(name); own != self->suites.end()) {
        return own->second;
    }
    const std::map<std::string, const void*> suites{{"OfxPropertySuite", propertySuite()},
                                                    {"OfxImageEffectSuite", imageEffectSuite()},
                                                    {"OfxParameterSuite", parameterSuite()}};
    const auto found = suites.find(name);
    return found == suites.end() ? nullptr : found->second;
}

const OfxImageEffectSuiteV1* imageEffectSuite() {
    static const OfxImageEffectSuiteV1 suite{
        getPropertySet, getParamSet,      clipDefine,    clipGetHandle, clipGetPropertySet,
        clipGetImage,   clipReleaseImage, clipGetRegion, abortRender,   nullptr,
        nullptr,        nullptr,          nullptr};
    return &suite;
}

const OfxParameterSuiteV1* parameterSuite() {
    static const OfxParameterSuiteV1 suite{paramDefine,
                                           paramGetHandle,
                                           paramSetGetPropertySet,
                                           paramGetPropertySet,
                                           paramGetValue,
                                           paramGetValueAtTime,
                                           nullptr,
                                           nullptr,
                                           paramSetValue,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr};
    return &suite;
}

} // namespace orbel::ofxtest
