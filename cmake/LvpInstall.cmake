# What an installation holds, in five components:
#   library        the three shared libraries
#   postgres       the library for stores in databases, where it was built
#   development    headers, the sources of the store contract's kit with its example, and the two ways in which other
#                  projects find all this (CMake's find_package, pkg-config)
#   tools          the tool, with its manual and completions
#   documentation  pages, examples, and the pages of the interfaces where they were made
# Nothing in it names the place that it was built in or is installed to: it may be moved.
include(CMakePackageConfigHelpers)

set(LVP_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/lvp_data)
set(LVP_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Libraries.
set_target_properties(lvp_data_headers PROPERTIES EXPORT_NAME data_headers)
set_target_properties(lvp_stores_headers PROPERTIES EXPORT_NAME stores_headers)
set_target_properties(lvp_core lvp_data lvp_stores PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS lvp_core lvp_data lvp_stores lvp_data_headers lvp_stores_headers EXPORT lvp_data
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
if(TARGET lvp_stores_postgres)
    set_target_properties(lvp_stores_postgres PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS lvp_stores_postgres EXPORT lvp_data
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT postgres)
endif()

# Headers.
install(DIRECTORY
    ${PROJECT_SOURCE_DIR}/platform/include/
    ${PROJECT_SOURCE_DIR}/include/
    ${PROJECT_SOURCE_DIR}/stores/include/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN "*.inc")

# The store contract's kit.
include(LvpStoreContract)
install(TARGETS lvp_contract_stores lvp_store_contract EXPORT lvp_data_store_contract)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/tests/contract/include/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h")
install(EXPORT lvp_data_store_contract NAMESPACE lvp_data:: FILE lvp_data-store_contractTargets.cmake
    DESTINATION ${LVP_CMAKE_DIR} COMPONENT development)

# How other projects find it. A release takes the place of every earlier one of its series, and of no other series.
install(EXPORT lvp_data NAMESPACE lvp_data:: FILE lvp_dataTargets.cmake
    DESTINATION ${LVP_CMAKE_DIR} COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/lvp_dataConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/lvp_dataConfig.cmake.in
    ${PROJECT_BINARY_DIR}/lvp_dataConfig.cmake INSTALL_DESTINATION ${LVP_CMAKE_DIR})
install(FILES ${PROJECT_BINARY_DIR}/lvp_dataConfig.cmake ${PROJECT_BINARY_DIR}/lvp_dataConfigVersion.cmake
    DESTINATION ${LVP_CMAKE_DIR} COMPONENT development)

cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${LVP_PKGCONFIG_DIR}
    OUTPUT_VARIABLE LVP_PREFIX_FROM_PC)
configure_file(${PROJECT_SOURCE_DIR}/cmake/lvp_data.pc.in ${PROJECT_BINARY_DIR}/lvp_data.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/lvp_data.pc DESTINATION ${LVP_PKGCONFIG_DIR} COMPONENT development)
if(TARGET lvp_stores_postgres)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/lvp_data_postgres.pc.in ${PROJECT_BINARY_DIR}/lvp_data_postgres.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/lvp_data_postgres.pc DESTINATION ${LVP_PKGCONFIG_DIR} COMPONENT development)
endif()

# The tool. Its manual and its completions it prints itself: a target lvp_tool_pages, which is a part of ALL, makes
# lvp-data.1, lvp-data.bash and _lvp-data in its binary folder.
if(TARGET lvp-data)
    file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(lvp-data PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS lvp-data RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
endif()
if(TARGET lvp_tool_pages)
    set(pages $<TARGET_PROPERTY:lvp_tool_pages,BINARY_DIR>)
    install(FILES ${pages}/lvp-data.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
    install(FILES ${pages}/lvp-data.bash RENAME lvp-data
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
    install(FILES ${pages}/_lvp-data DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT tools)
endif()

# Documentation. The pages keep their places, since they lead to each other.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md LICENSE
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation
    PATTERN own_store EXCLUDE PATTERN CMakeLists.txt EXCLUDE)
install(DIRECTORY ${PROJECT_BINARY_DIR}/api/html/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/api COMPONENT documentation OPTIONAL)
