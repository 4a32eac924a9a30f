#pragma once

#include "pixel/Acceleration.h"

namespace orbel::test {

/// Puts level and threads back at the end of a test.
class AccelerationSettings {
public:
    AccelerationSettings() = default;
    AccelerationSettings(const AccelerationSettings&) = delete;
    AccelerationSettings& operator=(const AccelerationSettings&) = delete;
    ~AccelerationSettings() {
        setAccelerationLevel(m_level);
        setRenderThreads(m_threads);
    }
    /// The level when the test began.
    [[nodiscard]] int level() const { return m_level; }

private:
    int m_level = accelerationLevel();
    int m_threads = renderThreads();
};

} // namespace orbel::test
