# Installs the build into a folder of its own. Every header of the floors must be there, and the translation.
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
unset(ENV{DESTDIR})
file(REMOVE_RECURSE "${prefix}")
run("${CMAKE_COMMAND}" --install "${build}" --prefix "${prefix}")

set(wanted share/korvane/translations/korvanescada_ko.qm)
foreach(floor IN ITEMS platform scada host)
    file(GLOB_RECURSE headers RELATIVE "${source}" "${source}/${floor}/*.h")
    list(FILTER headers EXCLUDE REGEX "_p[.]h$") # not part of the interface
    list(TRANSFORM headers PREPEND include/korvane/)
    list(APPEND wanted ${headers} include/korvane/${floor}/${floor}export.h)
endforeach()
foreach(file IN LISTS wanted)
    if(NOT EXISTS "${prefix}/${file}")
        message(FATAL_ERROR "not installed: ${file}")
    endif()
endforeach()
