#include "media/LosslessFrames.h"

namespace orbel {

namespace {

OutputTarget losslessTarget() {
    OutputTarget target;
    target.kind = OutputKind::Mkv;
    target.isFilm = true;
    return target;
}

} // namespace

WriterSpec LosslessFrames::spec(WriterSpec whole, OutputKind kind) {
    whole.format = RF_RGBA8;
    // The same for opaque pixels, and the shorter way.
    whole.alpha = kind == OutputKind::Mp4 ? OutputAlpha::Premultiplied : OutputAlpha::Straight;
    return whole;
}

LosslessFrames::LosslessFrames(const std::string& path, const WriterSpec& whole, OutputKind kind)
    : m_alpha(whole.alpha),
      m_keepsAlpha(kind != OutputKind::Mp4),
      m_raster(whole.width, whole.height),
      m_film(path, spec(whole, kind), losslessTarget()) {}

void LosslessFrames::write(const RasterInfo& raster, long frame) {
    if (m_keepsAlpha) {
        m_raster.fillStraight(raster, m_alpha);
    } else {
        m_raster.fillOpaque(raster, m_alpha);
    }
    m_film.write(m_raster.info(), frame);
}

} // namespace orbel
