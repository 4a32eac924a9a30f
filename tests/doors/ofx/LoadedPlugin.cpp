#include "tests/doors/ofx/LoadedPlugin.h"

#include "doors/ofx/platform/OfxNames.h"

#include <stdexcept>

#include <dlfcn.h>

namespace orbel::ofxtest {

namespace {

template<typename Function>
Function* symbol(void* library, const char* name) {
    auto* const found = reinterpret_cast<Function*>(dlsym(library, name));
    return found != nullptr ? found : throw std::runtime_error(name);
}

std::unique_ptr<Effect> instanceOf(const Effect& descriptor) {
    auto effect = std::make_unique<Effect>();
    effect->properties.values = descriptor.properties.values;
    for (const auto& [name, clip] : descriptor.clips) {
        auto& copy = effect->clips[name] = std::make_unique<Clip>();
        copy->properties.values = clip->properties.values;
        copy->properties.readOnly = true;
    }
    for (const auto& [name, param] : descriptor.params) {
        auto& copy = effect->params[name] = std::make_unique<Param>();
        copy->type = param->type;
        copy->properties.values = param->properties.values;
        copy->properties.rules = param->properties.rules;
    }
    effect->order = descriptor.order;
    return effect;
}

} // namespace

LoadedPlugin::LoadedPlugin(const std::string& binary, TestHost* host)
    : m_library(dlopen(binary.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (m_library == nullptr) {
        throw std::runtime_error(dlerror());
    }
    if (symbol<int()>(m_library, "OfxGetNumberOfPlugins")() != 1) {
        throw std::runtime_error("one plug-in is expected");
    }
    m_plugin = symbol<OfxPlugin*(int)>(m_library, "OfxGetPlugin")(0);
    m_plugin->setHost(host->interface());
    m_loaded = call(ofx::ACTION_LOAD);
}

LoadedPlugin::~LoadedPlugin() {
    call(ofx::ACTION_UNLOAD);
    dlclose(m_library);
}

OfxStatus LoadedPlugin::call(const char* action, Effect* effect, PropertySet* in,
                             PropertySet* out) const {
    return m_plugin->mainEntry(action, effect == nullptr ? nullptr : effect->handle(),
                               in == nullptr ? nullptr : in->handle(),
                               out == nullptr ? nullptr : out->handle());
}

std::unique_ptr<Effect> LoadedPlugin::describe(const std::string& context,
                                               OfxStatus* status) const {
    auto effect = std::make_unique<Effect>();
    effect->describing = true;
    effect->properties.rules = &effectRules();
    OfxStatus answer = call(ofx::ACTION_DESCRIBE, effect.get());
    if (answer == ofx::STAT_OK) {
        PropertySet arguments;
        arguments.set(ofx::PROP_CONTEXT, {context});
        arguments.readOnly = true;
        answer = call(ofx::ACTION_DESCRIBE_IN_CONTEXT, effect.get(), &arguments);
    }
    if (status != nullptr) {
        *status = answer;
    }
    return effect;
}

HostedInstance::HostedInstance(const LoadedPlugin* plugin, const std::string& context)
    : m_plugin(plugin),
      m_effect(instanceOf(*plugin->describe(context))),
      m_created(plugin->call(ofx::ACTION_CREATE_INSTANCE, m_effect.get())) {}

HostedInstance::~HostedInstance() {
    m_plugin->call(ofx::ACTION_DESTROY_INSTANCE, m_effect.get());
}

} // namespace orbel::ofxtest
