# Installs the project into an empty folder, tries that, moves it, and tries it again, with the kit of the store contract.
include(${CMAKE_CURRENT_LIST_DIR}/Trial.cmake)
file(REMOVE_RECURSE ${WORK})

run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/first)
try_installation(${WORK}/first ${WORK}/tried)
file(MAKE_DIRECTORY ${WORK}/elsewhere)
file(RENAME ${WORK}/first ${WORK}/elsewhere/again)
try_installation(${WORK}/elsewhere/again ${WORK}/tried-again)

# With DESTDIR the same files come, below another root.
set(ENV{DESTDIR} ${WORK}/staged)
run(${CMAKE_COMMAND} --install ${BUILD} --prefix /opt/lvp_data)
unset(ENV{DESTDIR})
file(GLOB_RECURSE installed RELATIVE ${WORK}/elsewhere/again ${WORK}/elsewhere/again/*)
file(GLOB_RECURSE staged RELATIVE ${WORK}/staged/opt/lvp_data ${WORK}/staged/*)
if(NOT installed STREQUAL staged)
    fail("With DESTDIR other files are installed.\nWithout: ${installed}\nWith: ${staged}")
endif()

# The project that docs/first-steps.md tells to make, with the lines that stand there.
file(READ ${SOURCE}/docs/first-steps.md page)
string(REGEX MATCH "```cmake\n([^`]*)```" found "${page}")
file(WRITE ${WORK}/first_steps/CMakeLists.txt "${CMAKE_MATCH_1}")
file(COPY ${SOURCE}/examples/first_steps.cpp DESTINATION ${WORK}/first_steps)
run(${CMAKE_COMMAND} -S ${WORK}/first_steps -B ${WORK}/first_steps/build -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/elsewhere/again)
run(${CMAKE_COMMAND} --build ${WORK}/first_steps/build)
run(${WORK}/first_steps/build/first_steps)

# Another series is not taken for this one.
file(WRITE ${WORK}/other/CMakeLists.txt "cmake_minimum_required(VERSION 3.25)\nproject(other LANGUAGES CXX)\n"
    "foreach(series IN ITEMS 6.0 6.2 7.0)\n  find_package(lvp_data \${series} QUIET)\n"
    "  if(lvp_data_FOUND)\n    message(FATAL_ERROR \"6.1 was taken for \${series}\")\n  endif()\nendforeach()\n")
run(${CMAKE_COMMAND} -S ${WORK}/other -B ${WORK}/other/build -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/elsewhere/again)

# The kit of the store contract, which needs GoogleTest and says so.
set(own_store ${WORK}/elsewhere/again/share/lvp_data/examples/own_store)
run(${CMAKE_COMMAND} -S ${own_store} -B ${WORK}/own_store -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/elsewhere/again)
run(${CMAKE_COMMAND} --build ${WORK}/own_store)
run(${WORK}/own_store/exam --gtest_brief=1)
execute_process(COMMAND ${CMAKE_COMMAND} -S ${own_store} -B ${WORK}/without_gtest -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/elsewhere/again -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON
    RESULT_VARIABLE status ERROR_VARIABLE message OUTPUT_QUIET)
if(status EQUAL 0 OR NOT message MATCHES "needs GoogleTest")
    fail("Without GoogleTest the kit was found, or not refused by name:\n${message}")
endif()
