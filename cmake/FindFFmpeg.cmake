# Finds the FFmpeg libraries through pkg-config.
#
#   find_package(FFmpeg REQUIRED COMPONENTS avfilter avformat avcodec avutil swscale)
#
# gives one imported target per component: FFmpeg::avformat, FFmpeg::avcodec, ...
find_package(PkgConfig QUIET)

foreach(component IN LISTS FFmpeg_FIND_COMPONENTS)
    if(PkgConfig_FOUND)
        pkg_check_modules(FFmpeg_${component} QUIET IMPORTED_TARGET GLOBAL lib${component})
    endif()
    if(FFmpeg_${component}_FOUND AND NOT TARGET FFmpeg::${component})
        add_library(FFmpeg::${component} INTERFACE IMPORTED GLOBAL)
        target_link_libraries(FFmpeg::${component} INTERFACE PkgConfig::FFmpeg_${component})
    endif()
endforeach()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    FFmpeg
    HANDLE_COMPONENTS
    REQUIRED_VARS PKG_CONFIG_FOUND
    REASON_FAILURE_MESSAGE
        "install libavfilter-dev, libavformat-dev, libavcodec-dev, libavutil-dev and libswscale-dev, and pkg-config")
