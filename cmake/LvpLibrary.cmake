# The data library itself, out of its rooms. Two forms: the shared library that is shipped, and a static one with the
# same objects for tests of what the shared one hides.

set(LVP_ROOM_TARGETS lvp_room_record lvp_room_metadata lvp_room_design lvp_room_schema lvp_room_units
    lvp_room_type lvp_room_property lvp_room_container lvp_room_xml lvp_room_check)
set(LVP_ROOM_OBJECTS)
foreach(room IN LISTS LVP_ROOM_TARGETS)
    list(APPEND LVP_ROOM_OBJECTS $<TARGET_OBJECTS:${room}>)
endforeach()

add_library(lvp_data SHARED ${LVP_ROOM_OBJECTS})
lvp_shared_library(data)
target_link_libraries(lvp_data PUBLIC lvp_core PRIVATE lvp_build TBB::tbb INTERFACE lvp_data_headers)

add_library(lvp_data_inside STATIC EXCLUDE_FROM_ALL ${LVP_ROOM_OBJECTS})
target_include_directories(lvp_data_inside SYSTEM INTERFACE ${SPARSEHASH_INCLUDE_DIR})
target_include_directories(lvp_data_inside INTERFACE ${PROJECT_SOURCE_DIR})
target_link_libraries(lvp_data_inside PUBLIC lvp_data_headers lvp_core TBB::tbb)
set_target_properties(lvp_data_inside PROPERTIES LINKER_LANGUAGE CXX)
