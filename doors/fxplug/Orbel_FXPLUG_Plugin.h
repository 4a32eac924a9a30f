#pragma once

#include "doors/fxplug/FxPlugInterface.h"

/// The effect as its hosts see it; one object per applied effect. Its name stands in the bundle's
/// description. Nothing of a render survives in it.
@interface Orbel_FXPLUG_Plugin : NSObject <FxFilter, FxCustomParameterViewHost> {
@private
    id<PROAPIAccessing> _apiManager; // not retained
    NSButton* _openFileButton;
}
- (id)initWithAPIManager:(id<PROAPIAccessing>)apiManager;
/// Action of the "Open File..." button.
- (void)loadFile:(id)sender;
@end
