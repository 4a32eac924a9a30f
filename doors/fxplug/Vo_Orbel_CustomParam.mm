#include "doors/fxplug/Vo_Orbel_CustomParam.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

static NSString* const ARCHIVE_KEY = @"Vo_Orbel_CustomParamStuff";

@implementation Vo_Orbel_CustomParam

// The name is set before init, which is meant.
- (id)initWith:(const char*)name {
    [self setValue:name];
    return [self init];
}

- (id)initWithCoder:(NSCoder*)coder {
    self = [super init];
    if (self != nil) {
        NSUInteger length = 0;
        const std::uint8_t* const stored = [coder decodeBytesForKey:ARCHIVE_KEY
                                                     returnedLength:&length];
        // A damaged project may hold fewer bytes, or none.
        char name[sizeof m_name] = {};
        if (stored != nullptr) {
            std::memcpy(name, stored, std::min<std::size_t>(length, sizeof name));
        }
        [self setValue:name];
    }
    return self;
}

- (void)encodeWithCoder:(NSCoder*)coder {
    [coder encodeBytes:reinterpret_cast<const std::uint8_t*>(m_name)
                length:sizeof m_name
                forKey:ARCHIVE_KEY];
}

- (void)setValue:(const void*)bytes {
    std::memcpy(m_name, bytes, sizeof m_name);
}

- (const void*)getValue {
    return m_name;
}

@end
