#include "film/BuildInfo.h"

#include "media/CodecLibraries.h"
#include "pixel/Acceleration.h"

namespace orbel {

namespace {

constexpr const char* compiler =
#if defined(__clang__)
    "Clang " __clang_version__;
#else
    "GCC " __VERSION__;
#endif

} // namespace

const char* buildVersion() {
    return ORBEL_VERSION;
}

std::string buildIdentity() {
    return std::string(buildVersion()) + ", commit " + buildCommit() + ", " + compiler + ", " +
           codecLibraries();
}

std::string buildText() {
    return std::string("orbel ") + buildVersion() + "\ncommit " + buildCommit() + "\ncompiler " +
           compiler + "\nacceleration level " + std::to_string(accelerationLevel()) + "\ncodecs " +
           codecLibraries();
}

} // namespace orbel
