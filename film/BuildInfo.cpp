#include "film/BuildInfo.h"

#include "pixel/Acceleration.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavfilter/avfilter.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace orbel {

namespace {

constexpr const char* compiler =
#if defined(__clang__)
    "Clang " __clang_version__;
#else
    "GCC " __VERSION__;
#endif

std::string libraryVersion(const char* name, unsigned version) {
    return std::string(name) + " " + std::to_string(AV_VERSION_MAJOR(version)) + "." +
           std::to_string(AV_VERSION_MINOR(version)) + "." +
           std::to_string(AV_VERSION_MICRO(version));
}

std::string codecs() {
    return libraryVersion("libavcodec", avcodec_version()) + ", " +
           libraryVersion("libavformat", avformat_version()) + ", " +
           libraryVersion("libswscale", swscale_version()) + ", " +
           libraryVersion("libavfilter", avfilter_version()) + " (" + av_version_info() + ")";
}

} // namespace

const char* buildVersion() {
    return ORBEL_VERSION;
}

std::string buildIdentity() {
    return std::string(buildVersion()) + ", commit " + buildCommit() + ", " + compiler + ", " +
           codecs();
}

std::string buildText() {
    return std::string("orbel ") + buildVersion() + "\ncommit " + buildCommit() + "\ncompiler " +
           compiler + "\nacceleration level " + std::to_string(accelerationLevel()) + "\ncodecs " +
           codecs();
}

} // namespace orbel
