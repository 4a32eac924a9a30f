# Flags shared by every target of this project; linked privately, never exported.
add_library(orbel_build_options INTERFACE)

# Every build of every speed must give the same bytes: no fused multiply-add, no fast-math.
target_compile_options(orbel_build_options INTERFACE -ffp-contract=off)

target_compile_options(
    orbel_build_options
    INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
              -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wunused
              $<$<BOOL:${ORBEL_WARNINGS_AS_ERRORS}>:-Werror>)

if(ORBEL_SANITIZE)
    add_compile_options(-fsanitize=${ORBEL_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${ORBEL_SANITIZE})
endif()
