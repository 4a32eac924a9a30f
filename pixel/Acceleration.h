#pragma once

namespace orbel {

// How frames are computed. Whatever is set here, the bytes of a frame stay the same.

/// Levels of acceleration: 0 computes pixel by pixel, which is the reference implementation; the
/// others use vectors.
inline constexpr int ACCELERATION_NONE = 0;
inline constexpr int ACCELERATION_128 = 1; ///< 128-bit vectors: SSE4, NEON
inline constexpr int ACCELERATION_256 = 2; ///< 256-bit vectors: AVX2
inline constexpr int ACCELERATION_512 = 3; ///< 512-bit vectors: AVX-512
inline constexpr int ACCELERATION_LEVELS = 4;

/// The highest level that this processor and this build have.
[[nodiscard]] int bestAccelerationLevel();

/// The level in use: the best one unless set otherwise.
[[nodiscard]] int accelerationLevel();

/// Sets the level for the frames that begin after the call, limited to 0 and the best level. Meant
/// for tests and benchmarks.
void setAccelerationLevel(int level);

/// Threads that a frame is drawn on, 1 or more: as many as there are processors unless set
/// otherwise. Always 1 in a build without a task library.
[[nodiscard]] int renderThreads();

/// Sets the number of threads for the frames that begin after the call, limited to 1 and a large
/// number; 0 or less stands for as many as there are processors.
void setRenderThreads(int threads);

} // namespace orbel
