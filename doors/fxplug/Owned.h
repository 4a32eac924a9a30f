#pragma once

#include <utility>

namespace orbel {

/// An object that was handed over with its ownership: released at the end of its scope, unless it
/// moves on. `T` is an object pointer; nil is allowed.
template<class T>
class Owned {
public:
    explicit Owned(T object) : m_object(object) {}
    Owned(Owned&& other) noexcept : m_object(std::exchange(other.m_object, T())) {}
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    Owned& operator=(Owned&&) = delete;
    ~Owned() { [m_object release]; }
    [[nodiscard]] T get() const { return m_object; }

private:
    T m_object;
};

} // namespace orbel
