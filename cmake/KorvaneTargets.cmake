# Functions that make every target of the house alike: floors (shared libraries) and tests.

find_program(KORVANE_CCACHE ccache)
if(KORVANE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${KORVANE_CCACHE}")
endif()

# Every binary and library of a build lies in one folder, so that programs find the libraries on any system.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

# korvane_compile_options(TARGET): language level, warnings, sanitizers and Qt's strict switches.
function(korvane_compile_options target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)
    if(MSVC)
        target_compile_options(${target} PRIVATE /W4 /wd4251 /wd4275 /permissive- /utf-8 $<$<BOOL:${KORVANE_WARNINGS_AS_ERRORS}>:/WX>)
        return()
    endif()
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wold-style-cast
        -Wimplicit-fallthrough $<$<BOOL:${KORVANE_WARNINGS_AS_ERRORS}>:-Werror>
        # Qt's QSKIP("...") is such a macro.
        $<$<CXX_COMPILER_ID:Clang>:-Wno-gnu-zero-variadic-macro-arguments>)
    if(KORVANE_SANITIZERS)
        # The older spelling of -fsanitize-ignorelist, since ccache only knows to look into the file by that.
        target_compile_options(${target} PRIVATE -fsanitize=${KORVANE_SANITIZERS} -fno-sanitize-recover=all
            $<$<CXX_COMPILER_ID:Clang>:-fsanitize-blacklist=${PROJECT_SOURCE_DIR}/cmake/sanitizers.ignore>)
        target_link_options(${target} PRIVATE -fsanitize=${KORVANE_SANITIZERS})
    endif()
endfunction()

# korvane_whole_rooms(TARGET [APART ...]): where whole rooms are asked for, compiles the target's sources of one folder at
# once, but for those that stand APART.
function(korvane_whole_rooms target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "APART")
    if(KORVANE_WHOLE_ROOMS)
        get_target_property(sources ${target} SOURCES)
        list(FILTER sources INCLUDE REGEX "\\.cpp$")
        foreach(source IN LISTS sources)
            cmake_path(GET source PARENT_PATH room)
            set_property(SOURCE "${source}" PROPERTY UNITY_GROUP "room_${room}")
        endforeach()
        set_property(SOURCE ${arg_APART} PROPERTY SKIP_UNITY_BUILD_INCLUSION ON)
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
        target_compile_options(${target} PRIVATE -Wno-shadow) # of another file's names
    endif()
endfunction()

# korvane_add_floor(NAME SOURCES ... HEADERS ... LINK ... USE ...): one floor of the house, a shared library. NAME is the
# part behind "Korvane::"; the folder is the current one. HEADERS are public and installed under their floor and room. What
# is under USE stays inside: no header shows it. A class's form lies beside its .cpp, which includes it as "ui_class.h".
# APART are the sources whose file-local names others of their room have too: they are never compiled as one with them.
function(korvane_add_floor name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;HEADERS;LINK;USE;APART")
    set(target Korvane${name})
    string(TOLOWER "${name}" lower)
    string(TOUPPER "${name}" upper)
    set(generated "${PROJECT_BINARY_DIR}/include")

    add_library(${target} SHARED ${arg_SOURCES} ${arg_HEADERS})
    add_library(Korvane::${name} ALIAS ${target})
    korvane_compile_options(${target})
    set_target_properties(${target} PROPERTIES
        AUTOMOC ON
        AUTOUIC ON
        AUTORCC ON
        OUTPUT_NAME korvane${lower}
        EXPORT_NAME ${name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
        INSTALL_RPATH "$ORIGIN" # the floors beneath lie beside it
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)

    # Ninja would learn of a form's new header only after it has decided what to build.
    foreach(source IN LISTS arg_SOURCES)
        cmake_path(REPLACE_EXTENSION source LAST_ONLY ui OUTPUT_VARIABLE form)
        if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${form}")
            set_property(SOURCE "${source}" APPEND PROPERTY OBJECT_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${form}")
        endif()
    endforeach()

    korvane_whole_rooms(${target} APART ${arg_APART})

    include(GenerateExportHeader)
    generate_export_header(${target}
        BASE_NAME KORVANE_${upper}
        EXPORT_FILE_NAME "${generated}/${lower}/${lower}export.h")
    target_include_directories(${target} PUBLIC
        "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>"
        "$<BUILD_INTERFACE:${generated}>"
        "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/korvane>")
    target_link_libraries(${target} PUBLIC ${arg_LINK} PRIVATE ${arg_USE})

    install(TARGETS ${target} EXPORT KorvaneScadaTargets
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
    foreach(header IN LISTS arg_HEADERS)
        cmake_path(GET header PARENT_PATH room)
        install(FILES "${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/korvane/${lower}/${room}")
    endforeach()
    install(FILES "${generated}/${lower}/${lower}export.h"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/korvane/${lower}")
endfunction()

# korvane_test_environment(TEST): pins what a test would otherwise take from the machine, and makes Qt's warnings count.
function(korvane_test_environment test)
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/runtime")
    file(CHMOD "${PROJECT_BINARY_DIR}/runtime" DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    set_tests_properties(${test} PROPERTIES
        TIMEOUT 300
        FAIL_REGULAR_EXPRESSION "QWARN |QSYSTEM|QStandardPaths:"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_STYLE_OVERRIDE=Fusion;LC_ALL=C.UTF-8;TZ=UTC;XDG_CONFIG_HOME=${CMAKE_CURRENT_BINARY_DIR}/${test}.config;XDG_RUNTIME_DIR=${PROJECT_BINARY_DIR}/runtime;RC_PARAMS=seed=20251 max_success=1000;LSAN_OPTIONS=suppressions='${PROJECT_SOURCE_DIR}/tests/lsan.supp':print_suppressions=0;UBSAN_OPTIONS=print_stacktrace=1")
endfunction()

# korvane_add_test(NAME [ON_X11] [SOURCES ...] LIBS ...): NAME.cpp, one Qt Test executable, run by ctest; on an X server of
# its own with a window manager if that is said, and then skipped where there is none.
function(korvane_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "ON_X11" "" "SOURCES;LIBS")
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    korvane_compile_options(${name})
    if(KORVANE_SANITIZERS)
        target_compile_options(${name} PRIVATE -O0) # what is tested is optimised; tests are many
    endif()
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    target_link_libraries(${name} PRIVATE ${arg_LIBS} Qt5::Test)
    if(arg_ON_X11)
        add_test(NAME ${name} COMMAND "${PROJECT_SOURCE_DIR}/tests/support/run-on-x11" "$<TARGET_FILE:${name}>")
        set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77)
    else()
        add_test(NAME ${name} COMMAND ${name})
    endif()
    korvane_test_environment(${name})
endfunction()
