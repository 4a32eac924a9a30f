#pragma once

#include "doors/ofx/platform/OfxTypes.h"

#include <string>

namespace orbel::ofx {

/// A property set of the host, borrowed. A host may not know a property, may answer an error, or
/// may say that all went well and write nothing: reading then gives the fallback, and setting has
/// no effect. A null handle behaves like an empty set.
class Properties {
public:
    Properties() = default;
    Properties(const OfxPropertySuiteV1* suite, OfxPropertySetHandle handle)
        : m_suite(handle == nullptr ? nullptr : suite), m_handle(handle) {}

    [[nodiscard]] explicit operator bool() const { return m_suite != nullptr; }
    [[nodiscard]] OfxPropertySetHandle handle() const { return m_handle; }

    [[nodiscard]] int getInt(const char* name, int fallback, int index = 0) const;
    [[nodiscard]] double getDouble(const char* name, double fallback, int index = 0) const;
    [[nodiscard]] void* getPointer(const char* name) const;
    /// A copy: the host's own text may be gone with the next call.
    [[nodiscard]] std::string getString(const char* name) const;
    /// All zero where the host has no answer.
    [[nodiscard]] OfxRectI getRect(const char* name) const;

    // Overloads on the type would choose the property's type by accident; these say it. True when
    // the host took the value.
    bool setInt(const char* name, int value, int index = 0) const;
    bool setDouble(const char* name, double value, int index = 0) const;
    bool setString(const char* name, const char* value, int index = 0) const;
    bool setPointer(const char* name, void* value) const;

private:
    const OfxPropertySuiteV1* m_suite = nullptr;
    OfxPropertySetHandle m_handle = nullptr;
};

} // namespace orbel::ofx
