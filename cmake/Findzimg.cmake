# Finds the scaling library zimg through pkg-config; gives the target zimg::zimg.
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
    pkg_check_modules(PkgConfig_zimg QUIET IMPORTED_TARGET GLOBAL zimg)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
    zimg
    REQUIRED_VARS PkgConfig_zimg_LINK_LIBRARIES
    VERSION_VAR PkgConfig_zimg_VERSION
    REASON_FAILURE_MESSAGE "install libzimg-dev and pkg-config")

if(zimg_FOUND AND NOT TARGET zimg::zimg)
    add_library(zimg::zimg INTERFACE IMPORTED GLOBAL)
    target_link_libraries(zimg::zimg INTERFACE PkgConfig::PkgConfig_zimg)
endif()
