#include "doors/frei0r/Controls.h"
#include "doors/frei0r/Frei0rInterface.h"
#include "doors/frei0r/HostTime.h"
#include "doors/frei0r/Instance.h"

#include <new>

#include <dlfcn.h>

// The interface as hosts call it. Nothing is thrown across it: a call that cannot be served has no
// effect, and a call for an instance or a control that does not exist is none.

namespace {

using orbel::frei0r::Control;
using orbel::frei0r::controls;
using orbel::frei0r::Instance;
using orbel::frei0r::TimeUnit;

constexpr int interfaceMajor = FREI0R_MAJOR_VERSION;

template<typename Call>
void guarded(const Call& call) noexcept {
    try {
        call();
    } catch (...) {
        // The interface has no way to tell.
    }
}

bool isControl(int index) {
    return index >= 0 && static_cast<std::size_t>(index) < controls().size();
}

/// The file that holds an address of code.
std::string_view fileOf(const void* address) {
    Dl_info info{};
    const bool known = dladdr(address, &info) != 0 && info.dli_fname != nullptr;
    return known ? info.dli_fname : "";
}

} // namespace

int f0r_init() {
    return 1;
}

void f0r_deinit() {}

void f0r_get_plugin_info(f0r_plugin_info_t* info) {
    guarded([info] {
        *info = {"Orbel",
                 "Orbel",
                 F0R_PLUGIN_TYPE_FILTER,
                 F0R_COLOR_MODEL_RGBA8888,
                 interfaceMajor,
                 ORBEL_VERSION_MAJOR,
                 ORBEL_VERSION_MINOR,
                 static_cast<int>(controls().size()),
                 "Animated three-dimensional strokes along vector paths"};
    });
}

void f0r_get_param_info(f0r_param_info_t* info, int param_index) {
    guarded([info, param_index] {
        if (isControl(param_index)) {
            const Control& control = controls()[static_cast<std::size_t>(param_index)];
            *info = {control.name.c_str(), control.type, control.explanation.c_str()};
        }
    });
}

f0r_instance_t f0r_construct(unsigned int width, unsigned int height) {
    Instance* instance = nullptr;
    guarded([&] { instance = new Instance(width, height); });
    return instance;
}

void f0r_destruct(f0r_instance_t instance) {
    delete static_cast<Instance*>(instance);
}

void f0r_set_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
    guarded([=] {
        if (instance != nullptr && param != nullptr && isControl(param_index)) {
            static_cast<Instance*>(instance)->set(static_cast<std::size_t>(param_index), param);
        }
    });
}

void f0r_get_param_value(f0r_instance_t instance, f0r_param_t param, int param_index) {
    guarded([=] {
        if (instance != nullptr && param != nullptr && isControl(param_index)) {
            static_cast<Instance*>(instance)->get(static_cast<std::size_t>(param_index), param);
        }
    });
}

void f0r_update(f0r_instance_t instance, double time, const std::uint32_t* inframe,
                std::uint32_t* outframe) {
    const void* const caller = __builtin_return_address(0);
    guarded([=] {
        if (instance != nullptr && outframe != nullptr) {
            const TimeUnit unit = orbel::frei0r::guessTimeUnit(fileOf(caller));
            static_cast<Instance*>(instance)->update(time, unit, inframe, outframe);
        }
    });
}
