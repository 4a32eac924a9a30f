#pragma once

#include "doors/ofx/Properties.h"
#include "doors/ofx/platform/OfxTypes.h"

#include <memory>

namespace orbel::ofx {

/// What the host offers: its own properties and the suites that the effect cannot do without.
struct HostSuites {
    OfxPropertySetHandle host;
    const OfxPropertySuiteV1* property;
    const OfxImageEffectSuiteV1* effect;
    const OfxParameterSuiteV1* parameter;

    /// Whether all three suites are there, with every function that the effect calls.
    [[nodiscard]] bool areComplete() const;
    [[nodiscard]] Properties properties(OfxPropertySetHandle handle) const {
        return {property, handle};
    }
    [[nodiscard]] Properties ofHost() const { return properties(host); }
    [[nodiscard]] Properties ofEffect(OfxImageEffectHandle handle) const;
    [[nodiscard]] Properties ofClip(OfxImageClipHandle handle) const;
    [[nodiscard]] Properties ofParam(OfxParamHandle handle) const;
};
using SharedSuites = std::shared_ptr<const HostSuites>;

/// Remembers the host for `fetchSuites`; asks it nothing.
void rememberHost(const OfxHost* host);

/// Fetches the suites of the remembered host; false when one is missing or lacks a function. May
/// come again while other threads render: they keep the suites they hold.
bool fetchSuites();
void dropSuites();

/// The fetched suites; null before `fetchSuites` and after `dropSuites`.
[[nodiscard]] SharedSuites currentSuites();

} // namespace orbel::ofx
