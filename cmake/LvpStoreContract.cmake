# What somebody needs who writes a store, or wants to see his own code under stores that fail. Both targets are sources
# that their user compiles, with his own compiler, flags and GoogleTest.
#
# lvp_data::contract_stores   stores for tests: FailingStore, ForgetfulStore, LoggingStore, ForwardingStore
# lvp_data::store_contract    the examination of a store, and with it those stores; needs GoogleTest
set(LVP_KIT_DIR ${CMAKE_INSTALL_DATADIR}/lvp_data/store_contract)

function(lvp_kit_sources target)
    foreach(file IN LISTS ARGN)
        target_sources(${target} INTERFACE
            $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/tests/contract/${file}>
            $<INSTALL_INTERFACE:$<INSTALL_PREFIX>/${LVP_KIT_DIR}/${file}>)
        install(FILES ${PROJECT_SOURCE_DIR}/tests/contract/${file} DESTINATION ${LVP_KIT_DIR} COMPONENT development)
    endforeach()
endfunction()

add_library(lvp_contract_stores INTERFACE)
add_library(lvp_data::contract_stores ALIAS lvp_contract_stores)
set_target_properties(lvp_contract_stores PROPERTIES EXPORT_NAME contract_stores)
lvp_kit_sources(lvp_contract_stores FailingStore.cpp ForgetfulStore.cpp LoggingStore.cpp)
target_include_directories(lvp_contract_stores INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/tests/contract/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_link_libraries(lvp_contract_stores INTERFACE lvp_core)

add_library(lvp_store_contract INTERFACE)
add_library(lvp_data::store_contract ALIAS lvp_store_contract)
set_target_properties(lvp_store_contract PROPERTIES EXPORT_NAME store_contract)
lvp_kit_sources(lvp_store_contract
    StoreContract.cpp
    StoreContract+Attachment.cpp
    StoreContract+Failures.cpp
    StoreContract+Guard.cpp
    StoreContract+Model.cpp
    StoreContract+State.cpp
    StoreContract+Views.cpp
    StoreContract+Writes.cpp)
target_link_libraries(lvp_store_contract INTERFACE lvp_contract_stores $<INSTALL_INTERFACE:GTest::gtest>)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/own_store DESTINATION ${CMAKE_INSTALL_DATADIR}/lvp_data/examples
    COMPONENT development)
