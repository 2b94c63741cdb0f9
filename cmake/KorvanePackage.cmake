# The installed CMake package KorvaneScada with the targets Korvane::Platform, Korvane::Scada and Korvane::Host.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/KorvaneScada")
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/KorvaneScadaConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/KorvaneScadaConfig.cmake"
    INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KorvaneScadaConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(EXPORT KorvaneScadaTargets NAMESPACE Korvane:: DESTINATION "${package_dir}")
install(FILES
    "${PROJECT_BINARY_DIR}/KorvaneScadaConfig.cmake"
    "${PROJECT_BINARY_DIR}/KorvaneScadaConfigVersion.cmake"
    DESTINATION "${package_dir}")
