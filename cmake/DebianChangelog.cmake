# Writes CHANGELOG.md in the form of Debian's change logs, packed: a version's heading has its date,
# each point becomes an entry. Fails unless the first version is the one that is built.
#
#   cmake -DCHANGES=<CHANGELOG.md> -DVERSION=<1.2.3> -DCONTACT=<name and address> -DOUTPUT=<file>
#         -P DebianChangelog.cmake      gives <file>.gz
cmake_minimum_required(VERSION 3.25)

file(STRINGS "${CHANGES}" lines)
set(text "")
set(trailer "")
set(newest "")
foreach(line IN LISTS lines)
    if(line MATCHES "^## ([0-9.]+) [(]([0-9-]+)[)]$")
        set(version "${CMAKE_MATCH_1}")
        execute_process(COMMAND date -u -R -d "${CMAKE_MATCH_2}" OUTPUT_VARIABLE date
                        OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        if(NOT newest)
            set(newest "${version}")
        endif()
        string(APPEND text "${trailer}orbel (${version}) bookworm; urgency=medium\n\n")
        set(trailer "\n -- ${CONTACT}  ${date}\n\n")
    elseif(trailer AND line MATCHES "^- (.*)$")
        string(APPEND text "  * ${CMAKE_MATCH_1}\n")
    elseif(trailer AND line MATCHES "^  ([^ ].*)$")
        string(APPEND text "    ${CMAKE_MATCH_1}\n")
    endif()
endforeach()
if(NOT newest STREQUAL VERSION)
    message(FATAL_ERROR "${CHANGES} begins with version ${newest}, not ${VERSION}: write down what is new")
endif()
file(WRITE "${OUTPUT}" "${text}${trailer}")
execute_process(COMMAND gzip -9nf "${OUTPUT}" COMMAND_ERROR_IS_FATAL ANY)
