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

WriterSpec LosslessFrames::spec(WriterSpec whole) {
    whole.format = RF_RGBA8;
    whole.alpha = OutputAlpha::Straight;
    return whole;
}

LosslessFrames::LosslessFrames(const std::string& path, const WriterSpec& whole)
    : m_alpha(whole.alpha),
      m_raster(whole.width, whole.height),
      m_film(path, spec(whole), losslessTarget()) {}

void LosslessFrames::write(const RasterInfo& raster, long frame) {
    m_raster.fillStraight(raster, m_alpha);
    m_film.write(m_raster.info(), frame);
}

} // namespace orbel
