#pragma once

#include "studio/Studio.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace orbel::studio {

/// Of a picture; what a scene may ask for as well.
inline constexpr long largestSide = 32767;

/// A request that has passed every check.
struct Call {
    Studio& studio;
    const Request& request;
    json body; ///< an object; empty for GET
    std::string tab;
};

/// Where a request goes.
struct Route {
    std::string_view method;
    std::string_view path;
    bool needsToken;
    std::uint64_t bodyLimit;
    Answer (*answer)(const Call&);
};

/// Every route of the studio but the page's own files.
[[nodiscard]] std::span<const Route> routes();

/// The route of a path, whatever its method; null when there is none.
[[nodiscard]] const Route* findRoute(std::string_view path);

// --- What the routes do ---
Answer openPage(const Call& call);
Answer makeKey(const Call& call);
Answer tellTable(const Call& call);
Answer tellScene(const Call& call);
Answer openScene(const Call& call);
Answer tellRevision(const Call& call);
Answer tellShape(const Call& call);
Answer tellLetters(const Call& call);
Answer checkScene(const Call& call);
Answer drawFrame(const Call& call);
Answer readPixel(const Call& call);
Answer listFiles(const Call& call);
Answer saveScene(const Call& call);
Answer saveSceneAs(const Call& call);
Answer keepJournal(const Call& call);
Answer tellEvents(const Call& call);
Answer endPage(const Call& call);
Answer dropFile(const Call& call);
Answer playScene(const Call& call);
Answer tellPath(const Call& call);
Answer exportFilm(const Call& call);
Answer listJobs(const Call& call);
Answer cancelJob(const Call& call);
Answer makeTicket(const Call& call);

} // namespace orbel::studio
