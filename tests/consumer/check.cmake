# Run by ctest, which gives: build, source, work (a folder for itself), project, generator, compiler, flags.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\n${output}${errors}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

unset(ENV{DESTDIR})
file(REMOVE_RECURSE "${work}")
run("${CMAKE_COMMAND}" --install "${build}" --prefix "${work}/prefix")
run("${CMAKE_COMMAND}" -S "${project}" -B "${work}/build" -G "${generator}"
    "-DCMAKE_PREFIX_PATH=${work}/prefix" "-DCMAKE_CXX_COMPILER=${compiler}" "-DCMAKE_CXX_FLAGS=${flags}")
run("${CMAKE_COMMAND}" --build "${work}/build")
run("${work}/build/example")

# The README shows this program and what it prints.
file(READ "${source}/README.md" text)
file(READ "${project}/main.cpp" program)
foreach(part IN ITEMS "${program}" "${output}")
    string(FIND "${text}" "${part}" place)
    if(place EQUAL -1 OR part STREQUAL "")
        message(FATAL_ERROR "the README does not show:\n${part}")
    endif()
endforeach()

# Every header of the floors is installed, and the translation.
set(wanted share/korvane/translations/korvanescada_ko.qm)
foreach(floor IN ITEMS platform scada host)
    file(GLOB_RECURSE headers RELATIVE "${source}" "${source}/${floor}/*.h")
    list(TRANSFORM headers PREPEND include/korvane/)
    list(APPEND wanted ${headers} include/korvane/${floor}/${floor}export.h)
endforeach()
foreach(file IN LISTS wanted)
    if(NOT EXISTS "${work}/prefix/${file}")
        message(FATAL_ERROR "not installed: ${file}")
    endif()
endforeach()
