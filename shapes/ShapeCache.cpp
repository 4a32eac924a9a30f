#include "shapes/ShapeCache.h"

#include "params/InstanceData.h"
#include "shapes/CriticalSection.h"
#include "shapes/FormatText.h"
#include "shapes/InlineShapes.h"
#include "shapes/SvgParser.h"

#include <algorithm>
#include <cstring>

namespace orbel {

std::vector<std::unique_ptr<StrokeCache>> g_cacheShapes;

namespace {

struct UserDataFreer {
    void operator()(Orbel_UserData* data) const { freeUserData(data); }
};

PluginPath_Impl* nullShape() {
    static PluginPath_Impl shape;
    return &shape;
}

StrokeCache* addStrokeCache(const char* file) {
    auto entry = std::make_unique<StrokeCache>();
    expandFormatText(entry->name, sizeof entry->name, file);
    std::strncpy(entry->given, file, sizeof entry->given - 1);
    svg_parser parser;
    parser.setPath(&entry->path);
    parser.parse(file);
    // A file that does not parse is kept with what it gave, so that it is not read again.
    entry->path.normalize();
    return g_cacheShapes.emplace_back(std::move(entry)).get();
}

} // namespace

PluginPath_API* getSVGShape(PluginHost_API* host) {
    const Stroke_CSLock lock(&g_globalCritSection);
    PluginPath_Impl* const none = nullShape();
    const std::unique_ptr<Orbel_UserData, UserDataFreer> data(allocUserData());
    getUserData(host, data.get());
    if (data->path[0] == '\0' || fileExists(data->path) != 1) {
        const std::string_view svg = host->getShapeText();
        PluginPath_Impl* const given = svg.empty() ? nullptr : findInlineShape(svg);
        return given == nullptr ? none : given;
    }
    StrokeCache* const known = findStokeCache(data->path);
    return &(known == nullptr ? addStrokeCache(data->path) : known)->path;
}

StrokeCache* findStokeCache(const char* path) {
    const auto found = std::find_if(g_cacheShapes.begin(), g_cacheShapes.end(),
                                    [path](const std::unique_ptr<StrokeCache>& entry) {
                                        return std::strcmp(entry->given, path) == 0;
                                    });
    return found == g_cacheShapes.end() ? nullptr : found->get();
}

void flushStrokeCache() {
    const Stroke_CSLock lock(&g_globalCritSection);
    g_cacheShapes.clear();
    flushInlineShapes();
}

} // namespace orbel
