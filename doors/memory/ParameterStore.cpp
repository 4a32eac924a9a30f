#include "doors/memory/ParameterStore.h"

#include "params/ParameterTable.h"

#include <algorithm>
#include <utility>

namespace orbel {

namespace {

double eased(double s, Easing easing) {
    switch (easing) {
    case Easing::Hold:
        return 0.0;
    case Easing::Ease:
        return s * s * (3.0 - 2.0 * s);
    case Easing::EaseIn:
        return s * s;
    case Easing::EaseOut:
        return 1.0 - (1.0 - s) * (1.0 - s);
    case Easing::Linear:
        break;
    }
    return s;
}

ParameterValue between(const Keyframe& from, const Keyframe& to, double frame) {
    ParameterValue value{};
    for (std::size_t i = 0; i < value.size(); ++i) {
        const double v0 = from.value[i];
        const double v1 = to.value[i];
        if (from.easing == Easing::Linear) {
            value[i] = v0 + (v1 - v0) * (frame - from.frame) / (to.frame - from.frame);
        } else {
            const double s = (frame - from.frame) / (to.frame - from.frame);
            value[i] = v0 + (v1 - v0) * eased(s, from.easing);
        }
    }
    return value;
}

} // namespace

void ParameterStore::set(int param, const ParameterValue& value) {
    m_tracks[param] = {Keyframe{0.0, value, Easing::Linear}};
}

void ParameterStore::setKeys(int param, std::vector<Keyframe> keys) {
    if (keys.empty()) {
        m_tracks.erase(param);
    } else {
        m_tracks[param] = std::move(keys);
    }
}

bool ParameterStore::isAnimated(int param) const {
    const auto track = m_tracks.find(param);
    return track != m_tracks.end() && track->second.size() > 1;
}

bool ParameterStore::isAnyAnimated() const {
    return std::any_of(m_tracks.begin(), m_tracks.end(),
                       [](const auto& track) { return track.second.size() > 1; });
}

bool ParameterStore::evaluate(int param, double frame, ParameterValue& value) const {
    const ParameterRow* const row = findParameter(param);
    if (row == nullptr) {
        return false;
    }
    const auto track = m_tracks.find(param);
    if (track == m_tracks.end()) {
        value = row->defaults;
        return true;
    }
    const std::vector<Keyframe>& keys = track->second;
    const auto next = std::upper_bound(keys.begin(), keys.end(), frame,
                                       [](double f, const Keyframe& key) { return f < key.frame; });
    if (next == keys.begin()) {
        value = keys.front().value;
    } else if (next == keys.end() || !row->interpolates()) {
        value = std::prev(next)->value;
    } else {
        value = between(*std::prev(next), *next, frame);
    }
    return true;
}

} // namespace orbel
