# What every target of the project is compiled with, and the two shapes a target has here.

set(LVP_DATA_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize= takes them")
option(LVP_DATA_COVERAGE "Instrument for gcov" OFF)

find_program(LVP_CCACHE ccache)
if(LVP_CCACHE AND PROJECT_IS_TOP_LEVEL)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${LVP_CCACHE})
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

add_library(lvp_build INTERFACE)
target_compile_options(lvp_build INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    $<$<BOOL:${LVP_DATA_WERROR}>:-Werror>)
# Where it optimizes, it takes a text that is put together of two for a copy onto itself (GCC's bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(lvp_build INTERFACE -Wno-restrict)
endif()
target_link_libraries(lvp_build INTERFACE Threads::Threads)
if(LVP_DATA_SANITIZE)
    target_compile_options(lvp_build INTERFACE
        -fsanitize=${LVP_DATA_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(lvp_build INTERFACE -fsanitize=${LVP_DATA_SANITIZE})
endif()
if(LVP_DATA_COVERAGE)
    target_compile_options(lvp_build INTERFACE --coverage)
    target_link_options(lvp_build INTERFACE --coverage)
endif()

# A room of the data library: its objects go into liblvp_data-6_1.so, and into the tests, which see the hidden symbols.
function(lvp_add_room name)
    add_library(lvp_room_${name} OBJECT ${ARGN})
    target_include_directories(lvp_room_${name} PRIVATE ${PROJECT_SOURCE_DIR})
    target_include_directories(lvp_room_${name} SYSTEM PRIVATE ${SPARSEHASH_INCLUDE_DIR})
    target_link_libraries(lvp_room_${name} PRIVATE lvp_build lvp_data_headers)
endfunction()

# A public target: lvp_<name>, known to clients as lvp_data::<name>, in the file liblvp_<name>-6_1.so, which shows the
# platform's own names and nothing else.
function(lvp_shared_library name)
    set_target_properties(lvp_${name} PROPERTIES
        OUTPUT_NAME lvp_${name}-6_1
        EXPORT_NAME ${name}
        LINKER_LANGUAGE CXX
        LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
    target_link_options(lvp_${name} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
    if(NOT LVP_DATA_SANITIZE)  # a sanitizer's runtime is the program's
        target_link_options(lvp_${name} PRIVATE -Wl,--no-undefined)
    endif()
    add_library(lvp_data::${name} ALIAS lvp_${name})
endfunction()
