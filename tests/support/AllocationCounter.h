#pragma once

#include <cstddef>

namespace orbel::test {

/// Linking this unit counts what `operator new` hands out and takes back, in all threads, and
/// may have it refuse.
class AllocationCounter {
public:
    /// Bytes live now; the peak starts from here.
    static std::size_t restart();
    /// The largest number of bytes live at once since `restart`.
    static std::size_t peak();
    /// Lets one allocation fail: the next when `later` is 0, else the one after `later` more.
    static void failOnce(long later);
};

} // namespace orbel::test
