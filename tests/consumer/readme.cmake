# The program that the README shows builds against the install and prints what the README says. Its project compiles every
# installed header by itself, too.
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
build_against_install("${CMAKE_CURRENT_LIST_DIR}/project" "${folder}/readme")
run("${folder}/readme/example")

file(READ "${source}/README.md" text)
file(READ "${CMAKE_CURRENT_LIST_DIR}/project/main.cpp" program)
foreach(part IN ITEMS "${program}" "${output}")
    string(FIND "${text}" "${part}" place)
    if(place EQUAL -1 OR part STREQUAL "")
        message(FATAL_ERROR "the README does not show:\n${part}")
    endif()
endforeach()
