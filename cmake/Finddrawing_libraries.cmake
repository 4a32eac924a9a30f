# Finds what drawings and texts are read with through pkg-config; gives the target
# drawing_libraries.
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
    pkg_check_modules(PkgConfig_drawing QUIET IMPORTED_TARGET GLOBAL librsvg-2.0 cairo cairo-script
                      pango pangoft2 harfbuzz libxml-2.0 zlib)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    drawing_libraries
    REQUIRED_VARS PkgConfig_drawing_LINK_LIBRARIES
    REASON_FAILURE_MESSAGE "install librsvg2-dev, libpango1.0-dev, libxml2-dev and pkg-config")

if(drawing_libraries_FOUND AND NOT TARGET drawing_libraries)
    add_library(drawing_libraries INTERFACE IMPORTED GLOBAL)
    target_link_libraries(drawing_libraries INTERFACE PkgConfig::PkgConfig_drawing)
endif()
