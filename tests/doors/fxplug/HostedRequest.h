#pragma once

#include "tests/doors/HostedScene.h"
#include "tests/doors/fxplug/LoadedEffect.h"

namespace orbel::fxtest {

/// Puts a scene's parameters and shape into the effect's project.
inline void apply(const test::HostedScene& scene, LoadedEffect& effect) {
    for (const auto& [param, keys] : scene.scene().parameters) {
        effect.setTrack(param, keys);
    }
    effect.setShape(scene.plan().shapePath);
}

/// A request for a frame of a scene; the lower field is half a frame later.
inline FrameRequest requestOf(const test::HostedScene& scene, long frame, Field field) {
    const double second = field == Field::Lower ? 0.5 : 0.0;
    return {static_cast<double>(frame) + second, scene.plan().renderScaleX,
            scene.plan().renderScaleY, field};
}

} // namespace orbel::fxtest
