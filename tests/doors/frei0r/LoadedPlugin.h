#pragma once

#include "doors/frei0r/Frei0rInterface.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace orbel::frei0r {

using Pixels = std::vector<std::uint32_t>;

/// The plug-in as a host has it: loaded from its file, reached through its exports alone.
class LoadedPlugin {
public:
    /// Throws std::runtime_error when the file or an export is missing.
    explicit LoadedPlugin(const std::string& file);

    [[nodiscard]] f0r_plugin_info_t info() const;
    [[nodiscard]] f0r_param_info_t control(int index) const;
    /// The place of a control; -1 when there is none of that name.
    [[nodiscard]] int find(const std::string& name) const;
    [[nodiscard]] void* handle() const { return m_handle; }

    decltype(&f0r_init) init = nullptr;
    decltype(&f0r_deinit) deinit = nullptr;
    decltype(&f0r_get_plugin_info) getPluginInfo = nullptr;
    decltype(&f0r_get_param_info) getParamInfo = nullptr;
    decltype(&f0r_construct) construct = nullptr;
    decltype(&f0r_destruct) destruct = nullptr;
    decltype(&f0r_set_param_value) setParamValue = nullptr;
    decltype(&f0r_get_param_value) getParamValue = nullptr;
    decltype(&f0r_update) update = nullptr;

private:
    template<typename Function>
    void resolve(const char* name, Function& function);

    void* m_handle;
};

/// The one copy for a test program; the host never unloads it.
const LoadedPlugin& plugin();

/// An instance of the effect in a host.
class Effect {
public:
    Effect(unsigned width, unsigned height)
        : m_width(width), m_height(height), m_instance(plugin().construct(width, height)) {}
    ~Effect() { plugin().destruct(m_instance); }
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;

    /// Sets a control of any type by name: a number, a colour, a position.
    template<typename Value>
    void set(const std::string& name, Value value) {
        plugin().setParamValue(m_instance, &value, plugin().find(name));
    }
    void set(const std::string& name, const std::string& text);
    template<typename Value>
    [[nodiscard]] Value get(const std::string& name) const {
        Value value{};
        plugin().getParamValue(m_instance, &value, plugin().find(name));
        return value;
    }
    [[nodiscard]] f0r_instance_t instance() const { return m_instance; }

    /// The frame over a copy of `input`.
    [[nodiscard]] Pixels update(double time, const Pixels& input) const;

private:
    std::size_t m_width;
    std::size_t m_height;
    f0r_instance_t m_instance;
};

/// A picture in which no two neighbours are the same, straight, of every alpha.
Pixels testPicture(unsigned width, unsigned height);

} // namespace orbel::frei0r
