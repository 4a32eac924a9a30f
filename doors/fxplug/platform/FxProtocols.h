#pragma once

#include "doors/fxplug/platform/FxClasses.h"

@class NSView;

// What the effect offers to the host.

@protocol FxBaseEffect
- (BOOL)variesOverTime;
- (NSDictionary*)properties;
- (BOOL)addParameters;
- (BOOL)parameterChanged:(UInt32)parmId;
@end

@protocol FxFilter <FxBaseEffect>
- (BOOL)getOutputWidth:(FxUInt*)width
                height:(FxUInt*)height
             withInput:(FxImageInfo)inputInfo
              withInfo:(FxRenderInfo)renderInfo;
- (BOOL)frameSetup:(FxRenderInfo)renderInfo
         inputInfo:(FxImageInfo)inputInfo
          hardware:(BOOL*)canRenderHardware
          software:(BOOL*)canRenderSoftware;
- (BOOL)renderOutput:(FxImage*)outputImage
           withInput:(FxImage*)inputImage
            withInfo:(FxRenderInfo)renderInfo;
- (BOOL)frameCleanup;
@end

@protocol FxCustomParameterViewHost
// The host owns the view it is given.
- (NSView*)createViewForParm:(UInt32)parmId;
@end

// What the host offers to the effect.

@protocol PROAPIAccessing <NSObject>
- (id)apiForProtocol:(Protocol*)apiProtocol;
@end

@protocol FxParameterCreationAPI
- (BOOL)addFloatSliderWithName:(NSString*)name
                        parmId:(UInt32)parmId
                  defaultValue:(double)defaultValue
                  parameterMin:(double)min
                  parameterMax:(double)max
                     sliderMin:(double)sliderMin
                     sliderMax:(double)sliderMax
                         delta:(double)sliderDelta
                     parmFlags:(FxParameterFlags)flags;
- (BOOL)addToggleButtonWithName:(NSString*)name
                         parmId:(UInt32)parmId
                   defaultValue:(BOOL)defaultValue
                      parmFlags:(FxParameterFlags)flags;
- (BOOL)addAngleSliderWithName:(NSString*)name
                        parmId:(UInt32)parmId
                  defaultValue:(double)defaultValue
                  parameterMin:(double)min
                  parameterMax:(double)max
                     parmFlags:(FxParameterFlags)flags;
- (BOOL)addColorParameterWithName:(NSString*)name
                           parmId:(UInt32)parmId
                       defaultRed:(double)red
                     defaultGreen:(double)green
                      defaultBlue:(double)blue
                        parmFlags:(FxParameterFlags)flags;
- (BOOL)addPointParameterWithName:(NSString*)name
                           parmId:(UInt32)parmId
                         defaultX:(double)defaultX
                         defaultY:(double)defaultY
                        parmFlags:(FxParameterFlags)flags;
- (BOOL)addPopupMenuWithName:(NSString*)name
                      parmId:(UInt32)parmId
                defaultValue:(UInt32)defaultValue
                 menuEntries:(NSArray*)entries
                   parmFlags:(FxParameterFlags)flags;
- (BOOL)addCustomParameterWithName:(NSString*)name
                            parmId:(UInt32)parmId
                      defaultValue:(id<NSCoding>)defaultValue
                         parmFlags:(FxParameterFlags)flags;
- (BOOL)startParameterSubGroup:(NSString*)name
                        parmId:(UInt32)parmId
                     parmFlags:(FxParameterFlags)flags;
- (BOOL)endParameterSubGroup;
@end

@protocol FxParameterRetrievalAPI
- (BOOL)getFloatValue:(double*)value fromParm:(UInt32)parmId atTime:(double)time;
- (BOOL)getIntValue:(int*)value fromParm:(UInt32)parmId atTime:(double)time;
- (BOOL)getBoolValue:(BOOL*)value fromParm:(UInt32)parmId atTime:(double)time;
- (BOOL)getRedValue:(double*)red
         GreenValue:(double*)green
          BlueValue:(double*)blue
           fromParm:(UInt32)parmId
             atTime:(double)time;
- (BOOL)getXValue:(double*)x YValue:(double*)y fromParm:(UInt32)parmId atTime:(double)time;
// The effect releases the image; nil on failure.
- (BOOL)getBitmap:(FxBitmap**)image
     layerOffsetX:(double*)offsetX
     layerOffsetY:(double*)offsetY
      requestInfo:(FxRenderInfo)info
         fromParm:(UInt32)parmId
           atTime:(double)time;
// The value is borrowed.
- (BOOL)getCustomParameterValue:(id<NSCoding>*)value fromParm:(UInt32)parmId;
- (BOOL)getParameterFlags:(FxParameterFlags*)flags fromParm:(UInt32)parmId;
@end

@protocol FxParameterSettingAPI
- (BOOL)setFloatValue:(double)value toParm:(UInt32)parmId atTime:(double)time;
- (BOOL)setIntValue:(int)value toParm:(UInt32)parmId atTime:(double)time;
- (BOOL)setBoolValue:(BOOL)value toParm:(UInt32)parmId atTime:(double)time;
- (BOOL)setRedValue:(double)red
         GreenValue:(double)green
          BlueValue:(double)blue
             toParm:(UInt32)parmId
             atTime:(double)time;
- (BOOL)setXValue:(double)x YValue:(double)y toParm:(UInt32)parmId atTime:(double)time;
- (BOOL)setCustomParameterValue:(id<NSCoding>)value toParm:(UInt32)parmId;
- (BOOL)setParameterFlags:(FxParameterFlags)flags toParm:(UInt32)parmId;
@end

@protocol FxCustomParameterActionAPI
- (void)startAction:(id)sender;
- (void)endAction:(id)sender;
- (double)currentTime;
@end

@protocol FxTemporalImageAPI
// The effect releases the image; nil on failure.
- (BOOL)getInputBitmap:(FxBitmap**)image withInfo:(FxRenderInfo)renderInfo atTime:(double)time;
@end

@protocol Fx3DAPI
// Sixteen doubles, column vectors.
- (NSData*)layerMatrixAtTime:(double)time;
@end
