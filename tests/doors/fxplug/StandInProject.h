#pragma once

#include "doors/fxplug/platform/FxProtocols.h"
#include "doors/memory/ParameterStore.h"
#include "tests/doors/fxplug/StandInImages.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace orbel::fxtest {

enum class ValueKind { Custom, Menu, Float, Toggle, Color, Point, Angle, Group };

/// A parameter as the effect declared it. Values stand in the host's units: radians, and in Motion
/// points with y upwards.
struct DeclaredParameter {
    ValueKind kind = ValueKind::Float;
    FxParameterFlags flags = 0;
    ParameterValue constant{}; ///< where it is not animated
    id<NSCoding> custom = nil; ///< retained by the project
};

/// The host's side of one applied effect: what was declared, the values, and a log.
struct Project {
    std::vector<std::string> declarations; ///< one line per selector received
    std::map<UInt32, DeclaredParameter> parameters;
    ParameterStore tracks;           ///< of those that are
    std::set<std::string> missing;   ///< protocols for which the manager answers nil
    double currentTime = 0.0;        ///< what the action interface says
    std::vector<std::string> log;    ///< actions, and what was written within them
    bool hostIsCalling = false;      ///< parameters are open to the effect
    bool deniesWhatItWrites = false; ///< reads write the value and answer NO
    int openActions = 0;
    int strayAccesses = 0; ///< reads and writes while parameters were closed
    std::function<FxBitmap*(UInt32 param, double time)> layer; ///< answers with ownership
    std::function<FxBitmap*(double time)> input;               ///< the same, of the input
    NSData* layerMatrix = nil;
    std::vector<double> matrixTimes;

    Project() = default;
    Project(const Project&) = delete;
    Project& operator=(const Project&) = delete;
    ~Project();

    void declare(UInt32 param, ValueKind kind, FxParameterFlags flags, const ParameterValue& value,
                 const std::string& line);
    /// Values in the user's units: degrees, y downwards.
    void setTrack(int param, std::vector<Keyframe> keys);
    /// A constant in the host's units.
    void set(UInt32 param, const ParameterValue& value) { parameters.at(param).constant = value; }
    void set(UInt32 param, double value) { set(param, ParameterValue{value}); }
    [[nodiscard]] ParameterValue value(UInt32 param, double time) const;
    void setCustom(UInt32 param, id<NSCoding> value);
    /// False for an unknown parameter, and, as a stray access, while parameters are closed.
    bool mayAccess(UInt32 param);
    /// Writes the components that have a place.
    bool read(UInt32 param, double time, double* first, double* second, double* third);
    bool write(UInt32 param, double time, const ParameterValue& value, const char* kind);
};

/// The user's value of a parameter in the host's units, or back.
[[nodiscard]] ParameterValue toHost(ValueKind kind, const ParameterValue& value);

} // namespace orbel::fxtest

/// Every interface of the host in one object, over a project.
@interface StandInApi
    : NSObject <FxParameterCreationAPI, FxParameterRetrievalAPI, FxParameterSettingAPI,
                FxCustomParameterActionAPI, FxTemporalImageAPI, Fx3DAPI> {
@private
    void* _project; // a Project; the runtime could not describe its type
}
- (id)initWithProject:(void*)aProject;
- (BOOL)isMissing:(NSString*)protocolName;
@end

/// Hands out the interfaces that are not missing.
@interface StandInManager : NSObject <PROAPIAccessing> {
@private
    StandInApi* _api;
}
- (id)initWithProject:(void*)aProject;
@end
