# What makes frames fast, each optional: Highway for vector kernels, chosen at run time by what the
# processor can do, and oneTBB for drawing a frame on several threads. Without them the scalar code
# gives the same frames, slower.
option(ORBEL_ACCELERATE "Use vector kernels and threads where their packages are found" ON)

set(ORBEL_HAVE_HIGHWAY OFF)
set(ORBEL_HAVE_TASKS OFF)
if(ORBEL_ACCELERATE)
    find_package(hwy CONFIG QUIET)
    if(hwy_FOUND)
        set(ORBEL_HAVE_HIGHWAY ON)
    else()
        message(STATUS "Highway not found: pixels are computed one by one")
    endif()
    # The packaged library is not instrumented: the thread sanitizer would see races in it.
    if(ORBEL_SANITIZE MATCHES "thread")
        message(STATUS "Thread sanitizer: frames are drawn on one thread")
    else()
        find_package(TBB QUIET)
        if(TBB_FOUND)
            set(ORBEL_HAVE_TASKS ON)
        else()
            message(STATUS "oneTBB not found: frames are drawn on one thread")
        endif()
    endif()
endif()

# A plug-in that goes to hosts with other versions of its libraries carries its own in itself.
set(ORBEL_STATIC_LIBRARIES "" CACHE PATH
    "Folder of libhwy.a and libtbb.a to be linked instead of what is shared with other programs")
if(ORBEL_STATIC_LIBRARIES)
    foreach(library IN ITEMS hwy::hwy TBB::tbb)
        string(REGEX MATCH "[^:]*$" name "${library}")
        get_target_property(configurations ${library} IMPORTED_CONFIGURATIONS)
        foreach(configuration IN LISTS configurations)
            set_target_properties(
                ${library} PROPERTIES IMPORTED_LOCATION_${configuration}
                                      "${ORBEL_STATIC_LIBRARIES}/lib${name}.a")
        endforeach()
    endforeach()
endif()

# Links a target with what was found and tells its units: ORBEL_HAVE_HIGHWAY, ORBEL_HAVE_TASKS.
function(orbel_accelerate target)
    target_compile_definitions(
        ${target} PRIVATE ORBEL_HAVE_HIGHWAY=$<BOOL:${ORBEL_HAVE_HIGHWAY}>
                          ORBEL_HAVE_TASKS=$<BOOL:${ORBEL_HAVE_TASKS}>)
    if(ORBEL_HAVE_HIGHWAY)
        target_link_libraries(${target} PRIVATE hwy::hwy)
    endif()
    if(ORBEL_HAVE_TASKS)
        target_link_libraries(${target} PRIVATE TBB::tbb)
    endif()
endfunction()

# Adds units of vector kernels, if there are to be any. Each includes itself once per target, so none
# can be a part of a larger unit. Everything in them is inlined into a few long functions, for which
# the check of variables out of scope alone takes minutes to compile.
function(orbel_add_kernels target)
    if(NOT ORBEL_HAVE_HIGHWAY)
        return()
    endif()
    target_sources(${target} PRIVATE ${ARGN})
    set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target}
                                PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    if(ORBEL_SANITIZE MATCHES "address")
        set_source_files_properties(
            ${ARGN} TARGET_DIRECTORY ${target}
            PROPERTIES COMPILE_OPTIONS -fno-sanitize-address-use-after-scope)
    endif()
endfunction()
