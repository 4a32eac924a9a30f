// Walks over rows in blocks of as many pixels as a vector has lanes.

#if defined(ORBEL_BLOCK_WALK_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_BLOCK_WALK_INL_H
#undef ORBEL_BLOCK_WALK_INL_H
#else
#define ORBEL_BLOCK_WALK_INL_H
#endif

#include "pixel/kernels/PixelVectors-inl.h"

#include <hwy/cache_control.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

/// A block of its own for what is left of a row, filled up with zeros.
template<typename T>
class Tail {
public:
    HWY_INLINE Tail(const T* row, int pixels)
        : m_bytes(static_cast<std::size_t>(pixels) * componentsPerPixel * sizeof(T)) {
        std::memset(m_block, 0, sizeof(m_block));
        std::memcpy(m_block, row, m_bytes);
    }
    HWY_INLINE T* block() { return m_block; }
    HWY_INLINE void copyTo(T* row) const { std::memcpy(row, m_block, m_bytes); }

private:
    T m_block[componentsPerPixel * PIXELS_AT_ONCE];
    std::size_t m_bytes;
};

/// Fetches what lies a little ahead in memory into the cache. Worth while where a row is only
/// written: the processor itself sees too late what stores will need.
template<typename T>
HWY_INLINE void fetchAhead(const T* row) {
    constexpr std::uintptr_t bytes = 1024;
    hwy::Prefetch(reinterpret_cast<const T*>(reinterpret_cast<std::uintptr_t>(row) + bytes));
}

/// Calls `kernel(block)` for the blocks of a row.
template<typename T, class Kernel>
HWY_INLINE void forEachBlock(const Kernel& kernel, T* row, int pixels) {
    for (; pixels >= PIXELS_AT_ONCE; pixels -= PIXELS_AT_ONCE) {
        kernel(row);
        row += componentsPerPixel * PIXELS_AT_ONCE;
    }
    if (pixels > 0) {
        Tail<T> tail(row, pixels);
        kernel(tail.block());
        tail.copyTo(row);
    }
}

/// Calls `kernel(a, b)` for the blocks of two rows.
template<typename T, class Kernel>
HWY_INLINE void forEachBlock(const Kernel& kernel, T* a, T* b, int pixels) {
    for (; pixels >= PIXELS_AT_ONCE; pixels -= PIXELS_AT_ONCE) {
        kernel(a, b);
        a += componentsPerPixel * PIXELS_AT_ONCE;
        b += componentsPerPixel * PIXELS_AT_ONCE;
    }
    if (pixels > 0) {
        Tail<T> tailA(a, pixels);
        Tail<T> tailB(b, pixels);
        kernel(tailA.block(), tailB.block());
        tailA.copyTo(a);
        tailB.copyTo(b);
    }
}

/// Calls `kernel(a, b, out)` for the blocks of two rows that are read and one that is written.
template<typename T, class Kernel>
HWY_INLINE void forEachBlock(const Kernel& kernel, const T* a, const T* b, T* out, int pixels) {
    for (; pixels >= PIXELS_AT_ONCE; pixels -= PIXELS_AT_ONCE) {
        kernel(a, b, out);
        a += componentsPerPixel * PIXELS_AT_ONCE;
        b += componentsPerPixel * PIXELS_AT_ONCE;
        out += componentsPerPixel * PIXELS_AT_ONCE;
    }
    if (pixels > 0) {
        Tail<T> tailA(a, pixels);
        Tail<T> tailB(b, pixels);
        kernel(tailA.block(), tailB.block(), tailA.block());
        tailA.copyTo(out);
    }
}

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
