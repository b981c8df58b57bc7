# Installs the project into an empty folder, moves that, and builds and runs a small project against it, once by
# find_package and once by pkg-config, and the example of a store of one's own with its exam.
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/first)
file(RENAME ${WORK}/first ${WORK}/installed)

run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/build -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/installed
    -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON --no-warn-unused-cli)
run(${CMAKE_COMMAND} --build ${WORK}/build)
run(${WORK}/build/consumer ${WORK}/consumer.lvp)

set(ENV{PKG_CONFIG_PATH} ${WORK}/installed/${LIBRARIES}/pkgconfig)
execute_process(COMMAND pkg-config --define-variable=prefix=${WORK}/installed --cflags --libs lvp_data
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${COMPILER} -std=c++20 ${CONSUMER}/main.cpp -o ${WORK}/by-pkg-config ${flags}
    -Wl,-rpath,${WORK}/installed/${LIBRARIES})
run(${WORK}/by-pkg-config ${WORK}/by-pkg-config.lvp)

run(${WORK}/installed/bin/lvp-data tree ${WORK}/consumer.lvp)

# The kit of the store contract, which needs GoogleTest and says so.
run(${CMAKE_COMMAND} -S ${OWN_STORE} -B ${WORK}/own_store -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/installed)
run(${CMAKE_COMMAND} --build ${WORK}/own_store)
run(${WORK}/own_store/exam --gtest_brief=1)
execute_process(COMMAND ${CMAKE_COMMAND} -S ${OWN_STORE} -B ${WORK}/without_gtest -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/installed -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON
    RESULT_VARIABLE status ERROR_VARIABLE message OUTPUT_QUIET)
if(status EQUAL 0 OR NOT message MATCHES "needs GoogleTest")
    message(FATAL_ERROR "Without GoogleTest the kit was found, or not refused by name:\n${message}")
endif()
