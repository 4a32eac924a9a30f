#pragma once

#include "doors/ofx/HostSuites.h"
#include "params/ParameterTable.h"

#include <array>
#include <memory>
#include <optional>
#include <string>

namespace orbel::ofx {

/// What an instance keeps: handles of the host, which live as long as it does. Nothing in it
/// changes after it was made, so that any number of threads may use it at once.
class EffectInstance {
public:
    EffectInstance(SharedSuites suites, OfxImageEffectHandle effect);

    /// The object behind a handle; null for an instance that was not made or is destroyed already.
    [[nodiscard]] static EffectInstance* behind(const HostSuites& suites,
                                                OfxImageEffectHandle effect);
    /// Makes the object behind a handle, which owns it until `destroy`.
    static OfxStatus create(const SharedSuites& suites, OfxImageEffectHandle effect);
    static void destroy(const HostSuites& suites, OfxImageEffectHandle effect);

    [[nodiscard]] const HostSuites& suites() const { return *m_suites; }
    [[nodiscard]] OfxImageEffectHandle effect() const { return m_effect; }
    [[nodiscard]] Properties properties() const { return m_suites->ofEffect(m_effect); }
    // Null where the host has none.
    [[nodiscard]] OfxImageClipHandle source() const { return m_source; }
    [[nodiscard]] OfxImageClipHandle output() const { return m_output; }
    [[nodiscard]] OfxParamHandle param(int id) const;
    [[nodiscard]] bool isSourceConnected() const;

    /// The value of a declared parameter in the units of the table (points with y downwards): the
    /// declared default where the host writes nothing or no number, limited to the declared range;
    /// a toggle is 1 when the host says so, else 0.
    [[nodiscard]] std::array<double, 3> value(const ParameterRow& row, OfxTime time) const;
    /// Toggles as 0 or 1, menus as index.
    [[nodiscard]] int intValue(int id, OfxTime time) const;
    /// The path of "Shape" and the SVG text beside it; empty where the host has no answer.
    [[nodiscard]] std::string shapeFile(OfxTime time) const;
    [[nodiscard]] std::string shapeText(OfxTime time) const;

private:
    [[nodiscard]] OfxImageClipHandle findClip(const char* name) const;
    [[nodiscard]] OfxParamHandle findParam(OfxParamSetHandle set, const char* name) const;
    void read(const ParameterRow& row, OfxTime time, std::array<double, 3>& value) const;
    [[nodiscard]] std::string text(OfxParamHandle handle, OfxTime time) const;

    SharedSuites m_suites;
    OfxImageEffectHandle m_effect;
    OfxImageClipHandle m_source;
    OfxImageClipHandle m_output;
    std::array<OfxParamHandle, PARAM_PRESETS + 1> m_params{}; // by identifier
    OfxParamHandle m_shapeText = nullptr;
};

} // namespace orbel::ofx
