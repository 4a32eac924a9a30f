#include "doors/fxplug/Orbel_FXPLUG_Plugin.h"

#include "doors/fxplug/FrameRender.h"
#include "doors/fxplug/HostAction.h"
#include "doors/fxplug/HostApis.h"
#include "doors/fxplug/ParamsSetup.h"
#include "doors/fxplug/PluginHost_FXPLUG_Impl.h"
#include "doors/fxplug/PluginUpdate_FXPLUG_Impl.h"
#include "doors/fxplug/ShapeDialog.h"
#include "host/HostIndex.h"
#include "params/ParameterRules.h"
#include "params/ParameterTable.h"

using namespace orbel;

namespace {

// As a toggle or a menu, at the host object's frame.
int readForRule(const PluginHost_FXPLUG_Impl& host, const EnablingRule& rule) {
    const FxPlugParameters parameters(host.retrieval(), host.getFrame());
    int value = 0;
    if (rule.menu) {
        parameters.getInt(rule.changed, value);
    } else {
        parameters.getByte(rule.changed, value);
    }
    return value;
}

} // namespace

@implementation Orbel_FXPLUG_Plugin

- (id)initWithAPIManager:(id<PROAPIAccessing>)apiManager {
    self = [super init];
    if (self != nil) {
        _apiManager = apiManager;
        _openFileButton = nil;
        g_hostIndex = GetHostIndex(apiManager);
    }
    return self;
}

- (void)dealloc {
    [_openFileButton release];
    _openFileButton = nil;
    [super dealloc];
}

- (BOOL)variesOverTime {
    return NO;
}

- (NSDictionary*)properties {
    NSNumber* const yes = [NSNumber numberWithBool:YES];
    NSNumber* const no = [NSNumber numberWithBool:NO];
    return [NSDictionary
        dictionaryWithObjectsAndKeys:yes, kFxPropertyKey_SupportsRowBytes, no,
                                     kFxPropertyKey_SupportsR408, no, kFxPropertyKey_SupportsR4fl,
                                     no, kFxPropertyKey_MayRemapTime, [NSNumber numberWithInt:0],
                                     kFxPropertyKey_EquivalentSMPTEWipeCode, nil];
}

- (BOOL)addParameters {
    const id<FxParameterCreationAPI> creation = creationApi(_apiManager);
    if (creation == nil) {
        return NO;
    }
    PluginHost_FXPLUG_Impl host(creation, nil, nil, nil, nullptr, nil, nil);
    ParamsSetup(&host);
    return YES;
}

- (BOOL)parameterChanged:(UInt32)parmId {
    const id<FxCustomParameterActionAPI> action = actionApi(_apiManager);
    if (action == nil) {
        return NO;
    }
    const HostAction during(action, self);
    const id<FxParameterRetrievalAPI> retrieval = retrievalApi(_apiManager);
    const id<FxParameterSettingAPI> setting = settingApi(_apiManager);
    if (retrieval == nil || setting == nil) {
        return NO;
    }
    PluginHost_FXPLUG_Impl host(nil, retrieval, nil, nil, nullptr, nil, setting);
    host.setFallbackFrame(during.currentTime());
    PluginUpdate_FXPLUG_Impl update(&host);
    applyEnablingRules(
        static_cast<int>(parmId),
        [&host](const EnablingRule& rule) { return readForRule(host, rule); }, update);
    return YES;
}

- (BOOL)getOutputWidth:(FxUInt*)width
                height:(FxUInt*)height
             withInput:(FxImageInfo)inputInfo
              withInfo:(FxRenderInfo)renderInfo {
    static_cast<void>(renderInfo);
    if (width == nullptr || height == nullptr) {
        return NO;
    }
    *width = inputInfo.width;
    *height = inputInfo.height;
    return YES;
}

// Software only.
- (BOOL)frameSetup:(FxRenderInfo)renderInfo
         inputInfo:(FxImageInfo)inputInfo
          hardware:(BOOL*)canRenderHardware
          software:(BOOL*)canRenderSoftware {
    static_cast<void>(renderInfo);
    static_cast<void>(inputInfo);
    if (canRenderHardware != nullptr) {
        *canRenderHardware = NO;
    }
    if (canRenderSoftware != nullptr) {
        *canRenderSoftware = YES;
    }
    return YES;
}

- (BOOL)renderOutput:(FxImage*)outputImage
           withInput:(FxImage*)inputImage
            withInfo:(FxRenderInfo)renderInfo {
    const FrameRender frame{_apiManager, retrievalApi(_apiManager), threeDApi(_apiManager)};
    if (frame.retrieval == nil) {
        return NO;
    }
    frame.render(static_cast<FxBitmap*>(inputImage), static_cast<FxBitmap*>(outputImage),
                 &renderInfo);
    return YES;
}

- (BOOL)frameCleanup {
    return YES;
}

- (NSView*)createViewForParm:(UInt32)parmId {
    if (parmId != PARAM_SHAPE) {
        return nil;
    }
    if (_openFileButton == nil) {
        _openFileButton = [[NSButton alloc] initWithFrame:NSMakeRect(0, 0, 256, 25)];
        [_openFileButton setTitle:@"Open File..."];
        [_openFileButton setButtonType:static_cast<NSButtonType>(7)];
        [_openFileButton setImagePosition:static_cast<NSCellImagePosition>(0)];
        [_openFileButton setBezelStyle:static_cast<NSBezelStyle>(1)];
        [_openFileButton setTarget:self];
        [_openFileButton setAction:@selector(loadFile:)];
    }
    // The host releases what it is given.
    return [_openFileButton retain];
}

- (void)loadFile:(id)sender {
    static_cast<void>(sender);
    const HostAction during(actionApi(_apiManager), self);
    const id<FxParameterRetrievalAPI> retrieval = retrievalApi(_apiManager);
    const id<FxParameterSettingAPI> setting = settingApi(_apiManager);
    if (retrieval != nil && setting != nil) {
        PluginHost_FXPLUG_Impl host(nil, retrieval, nil, nil, nullptr, nil, setting);
        loadSVGShape(&host);
    }
}

@end
