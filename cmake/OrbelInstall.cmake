# Installs the library with its headers, its CMake package, the program and what both read.
include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/orbel")
set(data_folder "${CMAKE_INSTALL_DATADIR}/orbel")

install(
    TARGETS orbel
    EXPORT orbelTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(
    EXPORT orbelTargets
    NAMESPACE orbel::
    DESTINATION ${package_folder}
    COMPONENT development)

# Template bodies are for the units that instantiate them; nobody else can use them.
install(
    DIRECTORY host pixel shapes params render doors
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orbel
    COMPONENT development
    FILES_MATCHING
    PATTERN "*.h"
    REGEX "(pixel|render)/[^/]*Impl[.]h$" EXCLUDE
    REGEX "(pixel|render)/kernels$" EXCLUDE
    PATTERN "doors/fxplug" EXCLUDE
    PATTERN "doors/ofx" EXCLUDE
    PATTERN "doors/frei0r" EXCLUDE)

configure_package_config_file(
    cmake/orbelConfig.cmake.in "${PROJECT_BINARY_DIR}/orbelConfig.cmake"
    INSTALL_DESTINATION ${package_folder} PATH_VARS data_folder)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/orbelConfigVersion.cmake"
                                 COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/orbelConfig.cmake"
              "${PROJECT_BINARY_DIR}/orbelConfigVersion.cmake" DESTINATION ${package_folder}
        COMPONENT development)

install(DIRECTORY resources/Tessaly/SVG DESTINATION ${data_folder}/Tessaly COMPONENT program)
install(DIRECTORY resources/scenes DESTINATION ${data_folder} COMPONENT program)
