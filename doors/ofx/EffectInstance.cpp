#include "doors/ofx/EffectInstance.h"

#include "doors/ofx/ParameterNames.h"
#include "doors/ofx/platform/OfxNames.h"

#include <utility>

namespace orbel::ofx {

EffectInstance::EffectInstance(SharedSuites suites, OfxImageEffectHandle effect)
    : m_suites(std::move(suites)),
      m_effect(effect),
      m_source(findClip(CLIP_SOURCE)),
      m_output(findClip(CLIP_OUTPUT)) {
    OfxParamSetHandle set = nullptr;
    if (m_suites->effect->getParamSet(effect, &set) != STAT_OK || set == nullptr) {
        return;
    }
    for (const ParameterRow& row : parameterTable()) {
        if (row.isParameter()) {
            m_params.at(static_cast<std::size_t>(row.id)) = findParam(set, parameterName(row.id));
        }
    }
    m_shapeText = findParam(set, SHAPE_TEXT);
}

EffectInstance* EffectInstance::behind(const HostSuites& suites, OfxImageEffectHandle effect) {
    return static_cast<EffectInstance*>(suites.ofEffect(effect).getPointer(PROP_INSTANCE_DATA));
}

OfxStatus EffectInstance::create(const SharedSuites& suites, OfxImageEffectHandle effect) {
    auto instance = std::make_unique<EffectInstance>(suites, effect);
    if (!suites->ofEffect(effect).setPointer(PROP_INSTANCE_DATA, instance.get())) {
        return STAT_ERR_BAD_HANDLE;
    }
    static_cast<void>(instance.release()); // the host's, until it destroys the instance
    return STAT_OK;
}

void EffectInstance::destroy(const HostSuites& suites, OfxImageEffectHandle effect) {
    const std::unique_ptr<EffectInstance> instance(behind(suites, effect));
    suites.ofEffect(effect).setPointer(PROP_INSTANCE_DATA, nullptr);
}

OfxImageClipHandle EffectInstance::findClip(const char* name) const {
    OfxImageClipHandle clip = nullptr;
    const bool known = m_suites->effect->clipGetHandle(m_effect, name, &clip, nullptr) == STAT_OK;
    return known ? clip : nullptr;
}

OfxParamHandle EffectInstance::findParam(OfxParamSetHandle set, const char* name) const {
    OfxParamHandle param = nullptr;
    const bool known = m_suites->parameter->paramGetHandle(set, name, &param, nullptr) == STAT_OK;
    return known ? param : nullptr;
}

OfxParamHandle EffectInstance::param(int id) const {
    const auto index = static_cast<std::size_t>(id);
    return id >= 0 && index < m_params.size() ? m_params.at(index) : nullptr;
}

bool EffectInstance::isSourceConnected() const {
    return m_suites->ofClip(m_source).getInt(PROP_CONNECTED, m_source == nullptr ? 0 : 1) != 0;
}

// Every variable holds the default beforehand. What a host writes counts and what it leaves alone
// stays, whatever it answers: some say that all went well and write nothing.
void EffectInstance::read(const ParameterRow& row, OfxTime time,
                          std::array<double, 3>& value) const {
    auto* const handle = param(row.id);
    if (handle == nullptr) {
        return;
    }
    const auto get = m_suites->parameter->paramGetValueAtTime;
    auto& [first, second, third] = value;
    if (row.isMenu() || row.kind == RowKind::Toggle) {
        int number = static_cast<int>(first);
        get(handle, time, &number);
        first = number;
    } else if (row.kind == RowKind::Color) {
        get(handle, time, &first, &second, &third);
    } else if (row.kind == RowKind::Point) {
        second = 1.0 - second;
        get(handle, time, &first, &second);
        second = 1.0 - second;
    } else {
        get(handle, time, &first);
    }
}

std::array<double, 3> EffectInstance::value(const ParameterRow& row, OfxTime time) const {
    std::array<double, 3> value = row.defaults;
    read(row, time, value);
    for (std::size_t i = 0; i < value.size(); ++i) {
        value[i] = limited(row, value[i], i);
    }
    return value;
}

int EffectInstance::intValue(int id, OfxTime time) const {
    return static_cast<int>(value(*findParameter(id), time)[0]);
}

std::string EffectInstance::text(OfxParamHandle handle, OfxTime time) const {
    char* text = nullptr;
    const bool known = handle != nullptr &&
                       m_suites->parameter->paramGetValueAtTime(handle, time, &text) == STAT_OK;
    return known && text != nullptr ? text : std::string();
}

std::string EffectInstance::shapeFile(OfxTime time) const {
    return text(param(PARAM_SHAPE), time);
}

std::string EffectInstance::shapeText(OfxTime time) const {
    return text(m_shapeText, time);
}

} // namespace orbel::ofx
