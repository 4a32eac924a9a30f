#include "tests/doors/frei0r/LoadedPlugin.h"

#include <stdexcept>

#include <dlfcn.h>

namespace orbel::frei0r {

LoadedPlugin::LoadedPlugin(const std::string& file)
    : m_handle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (m_handle == nullptr) {
        throw std::runtime_error(dlerror());
    }
    resolve("f0r_init", init);
    resolve("f0r_deinit", deinit);
    resolve("f0r_get_plugin_info", getPluginInfo);
    resolve("f0r_get_param_info", getParamInfo);
    resolve("f0r_construct", construct);
    resolve("f0r_destruct", destruct);
    resolve("f0r_set_param_value", setParamValue);
    resolve("f0r_get_param_value", getParamValue);
    resolve("f0r_update", update);
    if (init() == 0) {
        throw std::runtime_error("the plug-in does not start");
    }
}

template<typename Function>
void LoadedPlugin::resolve(const char* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(m_handle, name));
    if (function == nullptr) {
        throw std::runtime_error(std::string("no export ") + name);
    }
}

f0r_plugin_info_t LoadedPlugin::info() const {
    f0r_plugin_info_t info{};
    getPluginInfo(&info);
    return info;
}

f0r_param_info_t LoadedPlugin::control(int index) const {
    f0r_param_info_t info{};
    getParamInfo(&info, index);
    return info;
}

int LoadedPlugin::find(const std::string& name) const {
    for (int i = 0; i < info().num_params; ++i) {
        if (name == control(i).name) {
            return i;
        }
    }
    return -1;
}

const LoadedPlugin& plugin() {
    static const LoadedPlugin loaded(ORBEL_FREI0R_PLUGIN);
    return loaded;
}

void Effect::set(const std::string& name, const std::string& text) {
    std::string copy = text;
    char* bytes = copy.data();
    plugin().setParamValue(m_instance, &bytes, plugin().find(name));
}

Pixels Effect::update(double time, const Pixels& input) const {
    const Pixels before(input.begin(), input.end());
    // Beyond the end nothing may be read or written; the sanitizers watch over the vectors.
    Pixels output(m_width * m_height, 0xdeadbeef);
    plugin().update(m_instance, time, input.data(), output.data());
    if (input != before) {
        throw std::logic_error("the host's picture was changed");
    }
    return output;
}

Pixels testPicture(unsigned width, unsigned height) {
    Pixels pixels;
    for (std::uint32_t y = 0; y < height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) {
            const std::uint32_t alpha = (x * 3 + y * 5) & 0xffU;
            pixels.push_back((x * 7 & 0xffU) | (y * 11 & 0xffU) << 8U |
                             ((x + y) * 13 & 0xffU) << 16U | alpha << 24U);
        }
    }
    return pixels;
}

} // namespace orbel::frei0r
