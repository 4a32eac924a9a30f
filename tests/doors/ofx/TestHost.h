#pragma once

#include "tests/doors/ofx/HostProperties.h"

#include <array>
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace orbel::ofxtest {

/// A clip of an effect: what it answers is set from outside.
struct Clip {
    PropertySet properties;
    std::function<PropertySet*(OfxTime)> image; ///< null: the clip has none
    OfxRectD region{};                          ///< canonical; empty: not known
    std::atomic<int> held = 0;                  ///< images fetched and not yet released
};

/// A parameter of an effect.
struct Param {
    std::string type;
    PropertySet properties;
    std::function<std::array<double, 3>(OfxTime)> value; ///< null: the declared default
    std::string text;
    OfxStatus status = 0; ///< what reading answers, having written the value
    bool silent = false;  ///< reading writes nothing
    std::vector<std::vector<double>> written;
};

/// A descriptor or an instance.
struct Effect {
    PropertySet properties;
    std::map<std::string, std::unique_ptr<Clip>> clips;
    std::map<std::string, std::unique_ptr<Param>> params;
    std::vector<std::string> order; ///< of the parameters' declarations
    bool describing = false;
    bool noParams = false; ///< parameters cannot be found
    std::atomic<int> abortCalls = 0;
    int abortAt = 1 << 30; ///< from this call on the frame is given up

    [[nodiscard]] OfxImageEffectHandle handle() {
        return static_cast<OfxImageEffectHandle>(static_cast<void*>(this));
    }
    /// Everything that was done wrong to the effect, its clips and its parameters.
    [[nodiscard]] std::vector<std::string> faults() const;
};

/// The host's side of the interface.
class TestHost {
public:
    TestHost();

    PropertySet properties;
    std::set<std::string> missingSuites;
    std::map<std::string, const void*> suites; ///< in place of the usual ones, by name

    [[nodiscard]] OfxHost* interface() { return &m_host; }

private:
    static const void* fetchSuite(OfxPropertySetHandle host, const char* name, int version);

    OfxHost m_host;
};

[[nodiscard]] const OfxImageEffectSuiteV1* imageEffectSuite();
[[nodiscard]] const OfxParameterSuiteV1* parameterSuite();

} // namespace orbel::ofxtest
