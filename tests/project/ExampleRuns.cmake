# Runs an example in an empty folder, with another one for temporary files, and asks that it ends well, that it prints what
# is kept in a file, and that both folders are empty then.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/here ${WORK}/temporary)
set(ENV{TMPDIR} ${WORK}/temporary)

execute_process(COMMAND ${PROGRAM} WORKING_DIRECTORY ${WORK}/here
    OUTPUT_VARIABLE printed ERROR_VARIABLE complaints RESULT_VARIABLE status)
file(READ ${PRINTS} expected)
file(GLOB_RECURSE left LIST_DIRECTORIES TRUE ${WORK}/here/* ${WORK}/temporary/*)

if(NOT status EQUAL 0)
    message(FATAL_ERROR "ended with ${status}, after\n${printed}${complaints}")
endif()
if(NOT printed STREQUAL expected)
    message(FATAL_ERROR "printed\n${printed}\ninstead of\n${expected}")
endif()
if(left)
    message(FATAL_ERROR "left behind: ${left}")
endif()
