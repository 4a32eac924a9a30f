# Packages for Debian, made with "cpack" (scripts/package does all of it): "orbel" holds program,
# plug-ins, shapes and what tells of them, "orbel-dev" the library. Files of the documentation lie
# where Debian has them.
set(contact "Orbel developers <packages@orbel.invalid>")
set(packaging "${PROJECT_BINARY_DIR}/packaging")
file(MAKE_DIRECTORY "${packaging}")

# The change log twice: as people read it, and in the form that Debian's tools read.
execute_process(
    COMMAND ${CMAKE_COMMAND} -DCHANGES=${PROJECT_SOURCE_DIR}/CHANGELOG.md -DVERSION=${PROJECT_VERSION}
            "-DCONTACT=${contact}" -DOUTPUT=${packaging}/changelog -P
            ${PROJECT_SOURCE_DIR}/cmake/DebianChangelog.cmake
    COMMAND_ERROR_IS_FATAL ANY)
foreach(package IN ITEMS orbel:program orbel-dev:development)
    string(REGEX MATCH "^[^:]*" name "${package}")
    string(REGEX MATCH "[^:]*$" component "${package}")
    install(FILES "${packaging}/changelog.gz" packaging/copyright
            DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${name}" COMPONENT ${component})
endforeach()
install(
    FILES packaging/lintian-overrides
    DESTINATION "${CMAKE_INSTALL_DATADIR}/lintian/overrides"
    RENAME orbel
    COMPONENT program)
if(ORBEL_HAVE_STUDIO)
    install(FILES packaging/orbel-studio.desktop
            DESTINATION "${CMAKE_INSTALL_DATADIR}/applications" COMPONENT program)
    install(
        FILES studio/web/src/icon.svg
        DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps"
        RENAME orbel.svg
        COMPONENT program)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orbel)
set(CPACK_PACKAGE_CONTACT "${contact}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
# CPack's own default, which it leaves out: both packages have a line of theirs.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${CMAKE_PROJECT_NAME} built using CMake")
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_COMPONENTS_ALL program ofx frei0r development)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(CMAKE_CROSSCOMPILING AND CMAKE_SYSTEM_PROCESSOR STREQUAL "aarch64")
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
endif()

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME orbel)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION video)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "animated three-dimensional strokes along vector paths
Orbel draws strokes along built-in shapes and SVG files, animates, bends,
repeats and blurs them, and lays them over pictures and films. This package
holds the program with its shapes, and plug-ins for hosts of OpenFX and of
frei0r: ffmpeg, MLT with Kdenlive, Shotcut and Flowblade, GStreamer, Natron.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS "hershey-fonts-data, xdg-utils")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "ffmpeg, melt, slurm-client")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME orbel-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "animated strokes along vector paths (development files)
Orbel's render core as a static library with its headers and its CMake
package, for programs that draw strokes of their own.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "orbel (= ${PROJECT_VERSION}), libexpat1-dev, libhwy-dev, libtbb-dev")

include(CPack)
cpack_add_component_group(runtime)
cpack_add_component_group(development)
foreach(component IN ITEMS program ofx frei0r)
    cpack_add_component(${component} GROUP runtime)
endforeach()
cpack_add_component(development GROUP development)
