#include "shapes/SvgParser.h"

#include "shapes/NumberText.h"
#include "shapes/ShapeFile.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace orbel {

namespace {

constexpr std::size_t firstChunkBytes = 1024;
constexpr std::size_t maxTitleBytes = 255;

/// Colours have no bearing on an outline.
unsigned parse_color(const char* /*text*/) {
    return 0;
}

/// What `parse_attr` knows beside "style" and "transform".
struct PresentationAttribute {
    std::string_view name;
    void (*apply)(path_renderer& path, const char* value);
};

constexpr PresentationAttribute presentationAttributes[] = {
    {"fill",
     [](path_renderer& path, const char* value) {
         std::strcmp(value, "none") == 0 ? path.fill_none() : path.fill(parse_color(value));
     }},
    {"fill-opacity",
     [](path_renderer& path, const char* value) { path.fill_opacity(parseNumber(value)); }},
    {"stroke",
     [](path_renderer& path, const char* value) {
         std::strcmp(value, "none") == 0 ? path.stroke_none() : path.stroke(parse_color(value));
     }},
    {"stroke-width",
     [](path_renderer& path, const char* value) { path.stroke_width(parseNumber(value)); }},
    {"stroke-linecap", [](path_renderer& path, const char* value) { path.line_cap(value); }},
    {"stroke-linejoin", [](path_renderer& path, const char* value) { path.line_join(value); }},
    {"stroke-miterlimit",
     [](path_renderer& path, const char* value) { path.miter_limit(parseNumber(value)); }},
    {"stroke-opacity",
     [](path_renderer& path, const char* value) { path.stroke_opacity(parseNumber(value)); }},
};

/// Elements that are expected in a file and have nothing to draw.
constexpr std::string_view silentElements[] = {"svg", "desc", "metadata"};

struct TransformFunction {
    std::string_view name;
    bool scanGoesOn;
};

constexpr TransformFunction transformFunctions[] = {
    {"matrix", true}, {"translate", true}, {"rotate", false},
    {"scale", false}, {"skewX", false},    {"skewY", false},
};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\r\f\v";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The function whose name stands at the start of the text; null for none.
const TransformFunction* transformFunctionAt(std::string_view text) {
    const auto* const found = std::find_if(
        std::begin(transformFunctions), std::end(transformFunctions),
        [text](const TransformFunction& function) { return text.starts_with(function.name); });
    return found == std::end(transformFunctions) ? nullptr : found;
}

} // namespace

void svg_parser::parse(const char* fileName) {
    const FileHandle file = openShapeFile(fileName);
    m_report.setLine(0);
    if (file == nullptr) {
        m_report.add(SvgIssue::FileNotRead, fileName);
    } else if (fileBytes(file.get()) > maxFileBytes) {
        m_report.add(SvgIssue::FileTooLarge, fileName);
    } else {
        std::vector<char> buffer;
        parseChunks([&file, &buffer](std::size_t wanted) {
            buffer.resize(wanted);
            return std::span(buffer).first(std::fread(buffer.data(), 1, wanted, file.get()));
        });
    }
}

void svg_parser::parseBuffer(std::span<const char> bytes) {
    parseChunks([bytes](std::size_t wanted) mutable {
        const auto chunk = bytes.first(std::min(bytes.size(), wanted));
        bytes = bytes.subspan(chunk.size());
        return chunk;
    });
}

void svg_parser::parseChunks(const ChunkSource& nextChunk) {
    m_xml.emplace(static_cast<XmlEvents*>(this));
    if (!m_xml->valid()) {
        return;
    }
    m_title.clear();
    m_inTitle = false;
    m_inPath = false;
    std::size_t total = 0;
    bool final = false;
    while (!final) {
        // With every chunk expat looks at an unfinished token from its start again. Chunks as large
        // as all that was read before keep that within twice the size of the file.
        const std::size_t wanted = std::max(firstChunkBytes, total);
        const std::span<const char> chunk = nextChunk(wanted);
        total += chunk.size();
        // A file that grows while it is read must not go on for ever.
        final = chunk.size() < wanted || total >= maxFileBytes;
        if (!m_xml->feed(chunk, final)) {
            reportEarlyEnd();
            m_xml.reset();
            return;
        }
    }
    m_xml.reset();
    std::replace_if(
        m_title.begin(), m_title.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; },
        ' ');
}

void svg_parser::reportEarlyEnd() {
    m_report.setLine(m_xml->line());
    if (m_xml->stopReason() != nullptr) {
        m_report.add(SvgIssue::LimitReached, m_xml->stopReason());
    } else {
        m_report.add(SvgIssue::XmlError, m_xml->errorText());
    }
}

void svg_parser::startElement(std::string_view name, XmlAttributes attributes) {
    if (m_report.wanted()) {
        m_report.setLine(m_xml->line());
    }
    drawElement(name, attributes);
    if (m_path.overfull()) {
        m_xml->stop("the shape has more than 1048576 vertices and outlines");
    }
}

void svg_parser::endElement(std::string_view name) {
    if (name == "title") {
        m_inTitle = false;
    } else if (name == "g") {
        m_path.pop_attr();
    } else if (name == "path") {
        m_inPath = false;
    }
}

void svg_parser::characterData(std::string_view text) {
    if (m_inTitle) {
        m_title += text.substr(0, maxTitleBytes - m_title.size());
    }
}

void svg_parser::drawElement(std::string_view name, XmlAttributes attributes) {
    if (name == "title") {
        m_inTitle = true;
    } else if (name == "g") {
        m_path.push_attr();
        readNumbers(attributes, {});
    } else if (name == "path") {
        parse_path(attributes);
    } else if (name == "rect") {
        parse_rect(attributes);
    } else if (name == "circle") {
        m_report.add(SvgIssue::Oval, name);
        parse_circle(attributes);
    } else if (name == "ellipse") {
        m_report.add(SvgIssue::Oval, name);
        parse_ellipse(attributes);
    } else if (name == "line") {
        parse_line(attributes);
    } else if (name == "polyline" || name == "polygon") {
        if (name == "polyline") {
            m_report.add(SvgIssue::ClosedPolyline);
        }
        parse_poly(attributes, true); // a polyline is closed too: this is meant
    } else if (std::count(std::begin(silentElements), std::end(silentElements), name) == 0) {
        m_report.add(SvgIssue::UnknownElement, name);
    }
}

void svg_parser::parse_path(XmlAttributes attributes) {
    if (m_inPath) {
        m_report.add(SvgIssue::NestedPath);
        return;
    }
    m_path.begin_path();
    for (; *attributes != nullptr; attributes += 2) {
        if (std::strcmp(attributes[0], "d") == 0) {
            m_tokenizer.set_path_str(attributes[1]);
            m_path.parse_path(m_tokenizer);
        } else {
            parse_attr(attributes[0], attributes[1]);
        }
    }
    m_path.end_path();
    m_inPath = true;
}

void svg_parser::parse_rect(XmlAttributes attributes) {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;
    readNumbers(attributes, {{"x", &x}, {"y", &y}, {"width", &width}, {"height", &height}});
    reportCorners(attributes);
    m_path.begin_path();
    if (width != 0.0 && height != 0.0) {
        m_path.move_to(x, y, false);
        m_path.line_to(x + width, y, false);
        m_path.line_to(x + width, y + height, false);
        m_path.line_to(x, y + height, false);
        m_path.close_subpath(true);
    }
    m_path.end_path();
}

void svg_parser::parse_line(XmlAttributes attributes) {
    double x1 = 0.0;
    double y1 = 0.0;
    double x2 = 0.0;
    double y2 = 0.0;
    readNumbers(attributes, {{"x1", &x1}, {"y1", &y1}, {"x2", &x2}, {"y2", &y2}});
    m_path.begin_path();
    m_path.move_to(x1, y1, false);
    m_path.line_to(x2, y2, false);
    m_path.end_path();
}

void svg_parser::parse_poly(XmlAttributes attributes, bool close) {
    m_path.begin_path();
    for (; *attributes != nullptr; attributes += 2) {
        if (!parse_attr(attributes[0], attributes[1]) &&
            std::strcmp(attributes[0], "points") == 0) {
            drawPoints(attributes[1]);
        }
    }
    if (close) {
        m_path.close_subpath(true);
    }
    m_path.end_path();
}

void svg_parser::drawPoints(const char* points) {
    m_tokenizer.set_path_str(points);
    bool first = true;
    while (m_tokenizer.next()) {
        const double x = m_tokenizer.last_number();
        const double y = m_tokenizer.next() ? m_tokenizer.last_number() : 0.0;
        if (first) {
            m_path.move_to(x, y, false);
            first = false;
        } else {
            m_path.line_to(x, y, false);
        }
    }
}

void svg_parser::parse_circle(XmlAttributes attributes) {
    double x = 0.0;
    double y = 0.0;
    double radius = 0.0;
    readNumbers(attributes, {{"cx", &x}, {"cy", &y}, {"r", &radius}});
    drawOval(x, y, radius, radius);
}

void svg_parser::parse_ellipse(XmlAttributes attributes) {
    double x = 0.0;
    double y = 0.0;
    double radiusX = 0.0;
    double radiusY = 0.0;
    readNumbers(attributes, {{"cx", &x}, {"cy", &y}, {"rx", &radiusX}, {"ry", &radiusY}});
    drawOval(x, y, radiusX, radiusY);
}

/// An oval as wide as the radius and three quarters of it tall, its controls at the corners of the
/// box: not the ellipse one might expect, and meant so.
void svg_parser::drawOval(double x, double y, double radiusX, double radiusY) {
    if (radiusX == 0.0 || radiusY == 0.0) {
        return;
    }
    const double left = x + radiusX / -2.0;
    const double right = x + radiusX / 2.0;
    const double top = y + radiusY / -2.0;
    const double bottom = y + radiusY / 2.0;
    m_path.begin_path();
    m_path.move_to(left, y, false);
    m_path.curve4(left, bottom, right, bottom, right, y, false);
    m_path.curve4(right, top, left, top, left, y, false);
    m_path.close_subpath(false);
    m_path.end_path();
}

void svg_parser::readNumbers(XmlAttributes attributes, NamedNumbers numbers) {
    for (; *attributes != nullptr; attributes += 2) {
        const std::string_view name = attributes[0];
        if (parse_attr(name, attributes[1])) {
            continue;
        }
        for (const auto& [known, number] : numbers) {
            if (name == known) {
                *number = parseNumber(attributes[1]);
                reportUnit(attributes[1]);
            }
        }
    }
}

void svg_parser::reportCorners(XmlAttributes attributes) {
    for (; m_report.wanted() && *attributes != nullptr; attributes += 2) {
        const std::string_view name = attributes[0];
        if ((name == "rx" || name == "ry") && parseNumber(attributes[1]) != 0.0) {
            m_report.add(SvgIssue::RoundedCorners, name);
            return;
        }
    }
}

void svg_parser::reportUnit(std::string_view value) {
    value = trimmed(value);
    if (m_report.wanted() && !value.empty() && !value.ends_with("px") &&
        value.find_last_not_of("0123456789.eE+-") == value.size() - 1) {
        m_report.add(SvgIssue::Unit, value.substr(0, 32));
    }
}

/// False for an attribute that is the element's own.
bool svg_parser::parse_attr(std::string_view name, const char* value) {
    if (name == "style") {
        parse_style(value);
        return true;
    }
    return parse_presentation(name, value);
}

bool svg_parser::parse_presentation(std::string_view name, const char* value) {
    if (name == "transform") {
        parse_transform(value);
        return true;
    }
    const auto* const attribute = std::find_if(
        std::begin(presentationAttributes), std::end(presentationAttributes),
        [&](const PresentationAttribute& candidate) { return candidate.name == name; });
    if (attribute == std::end(presentationAttributes)) {
        return false;
    }
    attribute->apply(m_path, value);
    return true;
}

void svg_parser::parse_style(std::string_view style) {
    while (!style.empty()) {
        const std::string_view entry = style.substr(0, style.find(';'));
        style.remove_prefix(std::min(entry.size() + 1, style.size()));
        const auto colon = std::min(entry.find(':'), entry.size());
        m_name = trimmed(entry.substr(0, colon));
        m_value = trimmed(entry.substr(std::min(colon + 1, entry.size())));
        parse_presentation(m_name, m_value.c_str());
    }
}

/// Walks over the transform functions and applies none of them. The walk ends at those which are
/// scanned by name only.
void svg_parser::parse_transform(std::string_view transform) {
    while (!transform.empty()) {
        const TransformFunction* const function = transformFunctionAt(transform);
        if (function == nullptr) {
            transform.remove_prefix(1);
            continue;
        }
        m_report.add(SvgIssue::Transform, function->name);
        const auto end = transform.find(')');
        if (!function->scanGoesOn || end == std::string_view::npos) {
            return;
        }
        transform.remove_prefix(end + 1);
    }
}

} // namespace orbel
