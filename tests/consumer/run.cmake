# Shared by the checks here: runs a command, ends the check with its output when it fails, and leaves its standard output in
# "output".
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\n${output}${errors}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# Builds a project outside the tree against the installed package, in a fresh folder.
function(build_against_install project build_folder)
    file(REMOVE_RECURSE "${build_folder}")
    run("${CMAKE_COMMAND}" -S "${project}" -B "${build_folder}" -G "${generator}"
        "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${compiler}")
    run("${CMAKE_COMMAND}" --build "${build_folder}")
endfunction()
