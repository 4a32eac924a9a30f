#include "tests/doors/fxplug/StandInImages.h"

#import <objc/runtime.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <vector>

using namespace orbel::fxtest;

namespace {

constexpr FxUInt PADDING = 16;
constexpr std::uint8_t GUARD = 0xA5;
std::atomic<int> live = 0;

} // namespace

struct FxImagePriv {
    FxImageInfo info;
};

struct FxBitmapPriv {
    std::vector<std::uint8_t> memory;
    FxUInt rowSize;
    FxUInt rowBytes;
};

HostManners& orbel::fxtest::manners() {
    static HostManners current;
    return current;
}

void orbel::fxtest::resetManners(int kind) {
    HostManners& current = manners();
    current.kind = kind;
    current.knowsExpress = true;
    current.describesItself = true;
    current.version = HostManners{}.version;
    current.bitmapsUntilFailure = -1;
    current.answersPremultiplied = true;
    current.versionQuestions = 0;
}

int orbel::fxtest::liveImages() {
    return live;
}

bool orbel::fxtest::paddingIntact(FxBitmap* bitmap) {
    const auto* const bytes = static_cast<const std::uint8_t*>([bitmap dataPtr]);
    const std::size_t rowSize = std::size_t{4} * [bitmap bytes] * [bitmap width];
    for (std::size_t y = 0; y < [bitmap height]; ++y) {
        const std::uint8_t* const row = bytes + y * [bitmap rowBytes];
        if (std::any_of(row + rowSize, row + [bitmap rowBytes],
                        [](std::uint8_t byte) { return byte != GUARD; })) {
            return false;
        }
    }
    return true;
}

@implementation FxImage

- (id)initWithInfo:(FxImageInfo)imageInfo {
    self = [super init];
    if (self != nil) {
        _imagePriv = new FxImagePriv{imageInfo};
        ++live;
    }
    return self;
}

- (void)dealloc {
    if (_imagePriv != nullptr) {
        delete _imagePriv;
        --live;
    }
    [super dealloc];
}

- (BOOL)respondsToSelector:(SEL)selector {
    if (sel_isEqual(selector, @selector(setIsPremultiplied:))) {
        return manners().answersPremultiplied ? YES : NO;
    }
    return [super respondsToSelector:selector];
}

- (FxImageInfo)imageInfo {
    return _imagePriv->info;
}
- (FxUInt)width {
    return _imagePriv->info.width;
}
- (FxUInt)height {
    return _imagePriv->info.height;
}
- (FxUInt)depth {
    return _imagePriv->info.depth;
}
- (FxUInt)bytes {
    return _imagePriv->info.depth / 8;
}
- (FxPixelFormat)pixelFormat {
    return _imagePriv->info.pixelFormat;
}
- (BOOL)isPremultiplied {
    return _imagePriv->info.isPremultiplied;
}
- (double)pixelAspect {
    return _imagePriv->info.pixelAspect;
}
- (void)setIsPremultiplied:(BOOL)flag {
    _imagePriv->info.isPremultiplied = flag;
}

@end

@implementation FxBitmap

- (id)initWithInfo:(FxImageInfo)imageInfo {
    if (manners().bitmapsUntilFailure-- == 0) {
        [super dealloc];
        return nil;
    }
    self = [super initWithInfo:imageInfo];
    if (self != nil) {
        const FxUInt rowSize = 4 * (imageInfo.depth / 8) * imageInfo.width;
        const FxUInt rowBytes = rowSize + PADDING;
        _bitmapPriv = new FxBitmapPriv{
            std::vector<std::uint8_t>(std::size_t{rowBytes} * imageInfo.height, GUARD), rowSize,
            rowBytes};
    }
    return self;
}

- (void)dealloc {
    delete _bitmapPriv;
    [super dealloc];
}

- (void*)dataPtr {
    return _bitmapPriv->memory.data();
}
- (FxUInt)rowBytes {
    return _bitmapPriv->rowBytes;
}

@end

@implementation FxHostCapabilities

+ (id)alloc {
    return manners().describesItself ? [super alloc] : nil;
}

- (id)initWithAPIManager:(id)apiManager {
    static_cast<void>(apiManager);
    return [super init];
}

- (BOOL)respondsToSelector:(SEL)selector {
    if (sel_isEqual(selector, @selector(hostIsFCE)) && !manners().knowsExpress) {
        return NO;
    }
    return [super respondsToSelector:selector];
}

- (BOOL)hostIsFCP {
    return manners().kind == 0 ? YES : NO;
}
- (BOOL)hostIsMotion {
    return manners().kind == 1 ? YES : NO;
}
- (BOOL)hostIsFCE {
    if (!manners().knowsExpress) {
        [self doesNotRecognizeSelector:_cmd];
    }
    return manners().kind == 2 ? YES : NO;
}
- (UInt32)hostVersionNumber {
    ++manners().versionQuestions;
    return manners().version;
}

@end
