#pragma once

#include "doors/fxplug/FxPlugInterface.h"

namespace orbel {

/// The time in which a host lets an effect read and write parameters outside its own calls: from
/// `startAction:` to the end of the scope, however that is left. [main thread]
class HostAction {
public:
    /// Borrows both; with nil as `api` there is no such time, and the effect asks for none.
    HostAction(id<FxCustomParameterActionAPI> api, id sender) : m_api(api), m_sender(sender) {
        [m_api startAction:m_sender];
    }
    HostAction(const HostAction&) = delete;
    HostAction& operator=(const HostAction&) = delete;
    ~HostAction() { [m_api endAction:m_sender]; }

    /// The frame at which the user acts.
    [[nodiscard]] double currentTime() const { return [m_api currentTime]; }

private:
    id<FxCustomParameterActionAPI> m_api;
    id m_sender;
};

} // namespace orbel
