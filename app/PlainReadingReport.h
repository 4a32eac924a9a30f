#pragma once

#include "drawing/ShapeLosses.h"

#include <iosfwd>
#include <string>

namespace orbel::app {

/// How to keep what the shape reader loses.
inline constexpr const char* wayOut =
    "convert it with \"orbel import\", or render it with --import or \"shape\": {\"file\": FILE, "
    "\"import\": {}} to keep all of it";

/// Every loss on a line of its own, with its place and how often it occurs.
void print(const PlainReading& reading, const std::string& file, std::ostream& out);

/// One line about a shape file that loses something as it is; empty for one that does not.
[[nodiscard]] std::string lossSummary(const std::string& file);

} // namespace orbel::app
