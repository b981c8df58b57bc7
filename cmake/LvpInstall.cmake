# What an installation holds: three shared libraries, their headers, the tool, the sources of the store contract's kit,
# and the two ways in which other projects find them (CMake's find_package, pkg-config).
include(CMakePackageConfigHelpers)

set(LVP_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/lvp_data)

set_target_properties(lvp_data_headers PROPERTIES EXPORT_NAME data_headers)
set_target_properties(lvp_stores_headers PROPERTIES EXPORT_NAME stores_headers)
set_target_properties(lvp_core lvp_data lvp_stores PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS lvp_core lvp_data lvp_stores lvp_data_headers lvp_stores_headers EXPORT lvp_data
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY
    ${PROJECT_SOURCE_DIR}/platform/include/
    ${PROJECT_SOURCE_DIR}/include/
    ${PROJECT_SOURCE_DIR}/stores/include/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h" PATTERN "*.inc")

include(LvpStoreContract)
install(TARGETS lvp_contract_stores lvp_store_contract EXPORT lvp_data_store_contract)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/tests/contract/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
install(EXPORT lvp_data_store_contract NAMESPACE lvp_data:: FILE lvp_data-store_contractTargets.cmake
    DESTINATION ${LVP_CMAKE_DIR})

if(TARGET lvp-data)
    file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(lvp-data PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS lvp-data RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT lvp_data NAMESPACE lvp_data:: FILE lvp_dataTargets.cmake DESTINATION ${LVP_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/lvp_dataConfigVersion.cmake COMPATIBILITY SameMajorVersion)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/lvp_dataConfig.cmake.in
    ${PROJECT_BINARY_DIR}/lvp_dataConfig.cmake INSTALL_DESTINATION ${LVP_CMAKE_DIR})
install(FILES ${PROJECT_BINARY_DIR}/lvp_dataConfig.cmake ${PROJECT_BINARY_DIR}/lvp_dataConfigVersion.cmake
    DESTINATION ${LVP_CMAKE_DIR})

configure_file(${PROJECT_SOURCE_DIR}/cmake/lvp_data.pc.in ${PROJECT_BINARY_DIR}/lvp_data.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/lvp_data.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
