#include "doors/ofx/PluginHost_OFX_Impl.h"

#include "host/Numeric.h"

#include <utility>

namespace orbel {

namespace {

constexpr double TICKS_PER_FRAME = 100.0;
constexpr int ABORTED = 2;

} // namespace

PluginHost_OFX_Impl::PluginHost_OFX_Impl(const ofx::EffectInstance* instance,
                                         const OFXRenderTime& when, const PlainPictures& pictures)
    : PluginHost_PLAIN_Impl(pictures),
      m_handle{instance},
      m_when(when),
      m_update(instance),
      m_shapeText(instance->shapeText(when.time)),
      m_ticks(saturateTo<int>(TICKS_PER_FRAME * when.time)),
      m_ticksDropped(TICKS_PER_FRAME * when.time - m_ticks) {
    setUserDataPath(&m_shape, instance->shapeFile(when.time).c_str());
    setShapeText(m_shapeText);
    setUserData(&m_shape);
}

OfxTime PluginHost_OFX_Impl::timeToFrame(const TimeObject& time) const {
    if (time.getTime() == m_ticks) {
        return m_when.time;
    }
    return (time.getTime() + m_ticksDropped) / time.time_step();
}

// --- Render request and time ---

int PluginHost_OFX_Impl::progress(long /*done*/, long /*total*/) {
    return doAbort() ? ABORTED : 0;
}

bool PluginHost_OFX_Impl::doAbort() {
    const ofx::EffectInstance& instance = *m_handle.instance;
    m_aborted = m_aborted || instance.suites().effect->abort(instance.effect()) != 0;
    return m_aborted;
}

// --- Parameters ---

bool PluginHost_OFX_Impl::read(int param, const TimeObject& time, Value& value) const {
    const ParameterRow* const row = findParameter(param);
    if (row == nullptr || row->kind == RowKind::Custom) {
        return false;
    }
    value = m_handle.instance->value(*row, timeToFrame(time));
    return true;
}

PluginRaster_API* PluginHost_OFX_Impl::makeRaster(const RasterInfo& info, PixelOwner owner) {
    return new PluginRaster_OFX_Impl(info, std::move(owner));
}

} // namespace orbel
