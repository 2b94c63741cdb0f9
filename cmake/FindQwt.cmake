# Qwt (technical widgets and scales) built for Qt 5: the target Qwt::Qwt and Qwt_VERSION.
#
# Distributions name folder and library differently; QWT_ROOT or CMAKE_PREFIX_PATH say where another one lies.
find_path(Qwt_INCLUDE_DIR qwt_global.h PATH_SUFFIXES qwt-qt5 qt5/qwt qwt6-qt5 qwt qwt6 HINTS "$ENV{QWT_ROOT}" "$ENV{QWT_ROOT}/include")
find_library(Qwt_LIBRARY NAMES qwt-qt5 qwt6-qt5 qwt HINTS "$ENV{QWT_ROOT}" "$ENV{QWT_ROOT}/lib")

if(Qwt_INCLUDE_DIR)
    file(STRINGS "${Qwt_INCLUDE_DIR}/qwt_global.h" version_line REGEX "define +QWT_VERSION_STR")
    string(REGEX REPLACE ".*\"([0-9.]+)\".*" "\\1" Qwt_VERSION "${version_line}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Qwt REQUIRED_VARS Qwt_LIBRARY Qwt_INCLUDE_DIR VERSION_VAR Qwt_VERSION)
mark_as_advanced(Qwt_INCLUDE_DIR Qwt_LIBRARY)

if(Qwt_FOUND AND NOT TARGET Qwt::Qwt)
    add_library(Qwt::Qwt UNKNOWN IMPORTED)
    set_target_properties(Qwt::Qwt PROPERTIES
        IMPORTED_LOCATION "${Qwt_LIBRARY}"
        INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${Qwt_INCLUDE_DIR}"
        INTERFACE_INCLUDE_DIRECTORIES "${Qwt_INCLUDE_DIR}")
    if(WIN32)
        set_target_properties(Qwt::Qwt PROPERTIES INTERFACE_COMPILE_DEFINITIONS QWT_DLL)
    endif()
endif()
