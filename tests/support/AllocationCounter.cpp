#include "tests/support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace {

std::atomic<std::size_t> g_live = 0;
std::atomic<std::size_t> g_peak = 0;
std::atomic<long> g_untilFailure = -1; // none while negative

void* counted(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    const std::size_t live = g_live += malloc_usable_size(memory);
    std::size_t peak = g_peak;
    while (live > peak && !g_peak.compare_exchange_weak(peak, live)) {
    }
    return memory;
}

void release(void* memory) {
    g_live -= malloc_usable_size(memory);
    std::free(memory);
}

std::size_t alignedSize(std::size_t size, std::align_val_t alignment) {
    const auto unit = static_cast<std::size_t>(alignment);
    return (size + unit - 1) / unit * unit;
}

} // namespace

void* operator new(std::size_t size) {
    if (g_untilFailure >= 0 && g_untilFailure-- == 0) {
        throw std::bad_alloc();
    }
    return counted(std::malloc(size == 0 ? 1 : size));
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    return counted(
        std::aligned_alloc(static_cast<std::size_t>(alignment), alignedSize(size, alignment)));
}

// The library's own other forms end here too, but a sanitizer's do not.
void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}

void operator delete(void* memory) noexcept {
    release(memory);
}

void operator delete[](void* memory) noexcept {
    release(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    release(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    release(memory);
}

void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}

void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    release(memory);
}

namespace orbel::test {

std::size_t AllocationCounter::restart() {
    const std::size_t live = g_live;
    g_peak = live;
    return live;
}

std::size_t AllocationCounter::peak() {
    return g_peak;
}

void AllocationCounter::failOnce(long later) {
    g_untilFailure = later;
}

} // namespace orbel::test
