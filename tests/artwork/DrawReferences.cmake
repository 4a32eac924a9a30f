# Renders every shape file of SHAPES with RSVG_CONVERT into a picture of 512 x 512 in REFERENCES.
file(GLOB files "${SHAPES}/*.svg")
file(MAKE_DIRECTORY "${REFERENCES}")
foreach(file IN LISTS files)
    get_filename_component(name "${file}" NAME_WLE)
    execute_process(
        COMMAND "${RSVG_CONVERT}" -w 512 -h 512 -b white -o "${REFERENCES}/${name}.png" "${file}"
        RESULT_VARIABLE failed)
    if(failed)
        message(FATAL_ERROR "${file} cannot be drawn: it is no valid SVG")
    endif()
endforeach()
file(TOUCH "${REFERENCES}/drawn")
