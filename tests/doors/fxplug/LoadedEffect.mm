#include "tests/doors/fxplug/LoadedEffect.h"

#include "tests/doors/fxplug/HostBitmaps.h"
#include "tests/doors/fxplug/Pool.h"
#include "tests/doors/fxplug/StandInProject.h"

#include <cstring>
#include <stdexcept>

// Sent to a class that only the bundle knows.
@interface NSObject (BundleClasses)
- (id)initWithAPIManager:(id)apiManager;
- (id)initWith:(const char*)name;
@end

namespace orbel::fxtest {

namespace {

constexpr UInt32 SHAPE = 1;

Class principalClass(const std::string& path) {
    NSBundle* const bundle = [NSBundle bundleWithPath:[NSString stringWithUTF8String:path.c_str()]];
    const Class found = [bundle principalClass];
    if (found == Nil) {
        throw std::runtime_error(path + " does not load");
    }
    return found;
}

} // namespace

struct LoadedEffect::Parts {
    Project project;
    StandInManager* manager = nil;
    NSObject<FxFilter>* effect = nil;
};

RasterInfo fieldRows(const RasterInfo& frame, Field field) {
    if (field == Field::None) {
        return frame;
    }
    const int first = field == Field::Upper ? 0 : 1;
    RasterInfo rows = frame;
    rows.data = frame.row(first);
    rows.rowBytes = 2 * frame.rowBytes;
    rows.height = (frame.height - first + 1) / 2;
    return rows;
}

LoadedEffect::LoadedEffect(const std::string& bundle, Application application)
    : m_parts(std::make_unique<Parts>()) {
    const Pool pool;
    resetManners(static_cast<int>(application));
    const Class found = principalClass(bundle);
    m_parts->manager = [[StandInManager alloc] initWithProject:&m_parts->project];
    m_parts->effect = [[found alloc] initWithAPIManager:m_parts->manager];
    m_parts->project.hostIsCalling = true;
    [m_parts->effect addParameters];
    m_parts->project.hostIsCalling = false;
}

LoadedEffect::~LoadedEffect() {
    [m_parts->effect release];
    [m_parts->manager release];
}

void LoadedEffect::setTrack(int param, const std::vector<Keyframe>& keys) {
    m_parts->project.setTrack(param, keys);
}

void LoadedEffect::setShape(const std::string& path) {
    const Pool pool;
    char name[1024] = {};
    std::strncpy(name, path.c_str(), sizeof name - 1);
    const id value = [NSClassFromString(@"Vo_Orbel_CustomParam") alloc];
    m_parts->project.setCustom(SHAPE, [[value initWith:name] autorelease]);
}

bool LoadedEffect::render(const FrameRequest& request, const RasterInfo& input,
                          const RasterInfo& output) {
    const Pool pool;
    const bool single = request.field != Field::None && manners().kind != 1;
    FxBitmap* const source = [makeHostBitmap(input, single) autorelease];
    FxBitmap* const target = [makeHostBitmap(output, single) autorelease];
    FxRenderInfo info{};
    info.frame = request.frame;
    info.qualityLevel = kFxQuality_HIGH;
    info.field = static_cast<FxField>(request.field);
    info.scaleX = request.scaleX;
    info.scaleY = request.scaleY;
    m_parts->project.hostIsCalling = true;
    const bool done = [m_parts->effect renderOutput:target withInput:source withInfo:info];
    m_parts->project.hostIsCalling = false;
    copyFromHostBitmap(target, output);
    return done && paddingIntact(source) && paddingIntact(target);
}

Project& LoadedEffect::project() {
    return m_parts->project;
}

void* LoadedEffect::effect() {
    return m_parts->effect;
}

} // namespace orbel::fxtest
