# libsodium, which brings a file for pkg-config only: Sodium::Sodium.

find_path(Sodium_INCLUDE_DIR sodium.h)
find_library(Sodium_LIBRARY NAMES sodium libsodium)
mark_as_advanced(Sodium_INCLUDE_DIR Sodium_LIBRARY)

if(Sodium_INCLUDE_DIR AND EXISTS "${Sodium_INCLUDE_DIR}/sodium/version.h")
    file(STRINGS "${Sodium_INCLUDE_DIR}/sodium/version.h" version_line REGEX "define SODIUM_VERSION_STRING")
    string(REGEX REPLACE ".*\"([0-9.]+)\".*" "\\1" Sodium_VERSION "${version_line}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Sodium REQUIRED_VARS Sodium_LIBRARY Sodium_INCLUDE_DIR VERSION_VAR Sodium_VERSION)

if(Sodium_FOUND AND NOT TARGET Sodium::Sodium)
    add_library(Sodium::Sodium UNKNOWN IMPORTED)
    set_target_properties(Sodium::Sodium PROPERTIES IMPORTED_LOCATION "${Sodium_LIBRARY}"
                          INTERFACE_INCLUDE_DIRECTORIES "${Sodium_INCLUDE_DIR}")
endif()
