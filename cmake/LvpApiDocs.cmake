# The pages of the public interfaces, by Doxygen: the target lvp_api_docs makes them in api/html of the build, and fails
# where a header says nothing of a public member, or what it says cannot be understood. Not a part of ALL.
find_program(LVP_DOXYGEN doxygen)
if(LVP_DOXYGEN)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
    add_custom_target(lvp_api_docs
        COMMAND ${CMAKE_COMMAND} -E rm -rf ${PROJECT_BINARY_DIR}/api
        COMMAND ${LVP_DOXYGEN} -q ${PROJECT_BINARY_DIR}/Doxyfile
        WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
        VERBATIM)
endif()
