#include "drawing/SvgRecorder.h"

#include <cairo-script.h>
#include <librsvg/rsvg.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <optional>
#include <string_view>

namespace orbel {

namespace {

/// cairo counts in 256ths; a page this large makes them fine enough.
constexpr double recordedSide = 2048.0;
/// What reaches far beyond the page overflows there without a word; so a second recording, with far
/// more room and less detail, tells. Large drawings are spared it.
constexpr double roomySide = recordedSide / 64;
constexpr double agreement = 0.002;       // of the page, between both
constexpr double farthestPages = 100'000; // from the page; beyond, the second overflows as well
constexpr std::size_t mostRecordedTwice = std::size_t{1} << 20; // bytes of SVG
/// Axis-parallel fills take a road through the script surface that fails, so the page is turned,
/// and if that happens to make others parallel, turned differently.
constexpr std::array<double, 4> turns{0.32, 0.57, 0.23, 0.71};
constexpr double pixelsPerInch = 96.0;
constexpr double emPixels = 16.0;

constexpr const char* plainLook =
    "* { filter: none !important; mask: none !important; stroke-dasharray: none !important;"
    " opacity: 1 !important; mix-blend-mode: normal !important; isolation: auto !important; }"
    " image, feImage { display: none !important; }";
constexpr const char* nothingCut =
    "* { clip-path: none !important; overflow: visible !important; }";

std::string textOf(GError* error) {
    std::string text = error != nullptr ? error->message : "the renderer gives no reason";
    g_clear_error(&error);
    while (!text.empty() && (text.back() == '\n' || text.back() == '.')) {
        text.pop_back();
    }
    return text;
}

constexpr double unknown = -1e300; // a length in percent of a window that is not there

double pixelsOf(const RsvgLength& length) {
    switch (length.unit) {
    case RSVG_UNIT_PX:
        return length.length;
    case RSVG_UNIT_EM:
        return length.length * emPixels;
    case RSVG_UNIT_EX:
        return length.length * emPixels / 2;
    case RSVG_UNIT_IN:
        return length.length * pixelsPerInch;
    case RSVG_UNIT_CM:
        return length.length * pixelsPerInch / 2.54;
    case RSVG_UNIT_MM:
        return length.length * pixelsPerInch / 25.4;
    case RSVG_UNIT_PT:
        return length.length * pixelsPerInch / 72;
    case RSVG_UNIT_PC:
        return length.length * pixelsPerInch / 6;
    default:
        return unknown;
    }
}

cairo_status_t append(void* text, const unsigned char* bytes, unsigned count) {
    try {
        static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), count);
        return CAIRO_STATUS_SUCCESS;
    } catch (const std::bad_alloc&) {
        return CAIRO_STATUS_NO_MEMORY;
    }
}

struct SurfaceDeleter {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextDeleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, SurfaceDeleter>;
using Context = std::unique_ptr<cairo_t, ContextDeleter>;

/// Writes the script of a recording; false when the script surface fails on it. Tiles that it made
/// are written out when the recording ends, so `text` must outlive that.
bool writeScript(cairo_surface_t* recording, std::string* text) {
    cairo_device_t* const script = cairo_script_create_for_stream(append, text);
    const cairo_status_t status = cairo_script_from_recording_surface(script, recording);
    cairo_device_finish(script);
    cairo_device_destroy(script);
    if (status == CAIRO_STATUS_NO_MEMORY) {
        throw std::bad_alloc();
    }
    return status == CAIRO_STATUS_SUCCESS;
}

OutlineBox boxOf(const PaintedPath& path) {
    OutlineBox box;
    for (const OutlineCurve& curve : path.curves) {
        box.add(orbel::boxOf(curve));
    }
    return box;
}

bool agree(const OutlineBox& a, const OutlineBox& b, double slack) {
    return std::abs(a.left - b.left) <= slack && std::abs(a.top - b.top) <= slack &&
           std::abs(a.right - b.right) <= slack && std::abs(a.bottom - b.bottom) <= slack;
}

/// Takes from the roomy recording what overflowed in the fine one, unless it did so there, too.
void mendOverflow(const std::vector<PaintedPath>& roomy, double page,
                  std::vector<PaintedPath>* painted) {
    if (roomy.size() != painted->size()) {
        return;
    }
    for (std::size_t i = 0; i < roomy.size(); ++i) {
        const OutlineBox box = boxOf(roomy[i]);
        if (!agree(box, boxOf((*painted)[i]), agreement * page)) {
            (*painted)[i] = roomy[i];
            if (box.longerSide() > farthestPages * page) {
                (*painted)[i].curves.clear();
            }
        }
    }
}

} // namespace

struct SvgRecorder::Handle {
    RsvgHandle* handle = nullptr;
    double width = 0.0;
    double height = 0.0;
    bool large = false;

    void measurePage();
    void measureDrawing();
    [[nodiscard]] std::optional<std::vector<PaintedPath>> recordTurned(double turn,
                                                                       double side) const;
    [[nodiscard]] std::optional<std::vector<PaintedPath>> recordSized(double side) const;
};

void SvgRecorder::Handle::measurePage() {
    gboolean hasWidth = FALSE;
    gboolean hasHeight = FALSE;
    gboolean hasBox = FALSE;
    RsvgLength w{};
    RsvgLength h{};
    RsvgRectangle box{};
    rsvg_handle_get_intrinsic_dimensions(handle, &hasWidth, &w, &hasHeight, &h, &hasBox, &box);
    const double wide = hasWidth != FALSE ? pixelsOf(w) : unknown;
    const double high = hasHeight != FALSE ? pixelsOf(h) : unknown;
    if (wide != unknown && high != unknown) {
        width = wide;
        height = high;
    } else if (hasBox != FALSE && box.width > 0 && box.height > 0) {
        width = wide != unknown   ? wide
                : high != unknown ? high * box.width / box.height
                                  : box.width;
        height = high != unknown ? high : width * box.height / box.width;
    } else {
        measureDrawing();
        width = wide != unknown ? wide : width;
        height = high != unknown ? high : height;
    }
    constexpr double largest = 1e7;
    if (!(width > 0 && height > 0 && width <= largest && height <= largest)) {
        throw DrawingError{"the drawing's page has no usable size",
                           "give its svg element a width and a height in pixels"};
    }
}

/// Without a page, what is drawn makes one.
void SvgRecorder::Handle::measureDrawing() {
    const RsvgRectangle window{0, 0, 1000, 1000};
    RsvgRectangle ink{};
    GError* error = nullptr;
    if (rsvg_handle_get_geometry_for_layer(handle, nullptr, &window, &ink, nullptr, &error) ==
        FALSE) {
        throw DrawingError{"the drawing cannot be measured: " + textOf(error),
                           "give its svg element a viewBox"};
    }
    width = ink.x + ink.width > 0 ? ink.x + ink.width : 100;
    height = ink.y + ink.height > 0 ? ink.y + ink.height : 100;
}

std::optional<std::vector<PaintedPath>> SvgRecorder::Handle::recordTurned(double turn,
                                                                          double side) const {
    const double scale = side / std::max(width, height);
    std::string script;
    const Surface recording(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr));
    const Context context(cairo_create(recording.get()));
    cairo_rotate(context.get(), turn);
    cairo_scale(context.get(), scale, scale);
    const RsvgRectangle page{0, 0, width, height};
    GError* error = nullptr;
    if (rsvg_handle_render_document(handle, context.get(), &page, &error) == FALSE) {
        if (error != nullptr && std::strstr(error->message, "NoMemory") != nullptr) {
            throw std::bad_alloc();
        }
        throw DrawingError{"the drawing cannot be followed: " + textOf(error),
                           "convert what it repeats to paths in a drawing program"};
    }
    if (!writeScript(recording.get(), &script)) {
        return std::nullopt;
    }
    std::vector<PaintedPath> painted = readRecording(script);
    const double c = std::cos(turn) / scale;
    const double s = std::sin(turn) / scale;
    const PlaneTransform back{c, s, -s, c, 0, 0};
    for (PaintedPath& path : painted) {
        for (OutlineCurve& curve : path.curves) {
            transformCurve(back, &curve);
        }
    }
    return painted;
}

std::optional<std::vector<PaintedPath>> SvgRecorder::Handle::recordSized(double side) const {
    for (const double turn : turns) {
        if (auto painted = recordTurned(turn, side)) {
            return painted;
        }
    }
    return std::nullopt;
}

SvgRecorder::SvgRecorder(const std::string& svg, bool clipped)
    : m_handle(std::make_unique<Handle>()) {
    GError* error = nullptr;
    m_handle->handle =
        rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(svg.data()), svg.size(), &error);
    if (m_handle->handle == nullptr) {
        throw DrawingError{"the drawing cannot be read: " + textOf(error),
                           "save the drawing as plain SVG"};
    }
    m_handle->large = svg.size() > mostRecordedTwice;
    rsvg_handle_set_dpi(m_handle->handle, pixelsPerInch);
    const std::string look = std::string(plainLook) + (clipped ? "" : nothingCut);
    if (rsvg_handle_set_stylesheet(m_handle->handle, reinterpret_cast<const guint8*>(look.data()),
                                   look.size(), &error) == FALSE) {
        throw DrawingError{"the drawing cannot be read: " + textOf(error), ""};
    }
}

SvgRecorder::~SvgRecorder() {
    g_clear_object(&m_handle->handle);
}

RecordedDrawing SvgRecorder::record() const {
    m_handle->measurePage();
    auto painted = m_handle->recordSized(recordedSide);
    if (painted && !m_handle->large) {
        if (const auto roomy = m_handle->recordSized(roomySide)) {
            mendOverflow(*roomy, std::max(m_handle->width, m_handle->height), &*painted);
        }
    }
    if (painted) {
        return {m_handle->width, m_handle->height, std::move(*painted)};
    }
    throw DrawingError{"the drawing cannot be recorded",
                       "convert its objects to paths in a drawing program"};
}

} // namespace orbel
