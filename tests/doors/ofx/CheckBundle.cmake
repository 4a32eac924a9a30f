# Fails when the bundle lacks a file that a host or the effect looks for, or when its binary shows
# more than its entry points.
#
#   cmake -DBUNDLE=<Orbel.ofx.bundle> -DARCHITECTURE=<folder of the binary> [-DNM=<nm>] -P CheckBundle.cmake
cmake_minimum_required(VERSION 3.25)

foreach(file IN ITEMS Info.plist Resources/org.orbel.Orbel.png
                      "Resources/Tessaly/SVG/Basic Star.svg" "${ARCHITECTURE}/Orbel.ofx")
    if(NOT EXISTS "${BUNDLE}/Contents/${file}")
        message(FATAL_ERROR "${BUNDLE}/Contents lacks ${file}")
    endif()
endforeach()

if(NM)
    execute_process(COMMAND "${NM}" -D --defined-only "${BUNDLE}/Contents/${ARCHITECTURE}/Orbel.ofx"
                    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX REPLACE "[^\n]* ([^ \n]+)\n" "\\1;" symbols "${symbols}")
    list(REMOVE_ITEM symbols "")
    if(NOT symbols STREQUAL "OfxGetNumberOfPlugins;OfxGetPlugin;OfxSetHost")
        message(FATAL_ERROR "visible from outside: ${symbols}")
    endif()
endif()
