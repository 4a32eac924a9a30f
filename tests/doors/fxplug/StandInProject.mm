#include "tests/doors/fxplug/StandInProject.h"

#include <cmath>
#include <cstdio>
#include <numbers>

namespace orbel::fxtest {

ParameterValue toHost(ValueKind kind, const ParameterValue& value) {
    if (kind == ValueKind::Angle) {
        return {value[0] * std::numbers::pi / 180.0};
    }
    if (kind == ValueKind::Point && manners().kind == 1) {
        return {value[0], 1.0 - value[1]};
    }
    return value;
}

Project::~Project() {
    for (auto& [param, declared] : parameters) {
        const id held = declared.custom;
        [held release];
    }
}

void Project::declare(UInt32 param, ValueKind kind, FxParameterFlags flags,
                      const ParameterValue& value, const std::string& line) {
    declarations.push_back(line);
    const id former = parameters[param].custom;
    [former release];
    parameters[param] = {kind, flags, toHost(kind, value), nil};
}

void Project::setTrack(int param, std::vector<Keyframe> keys) {
    for (Keyframe& entry : keys) {
        entry.value = toHost(parameters.at(static_cast<UInt32>(param)).kind, entry.value);
    }
    set(static_cast<UInt32>(param), keys.front().value);
    tracks.setKeys(param, std::move(keys));
}

ParameterValue Project::value(UInt32 param, double time) const {
    ParameterValue value = parameters.at(param).constant;
    if (tracks.isAnimated(static_cast<int>(param))) {
        tracks.evaluate(static_cast<int>(param), time, value);
    }
    return value;
}

void Project::setCustom(UInt32 param, id<NSCoding> value) {
    const id held = parameters.at(param).custom;
    const id kept = value;
    parameters.at(param).custom = [kept retain];
    [held release];
}

bool Project::mayAccess(UInt32 param) {
    const bool open = hostIsCalling || openActions > 0;
    strayAccesses += open ? 0 : 1;
    return open && parameters.contains(param);
}

bool Project::read(UInt32 param, double time, double* first, double* second, double* third) {
    if (!mayAccess(param)) {
        return false;
    }
    const ParameterValue read = value(param, time);
    std::size_t component = 0;
    for (double* const place : {first, second, third}) {
        if (place != nullptr) {
            *place = read[component];
        }
        ++component;
    }
    return !deniesWhatItWrites;
}

bool Project::write(UInt32 param, double time, const ParameterValue& value, const char* kind) {
    char line[80];
    std::snprintf(line, sizeof line, "%s %u at %g: %g", kind, param, time, value[0]);
    log.push_back(line);
    if (!mayAccess(param)) {
        return false;
    }
    set(param, value);
    return true;
}

} // namespace orbel::fxtest

using namespace orbel;
using namespace orbel::fxtest;

namespace {

Project& of(void* project) {
    return *static_cast<Project*>(project);
}

std::string line(const char* kind, NSString* name, UInt32 param, const std::string& rest,
                 FxParameterFlags flags) {
    std::string text = kind;
    text.append(" ").append(std::to_string(param)).append(" \"").append([name UTF8String]);
    return text.append("\"").append(rest).append(" flags ").append(std::to_string(flags));
}

std::string spaced(Class type) {
    return std::string(" ").append([NSStringFromClass(type) UTF8String]);
}

std::string numbers(std::initializer_list<double> list) {
    std::string text;
    for (const double number : list) {
        char one[32];
        std::snprintf(one, sizeof one, " %g", number);
        text += one;
    }
    return text;
}

} // namespace

@implementation StandInApi

- (id)initWithProject:(void*)aProject {
    self = [super init];
    _project = aProject;
    return self;
}

- (BOOL)isMissing:(NSString*)protocolName {
    return of(_project).missing.contains([protocolName UTF8String]) ? YES : NO;
}

// --- Creation ---

- (BOOL)addFloatSliderWithName:(NSString*)name
                        parmId:(UInt32)parmId
                  defaultValue:(double)defaultValue
                  parameterMin:(double)min
                  parameterMax:(double)max
                     sliderMin:(double)sliderMin
                     sliderMax:(double)sliderMax
                         delta:(double)delta
                     parmFlags:(FxParameterFlags)flags {
    const std::string rest = numbers({defaultValue, min, max, sliderMin, sliderMax, delta});
    of(_project).declare(parmId, ValueKind::Float, flags, {defaultValue},
                         line("float", name, parmId, rest, flags));
    return YES;
}

- (BOOL)addToggleButtonWithName:(NSString*)name
                         parmId:(UInt32)parmId
                   defaultValue:(BOOL)defaultValue
                      parmFlags:(FxParameterFlags)flags {
    const double value = defaultValue;
    of(_project).declare(parmId, ValueKind::Toggle, flags, {value},
                         line("toggle", name, parmId, numbers({value}), flags));
    return YES;
}

- (BOOL)addAngleSliderWithName:(NSString*)name
                        parmId:(UInt32)parmId
                  defaultValue:(double)defaultValue
                  parameterMin:(double)min
                  parameterMax:(double)max
                     parmFlags:(FxParameterFlags)flags {
    of(_project).declare(parmId, ValueKind::Angle, flags, {defaultValue},
                         line("angle", name, parmId, numbers({defaultValue, min, max}), flags));
    return YES;
}

- (BOOL)addColorParameterWithName:(NSString*)name
                           parmId:(UInt32)parmId
                       defaultRed:(double)red
                     defaultGreen:(double)green
                      defaultBlue:(double)blue
                        parmFlags:(FxParameterFlags)flags {
    of(_project).declare(parmId, ValueKind::Color, flags, {red, green, blue},
                         line("color", name, parmId, numbers({red, green, blue}), flags));
    return YES;
}

- (BOOL)addPointParameterWithName:(NSString*)name
                           parmId:(UInt32)parmId
                         defaultX:(double)x
                         defaultY:(double)y
                        parmFlags:(FxParameterFlags)flags {
    of(_project).declare(parmId, ValueKind::Point, flags, {x, y},
                         line("point", name, parmId, numbers({x, y}), flags));
    return YES;
}

- (BOOL)addPopupMenuWithName:(NSString*)name
                      parmId:(UInt32)parmId
                defaultValue:(UInt32)defaultValue
                 menuEntries:(NSArray*)entries
                   parmFlags:(FxParameterFlags)flags {
    std::string rest = numbers({static_cast<double>(defaultValue)});
    for (NSUInteger i = 0; i < [entries count]; ++i) {
        rest.append("|").append([[entries objectAtIndex:i] UTF8String]);
    }
    of(_project).declare(parmId, ValueKind::Menu, flags, {static_cast<double>(defaultValue)},
                         line("menu", name, parmId, rest, flags));
    return YES;
}

- (BOOL)addCustomParameterWithName:(NSString*)name
                            parmId:(UInt32)parmId
                      defaultValue:(id<NSCoding>)defaultValue
                         parmFlags:(FxParameterFlags)flags {
    const id value = defaultValue;
    const std::string rest = spaced([value class]);
    of(_project).declare(parmId, ValueKind::Custom, flags, {},
                         line("custom", name, parmId, rest, flags));
    of(_project).setCustom(parmId, defaultValue);
    return YES;
}

- (BOOL)startParameterSubGroup:(NSString*)name
                        parmId:(UInt32)parmId
                     parmFlags:(FxParameterFlags)flags {
    of(_project).declare(parmId, ValueKind::Group, flags, {},
                         line("group", name, parmId, "", flags));
    return YES;
}

- (BOOL)endParameterSubGroup {
    of(_project).declarations.push_back("end");
    return YES;
}

// --- Retrieval ---

- (BOOL)getFloatValue:(double*)value fromParm:(UInt32)parmId atTime:(double)time {
    return of(_project).read(parmId, time, value, nullptr, nullptr) ? YES : NO;
}

- (BOOL)getIntValue:(int*)value fromParm:(UInt32)parmId atTime:(double)time {
    double read = *value;
    const bool known = of(_project).read(parmId, time, &read, nullptr, nullptr);
    *value = static_cast<int>(read);
    return known ? YES : NO;
}

- (BOOL)getBoolValue:(BOOL*)value fromParm:(UInt32)parmId atTime:(double)time {
    double read = *value;
    const bool known = of(_project).read(parmId, time, &read, nullptr, nullptr);
    *value = static_cast<BOOL>(read);
    return known ? YES : NO;
}

- (BOOL)getRedValue:(double*)red
         GreenValue:(double*)green
          BlueValue:(double*)blue
           fromParm:(UInt32)parmId
             atTime:(double)time {
    return of(_project).read(parmId, time, red, green, blue) ? YES : NO;
}

- (BOOL)getXValue:(double*)x YValue:(double*)y fromParm:(UInt32)parmId atTime:(double)time {
    return of(_project).read(parmId, time, x, y, nullptr) ? YES : NO;
}

- (BOOL)getBitmap:(FxBitmap**)image
     layerOffsetX:(double*)offsetX
     layerOffsetY:(double*)offsetY
      requestInfo:(FxRenderInfo)info
         fromParm:(UInt32)parmId
           atTime:(double)time {
    static_cast<void>(info);
    *offsetX = 0.0;
    *offsetY = 0.0;
    *image = of(_project).layer ? of(_project).layer(parmId, time) : nil;
    return *image != nil ? YES : NO;
}

- (BOOL)getCustomParameterValue:(id<NSCoding>*)value fromParm:(UInt32)parmId {
    if (!of(_project).mayAccess(parmId)) {
        return NO;
    }
    *value = of(_project).parameters.at(parmId).custom;
    return YES;
}

- (BOOL)getParameterFlags:(FxParameterFlags*)flags fromParm:(UInt32)parmId {
    if (!of(_project).mayAccess(parmId)) {
        return NO;
    }
    *flags = of(_project).parameters.at(parmId).flags;
    return YES;
}

// --- Setting ---

- (BOOL)setFloatValue:(double)value toParm:(UInt32)parmId atTime:(double)time {
    return of(_project).write(parmId, time, {value}, "float") ? YES : NO;
}

- (BOOL)setIntValue:(int)value toParm:(UInt32)parmId atTime:(double)time {
    return of(_project).write(parmId, time, {static_cast<double>(value)}, "int") ? YES : NO;
}

- (BOOL)setBoolValue:(BOOL)value toParm:(UInt32)parmId atTime:(double)time {
    return of(_project).write(parmId, time, {static_cast<double>(value)}, "bool") ? YES : NO;
}

- (BOOL)setRedValue:(double)red
         GreenValue:(double)green
          BlueValue:(double)blue
             toParm:(UInt32)parmId
             atTime:(double)time {
    return of(_project).write(parmId, time, {red, green, blue}, "color") ? YES : NO;
}

- (BOOL)setXValue:(double)x YValue:(double)y toParm:(UInt32)parmId atTime:(double)time {
    return of(_project).write(parmId, time, {x, y}, "point") ? YES : NO;
}

- (BOOL)setCustomParameterValue:(id<NSCoding>)value toParm:(UInt32)parmId {
    if (!of(_project).mayAccess(parmId)) {
        return NO;
    }
    of(_project).log.push_back("custom " + std::to_string(parmId));
    of(_project).setCustom(parmId, value);
    return YES;
}

- (BOOL)setParameterFlags:(FxParameterFlags)flags toParm:(UInt32)parmId {
    of(_project).log.push_back("flags " + std::to_string(parmId) + ": " + std::to_string(flags));
    if (!of(_project).mayAccess(parmId)) {
        return NO;
    }
    of(_project).parameters.at(parmId).flags = flags;
    return YES;
}

// --- Actions, images at other times, 3D ---

- (void)startAction:(id)sender {
    ++of(_project).openActions;
    of(_project).log.push_back("start" + spaced([sender class]));
}

- (void)endAction:(id)sender {
    --of(_project).openActions;
    of(_project).log.push_back("end" + spaced([sender class]));
}

- (double)currentTime {
    return of(_project).currentTime;
}

- (BOOL)getInputBitmap:(FxBitmap**)image withInfo:(FxRenderInfo)info atTime:(double)time {
    static_cast<void>(info);
    *image = of(_project).input ? of(_project).input(time) : nil;
    return *image != nil ? YES : NO;
}

- (NSData*)layerMatrixAtTime:(double)time {
    of(_project).matrixTimes.push_back(time);
    return of(_project).layerMatrix;
}

@end

@implementation StandInManager

- (id)initWithProject:(void*)aProject {
    self = [super init];
    _api = [[StandInApi alloc] initWithProject:aProject];
    return self;
}

- (void)dealloc {
    [_api release];
    [super dealloc];
}

- (id)apiForProtocol:(Protocol*)apiProtocol {
    return [_api isMissing:NSStringFromProtocol(apiProtocol)] ? nil : _api;
}

@end
