#pragma once

#include "doors/fxplug/platform/FxTypes.h"

@protocol PROAPIAccessing;

// The host's classes. They are looked up by name at run time and never linked: a host that lacks
// one must still be able to load the effect.

@interface FxImage : NSObject {
@private
    struct FxImagePriv* _imagePriv;
}
- (FxImageInfo)imageInfo;
- (FxUInt)width;
- (FxUInt)height;
- (FxUInt)depth; // bits per component: 8, 16 or 32
- (FxUInt)bytes; // bytes per component: 1, 2 or 4
- (FxPixelFormat)pixelFormat;
- (BOOL)isPremultiplied;
- (double)pixelAspect;
// In no published header, but hosts answer it; ask with respondsToSelector: first.
- (void)setIsPremultiplied:(BOOL)flag;
@end

@interface FxBitmap : FxImage {
@private
    struct FxBitmapPriv* _bitmapPriv;
}
// Owns its pixels; nil when there is no memory.
- (id)initWithInfo:(FxImageInfo)imageInfo;
- (void*)dataPtr;
- (FxUInt)rowBytes;
@end

@class FxTexture;

@interface FxHostCapabilities : NSObject {
@private
    struct FxHostCapabilitiesPriv* _hostCapPriv;
}
- (id)initWithAPIManager:(id)apiManager;
- (BOOL)hostIsFCP;
- (BOOL)hostIsMotion;
- (BOOL)hostIsFCE; // from version 1.2 on
- (UInt32)hostVersionNumber;
@end
