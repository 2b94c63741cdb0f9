# examples/minimal-host builds against the install, follows its value, and paints a window.
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
build_against_install("${source}/examples/minimal-host" "${folder}/minimal-host")
set(picture "${folder}/minimal-host/picture.png")
run("${folder}/minimal-host/minimal-host" --picture "${picture}")

set(expected
    "TANK.LEVEL: 62.5 %\n"
    "TANK.LEVEL: 87.5 %, marked\n"
    "TANK.LEVEL: 75.0 %\n"
    "TANK.LEVEL: 75.0 %, the source has failed\n")
string(JOIN "" expected ${expected})
if(NOT output STREQUAL expected)
    message(FATAL_ERROR "printed:\n${output}wanted:\n${expected}")
endif()
file(READ "${picture}" header LIMIT 4 HEX)
if(NOT header STREQUAL "89504e47")
    message(FATAL_ERROR "${picture} is no PNG")
endif()
file(READ "${source}/docs/embedding.md" text)
string(FIND "${text}" "${expected}" place)
if(place EQUAL -1)
    message(FATAL_ERROR "docs/embedding.md does not show what the example prints")
endif()
