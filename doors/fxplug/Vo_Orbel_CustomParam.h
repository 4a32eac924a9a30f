#pragma once

#import <Foundation/Foundation.h>

/// The value of the "Shape" parameter: the path of the shape file, NUL-terminated, in a buffer of
/// 1024 bytes. Archived whole, with the bytes behind the NUL, under
/// "Vo_Orbel_CustomParamStuff"; key and class name are part of every saved project.
@interface Vo_Orbel_CustomParam : NSObject <NSCoding> {
@private
    char m_name[1024];
}
/// Reads 1024 bytes from `name`.
- (id)initWith:(const char*)name;
/// Reads 1024 bytes.
- (void)setValue:(const void*)bytes;
/// The 1024 bytes; borrowed, and without a terminating NUL if the project held none.
- (const void*)getValue;
@end
