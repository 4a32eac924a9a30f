#include "shapes/InlineShapes.h"

#include "shapes/SvgParser.h"

#include <algorithm>
#include <list>
#include <string>

namespace orbel {

namespace {

struct InlineShape {
    std::string svg;
    PluginPath_Impl path;
};

/// The one that was used last stands first. Entries stay where they are in memory.
std::list<InlineShape>& shapes() {
    static std::list<InlineShape>& all = *new std::list<InlineShape>; // outlives every thread
    return all;
}

} // namespace

PluginPath_Impl* findInlineShape(std::string_view svg) {
    if (svg.size() > maxInlineShapeBytes) {
        return nullptr;
    }
    std::list<InlineShape>& all = shapes();
    const auto known =
        std::find_if(all.begin(), all.end(), [svg](const auto& shape) { return shape.svg == svg; });
    if (known != all.end()) {
        all.splice(all.begin(), all, known);
        return &all.front().path;
    }
    std::list<InlineShape> fresh;
    InlineShape& shape = fresh.emplace_back();
    shape.svg = svg;
    svg_parser parser;
    parser.setPath(&shape.path);
    parser.parseBuffer(shape.svg);
    // Text that does not parse is kept with what it gave, like a file.
    shape.path.normalize();
    if (all.size() >= maxInlineShapes) {
        all.pop_back();
    }
    all.splice(all.begin(), fresh);
    return &all.front().path;
}

void flushInlineShapes() {
    shapes().clear();
}

} // namespace orbel
