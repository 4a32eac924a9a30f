#include "doors/ofx/Properties.h"

#include "doors/ofx/platform/OfxNames.h"

namespace orbel::ofx {

int Properties::getInt(const char* name, int fallback, int index) const {
    int value = fallback;
    const bool known =
        m_suite != nullptr && m_suite->propGetInt(m_handle, name, index, &value) == STAT_OK;
    return known ? value : fallback;
}

double Properties::getDouble(const char* name, double fallback, int index) const {
    double value = fallback;
    const bool known =
        m_suite != nullptr && m_suite->propGetDouble(m_handle, name, index, &value) == STAT_OK;
    return known ? value : fallback;
}

void* Properties::getPointer(const char* name) const {
    void* value = nullptr;
    const bool known =
        m_suite != nullptr && m_suite->propGetPointer(m_handle, name, 0, &value) == STAT_OK;
    return known ? value : nullptr;
}

std::string Properties::getString(const char* name) const {
    char* value = nullptr;
    const bool known =
        m_suite != nullptr && m_suite->propGetString(m_handle, name, 0, &value) == STAT_OK;
    return known && value != nullptr ? value : std::string();
}

OfxRectI Properties::getRect(const char* name) const {
    return {getInt(name, 0, 0), getInt(name, 0, 1), getInt(name, 0, 2), getInt(name, 0, 3)};
}

bool Properties::setInt(const char* name, int value, int index) const {
    return m_suite != nullptr && m_suite->propSetInt(m_handle, name, index, value) == STAT_OK;
}

bool Properties::setDouble(const char* name, double value, int index) const {
    return m_suite != nullptr && m_suite->propSetDouble(m_handle, name, index, value) == STAT_OK;
}

bool Properties::setString(const char* name, const char* value, int index) const {
    return m_suite != nullptr && m_suite->propSetString(m_handle, name, index, value) == STAT_OK;
}

bool Properties::setPointer(const char* name, void* value) const {
    return m_suite != nullptr && m_suite->propSetPointer(m_handle, name, 0, value) == STAT_OK;
}

} // namespace orbel::ofx
