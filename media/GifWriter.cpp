#include "media/GifWriter.h"

#include "media/MediaReader.h"

#include <algorithm>
#include <cstdio>
#include <exception>

namespace orbel {

namespace {

constexpr long mostPerSecond = 50;

long stepOf(const FrameRate& rate) {
    const long most = mostPerSecond * rate.denominator;
    return std::max(1L, (rate.numerator + most - 1) / most);
}

WriterSpec thinned(WriterSpec spec) {
    spec.frameRate.denominator *= static_cast<int>(stepOf(spec.frameRate));
    return LosslessFrames::spec(spec);
}

} // namespace

GifWriter::GifWriter(const std::string& path, const WriterSpec& spec, const OutputTarget& target)
    : m_framesPath(path + ".frames.mkv"),
      m_spec(thinned(spec)),
      m_step(stepOf(spec.frameRate)),
      m_alpha(spec.alpha),
      m_film(path, m_spec, target),
      m_frames(m_framesPath, spec),
      m_colours(spec.width, spec.height) {}

GifWriter::~GifWriter() {
    try {
        finish();
    } catch (const std::exception&) {
        // Nobody is left to tell; there is no GIF without its last step.
    }
    std::remove(m_framesPath.c_str());
}

void GifWriter::write(const RasterInfo& raster, long frame) {
    checkOpen(m_finished);
    if (m_offered++ % m_step == 0) {
        m_frames.write(raster, frame);
        m_colours.add(raster, m_alpha);
        ++m_kept;
    }
}

void GifWriter::codeFrames() {
    m_frames.finish();
    m_film.setPalette(*m_colours.choose());
    const std::unique_ptr<MediaReader> source = openMedia(m_framesPath, m_spec.threads);
    ByteRaster raster(m_spec.width, m_spec.height);
    for (long index = 0; index < m_kept; ++index) {
        fillRaster(*source->readFrame(index), raster.info(), SourceAlpha::Straight);
        if (m_colours.sawHoles() && !hasHoles(raster.info())) {
            // The coder clears only frames with holes before the next; others would show through.
            std::fill_n(raster.info().data, raster.info().bytesPerPixel, std::uint8_t{0});
        }
        m_film.write(raster.info(), index * m_step);
    }
}

void GifWriter::finish() {
    if (m_finished) {
        return;
    }
    m_finished = true;
    if (m_kept > 0) {
        codeFrames();
    }
    m_film.finish();
    std::remove(m_framesPath.c_str());
}

void GifWriter::abandon() {
    m_finished = true;
    m_film.abandon();
    m_frames.abandon();
}

} // namespace orbel
