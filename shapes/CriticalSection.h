#pragma once

#include <atomic>
#include <mutex>

namespace orbel {

/// A region that one thread at a time may be in, and that the thread inside may enter again. It is
/// created by the first lock and never destroyed, so that locks taken at process exit still hold.
struct CriticalRegion {
    std::once_flag created;
    std::recursive_mutex* mutex = nullptr;
};

/// Serialises every render, every resolution of a shape and every change of the shape cache. A door
/// need not take it: `Render` and the functions of the cache do. Whoever holds a shape beyond their
/// return takes it around all that.
extern CriticalRegion g_globalCritSection;

/// Holds a region from construction to destruction.
class Stroke_CSLock {
public:
    /// Waits without limit. `regionHandle` is the address of a `CriticalRegion`.
    explicit Stroke_CSLock(void* regionHandle);
    virtual ~Stroke_CSLock();
    Stroke_CSLock(const Stroke_CSLock&) = delete;
    Stroke_CSLock& operator=(const Stroke_CSLock&) = delete;

    /// True until the first lock of the process has created its region.
    static std::atomic<bool> g_firstTime;

private:
    CriticalRegion* m_region;
};

} // namespace orbel
