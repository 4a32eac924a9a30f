#pragma once

#include "shapes/PathRenderer.h"
#include "shapes/PathTokenizer.h"
#include "shapes/SvgReport.h"
#include "shapes/XmlReader.h"

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace orbel {

/// Reads the drawable elements of an SVG file, each as one outline in the file's own coordinates.
/// Geometry only: looks are accepted and dropped, transforms are not applied, arcs are skipped,
/// ovals come out three quarters as tall as they should. Nothing is reported but to the observer;
/// whatever was complete before an error stays in the target. No file can make it hang, or take
/// memory out of proportion: entities, depth, vertices and bytes are bounded.
///
///     PluginPath_Impl shape;
///     svg_parser parser;
///     parser.setPath(&shape);
///     parser.parse("star.svg");
///     shape.normalize();
class svg_parser final : private XmlEvents {
public:
    /// A larger file is not read.
    static constexpr std::size_t maxFileBytes = std::size_t{64} << 20;

    svg_parser() = default;
    ~svg_parser() = default;
    svg_parser(const svg_parser&) = delete;
    svg_parser& operator=(const svg_parser&) = delete;

    /// The shape to fill, borrowed; outlines are added to what it holds. Without one they are read
    /// and dropped.
    void setPath(PluginPath_Impl* target) { m_path.setPath(target); }
    /// Borrowed; null for none.
    void setObserver(SvgReaderObserver* observer) { m_report.setObserver(observer); }

    /// Reads a regular file. Throws only std::bad_alloc and what the observer throws.
    void parse(const char* fileName);
    /// The same for the contents of a file in memory.
    void parseBuffer(std::span<const char> bytes);

    /// The text of the "title" elements, cut to 255 bytes.
    [[nodiscard]] const std::string& title() const { return m_title; }

private:
    /// Gives the next bytes, as many as are asked for; fewer are the last. They are valid until the
    /// next call.
    using ChunkSource = std::function<std::span<const char>(std::size_t wanted)>;

    void parseChunks(const ChunkSource& nextChunk);
    void reportEarlyEnd();

    void startElement(std::string_view name, XmlAttributes attributes) override;
    void endElement(std::string_view name) override;
    void characterData(std::string_view text) override;
    void drawElement(std::string_view name, XmlAttributes attributes);

    void parse_path(XmlAttributes attributes);
    void parse_rect(XmlAttributes attributes);
    void parse_line(XmlAttributes attributes);
    void parse_poly(XmlAttributes attributes, bool close);
    void parse_circle(XmlAttributes attributes);
    void parse_ellipse(XmlAttributes attributes);
    void drawOval(double x, double y, double radiusX, double radiusY);
    void drawPoints(const char* points);

    using NamedNumbers = std::initializer_list<std::pair<std::string_view, double*>>;
    void readNumbers(XmlAttributes attributes, NamedNumbers numbers);
    void reportCorners(XmlAttributes attributes);
    void reportUnit(std::string_view value);
    bool parse_attr(std::string_view name, const char* value);
    bool parse_presentation(std::string_view name, const char* value);
    void parse_style(std::string_view style);
    void parse_transform(std::string_view transform);

    SvgReport m_report;
    path_renderer m_path{&m_report};
    path_tokenizer m_tokenizer{&m_report};
    std::string m_title;
    std::string m_name; // of the style entry at hand
    std::string m_value;
    bool m_inTitle = false;
    bool m_inPath = false;
    std::optional<XmlReader> m_xml; // while reading
};

} // namespace orbel
