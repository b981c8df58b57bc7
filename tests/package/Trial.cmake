# Tries an installation from where it lies, by nothing but what is in it: a small project is built against it in the three
# ways that there are, and run, and so is the tool.

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(fail)
    message(FATAL_ERROR ${ARGN})
endfunction()

# The folder below `root` in which the libraries are.
function(find_libraries root result)
    file(GLOB_RECURSE libraries ${root}/lib/liblvp_core-6_1.so)
    list(LENGTH libraries count)
    if(NOT count EQUAL 1)
        fail("liblvp_core-6_1.so is ${count} times in ${root}/lib.")
    endif()
    cmake_path(GET libraries PARENT_PATH folder)
    set(${result} ${folder} PARENT_SCOPE)
endfunction()

# No file by which others find the library names a place of this machine.
function(look_for_places root)
    file(GLOB_RECURSE files ${root}/*.cmake ${root}/*.pc)
    list(LENGTH files count)
    if(count LESS 6)
        fail("There should be six files for CMake and pkg-config, and these are all: ${files}")
    endif()
    foreach(file IN LISTS files)
        file(READ ${file} text)
        foreach(place IN ITEMS ${SOURCE} ${BUILD} ${WORK} ${root})
            string(FIND "${text}" "${place}" at)
            if(NOT at EQUAL -1)
                fail("${file} names ${place}.")
            endif()
        endforeach()
    endforeach()
endfunction()

# try_installation(<the folder that holds bin, lib, include> <an empty folder to work in>)
function(try_installation root work)
    find_libraries(${root} libraries)
    look_for_places(${root})
    file(MAKE_DIRECTORY ${work})
    set(main ${SOURCE}/tests/package/consumer/main.cpp)

    # By find_package.
    run(${CMAKE_COMMAND} -S ${SOURCE}/tests/package/consumer -B ${work}/build -G ${GENERATOR}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${root} -DPOSTGRES=${POSTGRES}
        -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON --no-warn-unused-cli)
    run(${CMAKE_COMMAND} --build ${work}/build)
    run(${work}/build/consumer ${work}/found.lvp)
    if(POSTGRES)
        run(${work}/build/database_consumer)
    endif()

    # By pkg-config.
    set(ENV{PKG_CONFIG_PATH} ${libraries}/pkgconfig)
    execute_process(COMMAND pkg-config --cflags --libs lvp_data
        OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    separate_arguments(flags UNIX_COMMAND "${flags}")
    run(${COMPILER} -std=c++20 ${main} -o ${work}/by-pkg-config ${flags} -Wl,-rpath,${libraries})
    run(${work}/by-pkg-config ${work}/by-pkg-config.lvp)
    if(POSTGRES)
        execute_process(COMMAND pkg-config --cflags --libs lvp_data_postgres
            OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        separate_arguments(flags UNIX_COMMAND "${flags}")
        run(${COMPILER} -std=c++20 ${SOURCE}/tests/package/consumer/database.cpp -o ${work}/database-by-pkg-config
            ${flags} -Wl,-rpath,${libraries})
        run(${work}/database-by-pkg-config)
    endif()

    # By the compiler alone.
    run(${COMPILER} -std=c++20 -I${root}/include ${main} -o ${work}/plain
        -L${libraries} -llvp_data-6_1 -llvp_stores-6_1 -llvp_core-6_1 -Wl,-rpath,${libraries})
    run(${work}/plain ${work}/plain.lvp)

    # What they wrote is what the tool shows.
    foreach(store IN ITEMS found by-pkg-config plain)
        execute_process(COMMAND ${root}/bin/lvp-data tree ${work}/${store}.lvp
            OUTPUT_VARIABLE shown COMMAND_ERROR_IS_FATAL ANY)
        if(NOT shown MATCHES "length.*2\\.5")
            fail("The tool shows of ${store}.lvp:\n${shown}")
        endif()
    endforeach()
endfunction()
