# Draws the shape files anew and fails when a file in the tree is not what its drawing gives.
#
#   cmake -DPROGRAM=<orbel-shapes> -DRESOURCES=<folder> -DWORK=<folder> -P CheckDrawings.cmake
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}/Tessaly/SVG" "${WORK}/scenes")
execute_process(COMMAND "${PROGRAM}" "${WORK}/Tessaly/SVG" "${WORK}/scenes"
                        COMMAND_ERROR_IS_FATAL ANY)

file(GLOB_RECURSE drawn RELATIVE "${WORK}" "${WORK}/*.svg")
file(GLOB_RECURSE kept RELATIVE "${RESOURCES}" "${RESOURCES}/Tessaly/SVG/*.svg")
foreach(file IN LISTS drawn kept)
    file(SHA256 "${WORK}/${file}" now)
    file(SHA256 "${RESOURCES}/${file}" before)
    if(NOT now STREQUAL before)
        message(SEND_ERROR "${file} differs from its drawing: build the target shape-files")
    endif()
endforeach()
