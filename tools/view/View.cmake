# The page of `lvp-data view`: its parts become a source, in which the page allows itself by digests of them.
file(GLOB page CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/page/*)
add_custom_command(OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/PageText.cpp
    COMMAND ${CMAKE_COMMAND} -DPAGE=${CMAKE_CURRENT_LIST_DIR}/page -DSOURCE=${CMAKE_CURRENT_BINARY_DIR}/PageText.cpp
        -P ${CMAKE_CURRENT_LIST_DIR}/Embed.cmake
    DEPENDS ${page} ${CMAKE_CURRENT_LIST_DIR}/Embed.cmake
    VERBATIM)
target_sources(lvp_tool_inside PRIVATE
    ${CMAKE_CURRENT_BINARY_DIR}/PageText.cpp
    view/Complaints.cpp
    view/PageData.cpp
    view/PageItems.cpp
    view/PageStream.cpp
    view/PageValues.cpp
    view/View.cpp)
