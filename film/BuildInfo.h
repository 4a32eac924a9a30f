#pragma once

#include <string>

namespace orbel {

/// The version of this program, as "1.2.3".
[[nodiscard]] const char* buildVersion();

/// The commit that was built, with "-dirty" behind it when the sources had been changed.
[[nodiscard]] const char* buildCommit();

/// What a film's bytes depend on beside its scene: version, commit and compiler of this build, and
/// the libraries of the codecs. Two programs that say the same make the same film.
[[nodiscard]] std::string buildIdentity();

/// The same for people, and the level of acceleration, which changes no byte. Several lines.
[[nodiscard]] std::string buildText();

} // namespace orbel
