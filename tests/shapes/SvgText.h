#pragma once

#include "shapes/SvgParser.h"

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

inline void PrintTo(const Vx_PathVertex& vertex, std::ostream* out) {
    *out << "{" << vertex.tanInX << ", " << vertex.tanInY << ", " << vertex.x << ", " << vertex.y
         << ", " << vertex.tanOutX << ", " << vertex.tanOutY << "}";
}

namespace test {

using Outline = PluginPath_Impl::Vx_PathOutline;
using Vertices = std::vector<Vx_PathVertex>;

/// Keeps what the reader reports.
class Notices final : public SvgReaderObserver {
public:
    void notice(const SvgNotice& notice) override { all.push_back(notice); }

    [[nodiscard]] std::vector<std::string> texts() const {
        std::vector<std::string> result;
        for (const SvgNotice& notice : all) {
            result.push_back(std::to_string(notice.line) + ": " + notice.text);
        }
        return result;
    }

    std::vector<SvgNotice> all;
};

inline PluginPath_Impl readSvg(std::string_view text, SvgReaderObserver* observer) {
    PluginPath_Impl shape;
    svg_parser parser;
    parser.setPath(&shape);
    parser.setObserver(observer);
    parser.parseBuffer(text);
    return shape;
}

/// The outlines of a document with this content.
inline std::vector<Outline> outlinesOf(const std::string& content) {
    return readSvg("<svg>" + content + "</svg>", nullptr).outlines();
}

/// The texts reported for a document with this content, each with its line.
inline std::vector<std::string> noticesOf(const std::string& content) {
    Notices notices;
    readSvg("<svg>\n" + content + "</svg>", &notices);
    return notices.texts();
}

/// A document of as many lines.
inline std::string svgOfLines(int count) {
    std::string text = "<svg>";
    for (int i = 0; i < count; ++i) {
        text += "<line x2='4' y2='2'/>";
    }
    return text + "</svg>";
}

} // namespace test
} // namespace orbel
