#pragma once

#include "tests/doors/ofx/TestHost.h"

#include <memory>
#include <string>

namespace orbel::ofxtest {

/// The binary of a bundle, loaded and connected to a host for as long as this lives.
class LoadedPlugin {
public:
    /// Throws `std::runtime_error` when the loader refuses.
    LoadedPlugin(const std::string& binary, TestHost* host);
    ~LoadedPlugin();
    LoadedPlugin(const LoadedPlugin&) = delete;
    LoadedPlugin& operator=(const LoadedPlugin&) = delete;

    [[nodiscard]] const OfxPlugin& plugin() const { return *m_plugin; }
    /// What the plug-in answered to being loaded.
    [[nodiscard]] OfxStatus loaded() const { return m_loaded; }
    OfxStatus call(const char* action, Effect* effect = nullptr, PropertySet* in = nullptr,
                   PropertySet* out = nullptr) const;

    /// A descriptor after both descriptions; `status` receives the first answer that is not well.
    [[nodiscard]] std::unique_ptr<Effect> describe(const std::string& context,
                                                   OfxStatus* status = nullptr) const;

private:
    void* m_library;
    OfxPlugin* m_plugin = nullptr;
    OfxStatus m_loaded = -1;
};

/// An instance as a host keeps it, from creation to destruction.
class HostedInstance {
public:
    HostedInstance(const LoadedPlugin* plugin, const std::string& context);
    ~HostedInstance();
    HostedInstance(const HostedInstance&) = delete;
    HostedInstance& operator=(const HostedInstance&) = delete;

    [[nodiscard]] OfxStatus created() const { return m_created; }
    [[nodiscard]] Effect& effect() { return *m_effect; }
    [[nodiscard]] Clip& clip(const std::string& name) { return *m_effect->clips.at(name); }
    [[nodiscard]] Param& param(const std::string& name) { return *m_effect->params.at(name); }
    OfxStatus call(const char* action, PropertySet* in, PropertySet* out = nullptr) {
        return m_plugin->call(action, m_effect.get(), in, out);
    }

private:
    const LoadedPlugin* m_plugin;
    std::unique_ptr<Effect> m_effect;
    OfxStatus m_created;
};

} // namespace orbel::ofxtest
