#include "studio/Routes.h"

#include "studio/Drop.h"

#include <algorithm>

namespace orbel::studio {

namespace {

constexpr std::uint64_t smallBody = 64U << 10;
/// A scene of 16 MiB as JSON text in JSON.
constexpr std::uint64_t sceneBody = 40ULL << 20;
/// A file as large as a drop may be, in base 64, and its name.
constexpr std::uint64_t dropBody = largestDrop / 3 * 4 + smallBody;

constexpr Route routeTable[] = {
    {"POST", "/api/open", false, smallBody, openPage},
    {"POST", "/api/key", true, smallBody, makeKey},
    {"GET", "/api/table", true, 0, tellTable},
    {"GET", "/api/scene", true, 0, tellScene},
    {"POST", "/api/open-scene", true, smallBody, openScene},
    {"POST", "/api/revision", true, smallBody, tellRevision},
    {"POST", "/api/check", true, sceneBody, checkScene},
    {"POST", "/api/shape", true, sceneBody, tellShape},
    {"GET", "/api/letters", true, 0, tellLetters},
    {"POST", "/api/save", true, sceneBody, saveScene},
    {"POST", "/api/save-as", true, sceneBody, saveSceneAs},
    {"POST", "/api/journal", true, sceneBody, keepJournal},
    {"POST", "/api/frame", true, sceneBody, drawFrame},
    {"POST", "/api/pixel", true, sceneBody, readPixel},
    {"POST", "/api/play", true, sceneBody, playScene},
    {"POST", "/api/path", true, sceneBody, tellPath},
    {"GET", "/api/files", true, 0, listFiles},
    {"POST", "/api/drop", true, dropBody, dropFile},
    {"POST", "/api/export", true, sceneBody, exportFilm},
    {"GET", "/api/jobs", true, 0, listJobs},
    {"POST", "/api/cancel", true, smallBody, cancelJob},
    {"POST", "/api/ticket", true, smallBody, makeTicket},
    {"GET", "/api/events", true, 0, tellEvents},
    {"POST", "/api/ended", true, smallBody, endPage},
};

} // namespace

std::span<const Route> routes() {
    return routeTable;
}

const Route* findRoute(std::string_view path) {
    const auto* const found = std::find_if(std::begin(routeTable), std::end(routeTable),
                                           [&](const Route& route) { return route.path == path; });
    return found == std::end(routeTable) ? nullptr : found;
}

} // namespace orbel::studio
