# The studio needs more than the rest: a network library, and node and npm for its page, whose
# packages npm fetches once. Where any of it cannot be had the studio is left out.
option(ORBEL_BUILD_STUDIO "Build the studio where Boost, node and npm are found" ON)

set(ORBEL_HAVE_STUDIO FALSE)
set(ORBEL_STUDIO_PAGE "${PROJECT_SOURCE_DIR}/studio/web")

# Fetches what package-lock.json names, unless that has been done.
function(orbel_fetch_page_packages result)
    set(fetched "${ORBEL_STUDIO_PAGE}/node_modules/.package-lock.json")
    set(wanted "${ORBEL_STUDIO_PAGE}/package-lock.json")
    if(EXISTS "${fetched}" AND NOT "${wanted}" IS_NEWER_THAN "${fetched}")
        set(${result} TRUE PARENT_SCOPE)
        return()
    endif()
    message(STATUS "Fetching what the studio's page is built with")
    execute_process(
        COMMAND "${ORBEL_NPM}" ci --ignore-scripts --no-audit --no-fund --prefer-offline
                --fetch-retries=1 --fetch-timeout=30000
        WORKING_DIRECTORY "${ORBEL_STUDIO_PAGE}"
        RESULT_VARIABLE code
        OUTPUT_QUIET ERROR_QUIET
        TIMEOUT 300)
    if(code EQUAL 0)
        set(${result} TRUE PARENT_SCOPE)
    else()
        set(${result} FALSE PARENT_SCOPE)
    endif()
endfunction()

if(ORBEL_BUILD_STUDIO AND ORBEL_BUILD_APP)
    find_package(Boost 1.74 QUIET)
    find_program(ORBEL_NODE node)
    find_program(ORBEL_NPM npm)
    if(NOT Boost_FOUND)
        set(missing "Boost")
    elseif(NOT ORBEL_NODE OR NOT ORBEL_NPM)
        set(missing "node or npm")
    else()
        orbel_fetch_page_packages(ORBEL_HAVE_STUDIO)
        set(missing "what its page is built with, which npm could not fetch")
    endif()
    if(NOT ORBEL_HAVE_STUDIO)
        message(STATUS "Leaving out the studio for want of ${missing} (see scripts/setup studio)")
    endif()
endif()
