#include "shapes/CriticalSection.h"

namespace orbel {

CriticalRegion g_globalCritSection;

std::atomic<bool> Stroke_CSLock::g_firstTime = true;

Stroke_CSLock::Stroke_CSLock(void* regionHandle)
    : m_region(static_cast<CriticalRegion*>(regionHandle)) {
    // Several threads may race for the first lock: only one of them creates the region.
    std::call_once(m_region->created, [this] {
        m_region->mutex = new std::recursive_mutex;
        g_firstTime = false;
    });
    m_region->mutex->lock();
}

Stroke_CSLock::~Stroke_CSLock() {
    m_region->mutex->unlock();
}

} // namespace orbel
