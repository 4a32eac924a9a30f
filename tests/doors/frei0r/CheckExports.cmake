# Fails unless a plug-in shows its hosts the interface's functions and nothing else.
#
#   cmake -DNM=<nm> -DPLUGIN=<file> -P CheckExports.cmake
execute_process(COMMAND ${NM} -D --defined-only ${PLUGIN} OUTPUT_VARIABLE symbols
                COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "[^ \n]+\n" names "${symbols}")
list(SORT names)
string(REPLACE "\n;" ";" names "${names};")
set(expected f0r_construct f0r_deinit f0r_destruct f0r_get_param_info f0r_get_param_value
             f0r_get_plugin_info f0r_init f0r_set_param_value f0r_update)
if(NOT names STREQUAL "${expected};")
    message(FATAL_ERROR "these symbols are visible: ${names}")
endif()
