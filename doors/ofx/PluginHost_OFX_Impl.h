#pragma once

#include "doors/ofx/EffectInstance.h"
#include "doors/ofx/PluginRaster_OFX_Impl.h"
#include "doors/ofx/PluginUpdate_OFX_Impl.h"
#include "host/PluginHost_PLAIN_Impl.h"
#include "params/InstanceData.h"

#include <string>

namespace orbel {

/// The handle of this door's host: the effect instance that renders.
struct OFXHost {
    const ofx::EffectInstance* instance;
};

/// When and at what scale a frame is rendered.
struct OFXRenderTime {
    OfxTime time = 0.0; ///< frames; fractions are allowed
    double scaleX = 1.0;
    double scaleY = 1.0;
    bool draft = false;
};

/// One render call of the host as the core sees it. Lives for that call, on its thread.
class PluginHost_OFX_Impl final : public PluginHost_PLAIN_Impl {
public:
    /// The instance is borrowed and so are the pixels, which have the full height. Without pictures
    /// there are only parameters.
    PluginHost_OFX_Impl(const ofx::EffectInstance* instance, const OFXRenderTime& when,
                        const PlainPictures& pictures);
    PluginHost_OFX_Impl(const PluginHost_OFX_Impl&) = delete;
    PluginHost_OFX_Impl& operator=(const PluginHost_OFX_Impl&) = delete;
    ~PluginHost_OFX_Impl() = default;

    /// Whether the host gave the frame up.
    [[nodiscard]] bool wasAborted() const { return m_aborted; }
    /// The frame that a time in ticks stands for: exactly the host's own time for the current one.
    [[nodiscard]] OfxTime timeToFrame(const TimeObject& time) const;

    OFXHost* getOFXHost() override { return &m_handle; }

    bool isQualityHigh() override { return !m_when.draft; }
    double getScaleX() override { return m_when.scaleX; }
    double getScaleY() override { return m_when.scaleY; }
    int getCurrentTime() override { return m_ticks; }
    int progress(long done, long total) override;
    bool doAbort() override;

    PluginUpdate_API* makeUpdateApi() override { return &m_update; }

private:
    bool read(int param, const TimeObject& time, Value& value) const override;
    PluginRaster_API* makeRaster(const RasterInfo& info, PixelOwner owner) override;

    OFXHost m_handle;
    OFXRenderTime m_when;
    PluginUpdate_OFX_Impl m_update;
    std::string m_shapeText;
    Orbel_UserData m_shape;
    int m_ticks;           // whole ticks of the time
    double m_ticksDropped; // what is missing to it
    bool m_aborted = false;
};

} // namespace orbel
