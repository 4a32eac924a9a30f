#pragma once

#import <Foundation/Foundation.h>

namespace orbel::fxtest {

/// An autorelease pool for a scope, as a host keeps one around every call.
class Pool {
public:
    Pool() : m_pool([[NSAutoreleasePool alloc] init]) {}
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    ~Pool() { [m_pool drain]; }

private:
    NSAutoreleasePool* m_pool;
};

} // namespace orbel::fxtest
