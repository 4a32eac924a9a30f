# Objective-C++ for the FxPlug door: the platform's own frameworks, or GNUstep compiled by g++.
# Where neither is found ORBEL_HAVE_OBJCXX is false and everything else builds without it; where one
# is, the target orbel_objcxx carries flags and libraries.
option(ORBEL_BUILD_FXPLUG "Build the FxPlug door where an Objective-C runtime is found"
       ${PROJECT_IS_TOP_LEVEL})
set(ORBEL_HAVE_OBJCXX FALSE)
set(objcxx_missing "")

set(gnustep_flags
    -DGNUSTEP
    -DGNUSTEP_BASE_LIBRARY=1
    -DGNU_GUI_LIBRARY=1
    -DGNU_RUNTIME=1
    -D_NATIVE_OBJC_EXCEPTIONS
    -fexceptions
    -fobjc-exceptions
    -fobjc-call-cxx-cdtors
    -fconstant-string-class=NSConstantString
    -pthread)

if(NOT ORBEL_BUILD_FXPLUG)
    set(objcxx_missing "ORBEL_BUILD_FXPLUG is off")
elseif(APPLE)
    enable_language(OBJCXX)
    set(ORBEL_HAVE_OBJCXX TRUE)
elseif(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(objcxx_missing "it needs g++ here")
else()
    include(CheckCXXSourceCompiles)
    find_path(GNUSTEP_INCLUDE_DIR AppKit/AppKit.h PATH_SUFFIXES GNUstep)
    find_library(GNUSTEP_BASE_LIBRARY gnustep-base)
    find_library(GNUSTEP_GUI_LIBRARY gnustep-gui)
    mark_as_advanced(GNUSTEP_INCLUDE_DIR GNUSTEP_BASE_LIBRARY GNUSTEP_GUI_LIBRARY)
    if(GNUSTEP_INCLUDE_DIR AND GNUSTEP_BASE_LIBRARY AND GNUSTEP_GUI_LIBRARY)
        # The compiler's Objective-C++ part is a package of its own, so ask for more than headers.
        set(CMAKE_REQUIRED_DEFINITIONS -xobjective-c++ -w ${gnustep_flags})
        set(CMAKE_REQUIRED_INCLUDES ${GNUSTEP_INCLUDE_DIR})
        set(CMAKE_REQUIRED_LIBRARIES -xnone ${GNUSTEP_BASE_LIBRARY} objc)
        check_cxx_source_compiles(
            "#import <Foundation/Foundation.h>
             int main() { return [[NSString string] length] == 0 ? 0 : 1; }"
            ORBEL_GNUSTEP_COMPILES)
        unset(CMAKE_REQUIRED_DEFINITIONS)
        unset(CMAKE_REQUIRED_INCLUDES)
        unset(CMAKE_REQUIRED_LIBRARIES)
    endif()
    if(ORBEL_GNUSTEP_COMPILES)
        # CMake would look for a compiler of its own and find another one.
        set(CMAKE_OBJCXX_COMPILER "${CMAKE_CXX_COMPILER}")
        enable_language(OBJCXX)
        set(ORBEL_HAVE_OBJCXX TRUE)
    else()
        set(objcxx_missing "no GNUstep found: install gobjc++, libgnustep-base-dev and \
libgnustep-gui-dev")
    endif()
endif()

if(NOT ORBEL_HAVE_OBJCXX)
    message(STATUS "FxPlug door and its tests are left out (${objcxx_missing})")
    return()
endif()

# As fast, or as debuggable, as the C++ around it.
foreach(config IN ITEMS DEBUG RELEASE RELWITHDEBINFO MINSIZEREL)
    set(CMAKE_OBJCXX_FLAGS_${config} "${CMAKE_CXX_FLAGS_${config}}")
endforeach()
if(CMAKE_CXX_COMPILER_LAUNCHER AND NOT CMAKE_OBJCXX_COMPILER_LAUNCHER)
    set(CMAKE_OBJCXX_COMPILER_LAUNCHER "${CMAKE_CXX_COMPILER_LAUNCHER}")
endif()

add_library(orbel_objcxx INTERFACE)
# The language standard that CMake knows for C++ does not reach Objective-C++.
target_compile_options(orbel_objcxx INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:-std=c++20>)
if(APPLE)
    target_link_libraries(orbel_objcxx INTERFACE "-framework Foundation" "-framework AppKit")
else()
    target_compile_options(orbel_objcxx
                           INTERFACE "$<$<COMPILE_LANGUAGE:OBJCXX>:${gnustep_flags}>")
    target_include_directories(orbel_objcxx SYSTEM INTERFACE ${GNUSTEP_INCLUDE_DIR})
    target_link_libraries(orbel_objcxx INTERFACE ${GNUSTEP_GUI_LIBRARY} ${GNUSTEP_BASE_LIBRARY}
                                                 objc)
endif()
