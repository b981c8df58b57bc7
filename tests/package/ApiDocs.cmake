# The public headers say something of each public member, in words that Doxygen understands, and it would show if not.
include(${CMAKE_CURRENT_LIST_DIR}/Trial.cmake)
file(REMOVE_RECURSE ${WORK})
file(READ ${BUILD}/Doxyfile settings)

# doxygen(<name> <settings>): its exit status and its words.
function(doxygen name)
    file(WRITE ${WORK}/${name}/Doxyfile "${settings}OUTPUT_DIRECTORY = ${WORK}/${name}\n" ${ARGN})
    execute_process(COMMAND ${DOXYGEN} -q ${WORK}/${name}/Doxyfile WORKING_DIRECTORY ${SOURCE}
        RESULT_VARIABLE status OUTPUT_VARIABLE words ERROR_VARIABLE words)
    set(status ${status} PARENT_SCOPE)
    set(words "${words}" PARENT_SCOPE)
endfunction()

doxygen(pages)
if(NOT status EQUAL 0 OR words)
    fail("Doxygen has something to say:\n${words}")
endif()
foreach(page IN ITEMS index classlumivard_1_1platform_1_1data_1_1structure_1_1IContainer)
    if(NOT EXISTS ${WORK}/pages/html/${page}.html)
        fail("There is no page ${page}.html.")
    endif()
endforeach()

file(WRITE ${WORK}/silent.h "/// A class.\nclass Silent {\npublic:\n    int member();\n};\n")
doxygen(silent "INPUT = ${WORK}/silent.h\n" "USE_MDFILE_AS_MAINPAGE =\n")
if(status EQUAL 0 OR NOT words MATCHES "member.* is not documented")
    fail("A member without a word is passed over: ${status}\n${words}")
endif()
