#pragma once

namespace orbel {

/// Releases, at the end of its scope, an object that was handed over with its ownership. `T` is an
/// object pointer; nil is allowed.
template<class T>
class Owned {
public:
    explicit Owned(T object) : m_object(object) {}
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    ~Owned() { [m_object release]; }
    [[nodiscard]] T get() const { return m_object; }

private:
    T m_object;
};

} // namespace orbel
