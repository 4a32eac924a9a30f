#pragma once

#import <Foundation/Foundation.h>

#include <cstddef>

// The scalar types, constants and records of the host's interface, version 1.x, for machines
// without the vendor's headers.

#if !defined(__APPLE__)
typedef unsigned int UInt32;
typedef struct OrbelOpaqueContext* CGLContextObj;
#endif

typedef UInt32 FxUInt;
typedef UInt32 FxParameterFlags;
typedef FxUInt FxQuality;
typedef FxUInt FxField;
typedef FxUInt FxFieldOrder;
typedef FxUInt FxDepth;
typedef FxUInt FxImageType;
typedef FxUInt FxPixelFormat;
typedef FxUInt FxImageOrigin;
typedef FxUInt FxImageColorInfo;
typedef FxUInt FxTimeBase;

enum {
    kFxQuality_LOW = 0,
    kFxQuality_MEDIUM = 1,
    kFxQuality_HIGH = 2,
};

enum {
    kFxField_NONE = 0,
    kFxField_UPPER = 1,
    kFxField_LOWER = 2,
};

enum {
    kFxDepth_UINT8 = 0,
    kFxDepth_FLOAT16 = 2,
    kFxDepth_FLOAT32 = 3,
};

enum {
    kFxImageType_UNKNOWN = 0,
    kFxImageType_BITMAP = 1,
    kFxImageType_TEXTURE = 2,
};

enum {
    kFxPixelFormat_RGBA = 0,
    kFxPixelFormat_ARGB = 2,
    // The numbers of these two are not published; they are the ones this effect tells apart.
    kFxPixelFormat_R408 = 4,
    kFxPixelFormat_R4fl = 5,
};

enum {
    kFxImageOrigin_BOTTOM_LEFT = 0,
    kFxImageOrigin_TOP_LEFT = 2,
};

enum {
    kFxTimeBase_TIMELINE = 0,
    kFxTimeBase_CLIP = 1,
};

enum {
    kFxParameterFlag_DEFAULT = 0,
    kFxParameterFlag_NOT_ANIMATABLE = 1 << 0,
    kFxParameterFlag_HIDDEN = 1 << 1,
    kFxParameterFlag_DISABLED = 1 << 2,
    kFxParameterFlag_COLLAPSED = 1 << 3,
    kFxParameterFlag_DONT_SAVE = 1 << 4,
    kFxParameterFlag_DONT_DISPLAY_IN_DASHBOARD = 1 << 5,
    kFxParameterFlag_CUSTOM_UI = 1 << 6,
    kFxParameterFlag_IGNORE_MINMAX = 1 << 8,
};

// Literals, not symbols: a symbol would need the vendor's framework at load time.
#define kFxPropertyKey_MayRemapTime @"MayRemapTime"
#define kFxPropertyKey_EquivalentSMPTEWipeCode @"EquivalentSMPTEWipeCode"
#define kFxPropertyKey_SupportsRowBytes @"SupportsRowBytes"
#define kFxPropertyKey_SupportsR408 @"SupportsR408"
#define kFxPropertyKey_SupportsR4fl @"SupportsR4fl"

/// One render request. `frame` is a frame number: the second field of frame i is i + 0.5.
typedef struct {
    double frame;
    FxQuality qualityLevel;
    union {
        FxField field;
        FxFieldOrder fieldOrder; // its name from version 1.2 on
    };
    double scaleX;
    double scaleY;
    CGLContextObj sharedContext;
    FxDepth depth;
} FxRenderInfo;

/// What an image is. `depth` counts bits per component.
typedef struct {
    FxUInt width;
    FxUInt height;
    FxUInt depth;
    FxUInt activeChannels;
    FxImageType imageType;
    FxImageOrigin origin;
    FxPixelFormat pixelFormat;
    BOOL isPremultiplied;
    double pixelAspect;
} FxImageInfo;

// The records cross the border to the host by value, so their layout is part of the interface.
static_assert(sizeof(BOOL) == 1);
static_assert(sizeof(UInt32) == 4);
static_assert(offsetof(FxRenderInfo, frame) == 0);
static_assert(offsetof(FxRenderInfo, qualityLevel) == 8);
static_assert(offsetof(FxRenderInfo, field) == 12);
static_assert(offsetof(FxRenderInfo, fieldOrder) == 12);
static_assert(offsetof(FxRenderInfo, scaleX) == 16);
static_assert(offsetof(FxRenderInfo, scaleY) == 24);
static_assert(offsetof(FxRenderInfo, sharedContext) == 32);
static_assert(offsetof(FxRenderInfo, depth) == 32 + sizeof(void*));
static_assert(sizeof(FxRenderInfo) == (sizeof(void*) == 8 ? 48 : 40));
static_assert(offsetof(FxImageInfo, width) == 0);
static_assert(offsetof(FxImageInfo, height) == 4);
static_assert(offsetof(FxImageInfo, depth) == 8);
static_assert(offsetof(FxImageInfo, activeChannels) == 12);
static_assert(offsetof(FxImageInfo, imageType) == 16);
static_assert(offsetof(FxImageInfo, origin) == 20);
static_assert(offsetof(FxImageInfo, pixelFormat) == 24);
static_assert(offsetof(FxImageInfo, isPremultiplied) == 28);
static_assert(offsetof(FxImageInfo, pixelAspect) == 32);
static_assert(sizeof(FxImageInfo) == 40);
